#include "hostif/error.h"
#include "platform/system/save_steps.h"
#include "platform/system/system_files.h"
#include "support/file_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <vector>

#include <sys/resource.h>
#include <sys/wait.h>

namespace genutil {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

// Calls an act before each step of saving, with how many steps there were before.
class AtEachStep {
public:
    using Act = std::function<void(int count, const std::string& step)>;
    explicit AtEachStep(Act act) {
        act_ = std::move(act);
        count_ = 0;
        saveStepObserver = [](const char* step) { act_(count_++, step); };
    }
    ~AtEachStep() { saveStepObserver = nullptr; }
    AtEachStep(const AtEachStep&) = delete;
    AtEachStep& operator=(const AtEachStep&) = delete;

private:
    inline static Act act_;
    inline static int count_ = 0;
};

// Takes away the room on the disk: no file may grow, or be written to, beyond this many bytes.
class DiskLimit {
public:
    DiskLimit() {
        ::getrlimit(RLIMIT_FSIZE, &earlier_);
        std::signal(SIGXFSZ, SIG_IGN);
    }
    explicit DiskLimit(rlim_t bytes) : DiskLimit() { set(bytes); }
    ~DiskLimit() {
        set(earlier_.rlim_cur);
        std::signal(SIGXFSZ, SIG_DFL);
    }
    DiskLimit(const DiskLimit&) = delete;
    DiskLimit& operator=(const DiskLimit&) = delete;
    void set(rlim_t bytes) {
        const rlimit limited{bytes, earlier_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limited);
    }

private:
    rlimit earlier_{};
};

enum class Way { Replaced, InPlace };

void PrintTo(Way way, std::ostream* out) {
    *out << (way == Way::Replaced ? "Replaced" : "InPlace");
}

class SaveFaults : public testing::TestWithParam<Way> {
protected:
    SaveFaults() { reset(); }

    // The file as it was, with a further name if it is to be written in place.
    void reset() {
        for (const std::string& name : names())
            fs::remove(folder / name);
        folder.make("report.log", old);
        if (GetParam() == Way::InPlace)
            fs::create_hard_link(folder / "report.log", folder / "other name.log");
    }
    Names names() const {
        return GetParam() == Way::InPlace ? Names{"report.log", "other name.log"} : Names{"report.log"};
    }
    void save(const std::string& bytes) {
        files->saveFile(folder / "report.log", [&](const text::ByteSink& sink) { sink(bytes); });
    }
    std::string opened() {
        const auto source = files->openFile(folder / "report.log");
        std::string bytes(1 << 20, '\0');
        bytes.resize(source->read(bytes));
        return bytes;
    }
    std::vector<std::string> stepsOf(const std::function<void()>& act) {
        std::vector<std::string> steps;
        const AtEachStep record([&](int, const std::string& step) { steps.push_back(step); });
        act();
        return steps;
    }
    // Ends a process that does this, before its step of this number, as the system does: without any notice.
    void killed(int at, const std::function<void()>& act) {
        inAnotherProcess([&] {
            const AtEachStep kill([&](int count, const std::string&) {
                if (count == at)
                    ::raise(SIGKILL);
            });
            act();
        });
    }
    void killedAfter(std::chrono::microseconds time, const std::function<void()>& act) {
        const pid_t child = start(act);
        ::usleep(useconds_t(time.count()));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
    }
    void inAnotherProcess(const std::function<void()>& act) { ::waitpid(start(act), nullptr, 0); }
    static pid_t start(const std::function<void()>& act) {
        const pid_t child = ::fork();
        if (child == 0) {
            act();
            ::_exit(0);
        }
        return child;
    }
    // All of the old bytes or all of the new ones, and nothing left over.
    void expectWhole(const std::string& bytes, const std::string& when) {
        if (GetParam() == Way::Replaced) {
            EXPECT_THAT(folder.contents("report.log"), testing::AnyOf(old, bytes)) << when;
        }
        const std::string found = opened();
        EXPECT_TRUE(found == old || found == bytes) << when;
        EXPECT_EQ(folder.contents("report.log"), found) << when;
        if (GetParam() == Way::InPlace) {
            EXPECT_EQ(folder.names(), names()) << when;
            EXPECT_EQ(folder.contents("other name.log"), found) << when;
        }
        save("next");
        EXPECT_EQ(folder.contents("report.log"), "next") << when;
        EXPECT_EQ(folder.names(), names()) << when;
    }

    const std::string old = std::string(150'000, 'o');
    const std::string longer = std::string(220'000, 'n');
    const std::string shorter = std::string(40'000, 's');
    fake::FileFolder folder;
    std::unique_ptr<FileSystem> files = makeSystemFiles();
};

TEST_P(SaveFaults, AProcessThatEndsAtAnyStepLeavesAllOldOrAllNewBytes) {
    for (const std::string& bytes : {longer, shorter}) {
        reset();
        const auto steps = stepsOf([&] { save(bytes); });
        for (int at = 0; at < int(steps.size()); ++at) {
            reset();
            killed(at, [&] { save(bytes); });
            expectWhole(bytes, "killed before: " + steps[std::size_t(at)]);
        }
    }
}

TEST_P(SaveFaults, AProcessThatEndsAtAnyTimeLeavesAllOldOrAllNewBytes) {
    constexpr int kills = 40;
    const auto start = std::chrono::steady_clock::now();
    inAnotherProcess([&] { save(longer); });
    const auto whole = std::chrono::steady_clock::now() - start;
    for (int i = 0; i < kills; ++i) {
        reset();
        killedAfter(
            std::chrono::duration_cast<std::chrono::microseconds>(whole * i / kills), [&] { save(longer); });
        expectWhole(longer, std::to_string(i) + " of " + std::to_string(kills) + " of the time");
    }
}

TEST_P(SaveFaults, AFullDiskLeavesTheOldBytesAndNothingElse) {
    for (const rlim_t limit : {0, 1, 1000, 65'536, 100'000, 150'000, 219'999}) {
        reset();
        {
            const DiskLimit full(limit);
            try {
                save(longer);
                ADD_FAILURE() << "the failure was not told at " << limit;
            } catch (const Error& error) {
                EXPECT_EQ(error.number(), errors::DiskFull);
                EXPECT_THAT(error.description(), testing::HasSubstr(folder / "report.log"));
            }
        }
        EXPECT_EQ(folder.contents("report.log"), old) << limit;
        EXPECT_EQ(folder.names(), names()) << limit;
    }
}

INSTANTIATE_TEST_SUITE_P(Ways, SaveFaults, testing::Values(Way::Replaced, Way::InPlace),
    [](const auto& way) { return way.param == Way::Replaced ? "Replaced" : "InPlace"; });

class SaveInPlaceFaults : public SaveFaults {
protected:
    // Ends a process in the middle of writing, and gives the name of the safety copy that is left.
    std::string leaveHalfWritten() {
        const auto steps = stepsOf([&] { save(longer); });
        const auto second = std::ranges::find(
            std::ranges::find(steps, "note the progress") + 1, steps.end(), "note the progress");
        reset();
        killed(int(second - steps.begin()), [&] { save(longer); });
        EXPECT_NE(folder.contents("report.log"), old);
        for (const std::string& name : folder.names()) {
            if (name.starts_with("report.log.") && name.ends_with(".before-save"))
                return name;
        }
        return "none";
    }
};

TEST_P(SaveInPlaceFaults, UndoingThatIsInterruptedAtAnyStepIsUndoneAtTheNextOpening) {
    leaveHalfWritten();
    const auto steps = stepsOf([&] { opened(); });
    for (int at = 0; at < int(steps.size()); ++at) {
        leaveHalfWritten();
        killed(at, [&] { opened(); });
        EXPECT_EQ(opened(), old) << steps[std::size_t(at)];
        EXPECT_EQ(folder.names(), names()) << steps[std::size_t(at)];
    }
}

TEST_P(SaveInPlaceFaults, AHalfWrittenFileIsWholeAgainUnderItsOtherName) {
    const std::string copy = leaveHalfWritten();
    EXPECT_EQ(folder.contents("state/k_genutil/before-save/" + copy), old);
    files->openFile(folder / "other name.log");
    EXPECT_EQ(folder.contents("report.log"), old);
    EXPECT_EQ(folder.names(), names());
}

TEST_P(SaveInPlaceFaults, WhatAnotherProgramHasWrittenSinceIsNotUndone) {
    leaveHalfWritten();
    folder.make("report.log", "repaired");
    fs::last_write_time(
        folder / "report.log", fs::last_write_time(folder / "report.log") + std::chrono::minutes(1));
    EXPECT_EQ(opened(), "repaired");
    save(longer);
    EXPECT_EQ(folder.contents("report.log"), longer);
    EXPECT_EQ(folder.names(), names());
}

TEST_P(SaveInPlaceFaults, AFailureInTheMiddleOfWritingPutsTheOldBytesBack) {
    for (int block = 1; block <= 4; ++block) {
        reset();
        DiskLimit disk;
        const AtEachStep full([&, met = 0](int, const std::string& step) mutable {
            if (step == "write a block in place" && ++met == block)
                disk.set(1000);
            if (step == "put back a block")
                disk.set(RLIM_INFINITY);
        });
        EXPECT_THROW(save(longer), Error);
        EXPECT_EQ(folder.contents("other name.log"), old);
        EXPECT_EQ(folder.names(), names());
    }
}

TEST_P(SaveInPlaceFaults, OldBytesThatCannotBePutBackStayInANamedSafetyCopyUntilTheyCan) {
    DiskLimit disk;
    std::string told;
    {
        const AtEachStep full([&, met = 0](int, const std::string& step) mutable {
            if (step == "write a block in place" && ++met == 3)
                disk.set(1000);
        });
        try {
            save(longer);
        } catch (const Error& error) {
            told = error.description();
        }
    }
    const fs::path kept = folder.path / "state/k_genutil/before-save";
    ASSERT_EQ(std::distance(fs::directory_iterator(kept), {}), 1);
    EXPECT_THAT(told, testing::HasSubstr("that is in '" + fs::directory_iterator(kept)->path().string()));
    try {
        opened();
        ADD_FAILURE() << "a half-written file was opened";
    } catch (const Error& error) {
        EXPECT_THAT(error.description(), testing::HasSubstr("was interrupted"));
        EXPECT_THAT(error.description(), testing::HasSubstr(fs::directory_iterator(kept)->path().string()));
    }
    disk.set(RLIM_INFINITY);
    EXPECT_EQ(opened(), old);
    EXPECT_EQ(folder.names(), names());
}

INSTANTIATE_TEST_SUITE_P(Way, SaveInPlaceFaults, testing::Values(Way::InPlace));

} // namespace
} // namespace genutil
