#include "hostif/error.h"
#include "platform/system/record_log_file.h"
#include "support/file_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include <sys/wait.h>

namespace genutil {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class RecordLogTest : public testing::Test {
protected:
    fake::FileFolder folder;
    const std::string report = folder.make("report.log");

    // Another process that appends the records and is killed.
    void appendAndDie(const std::vector<std::string>& records) {
        const pid_t child = ::fork();
        if (child == 0) {
            const auto log = makeRecordLog(report);
            for (const std::string& record : records)
                log->append(record);
            ::raise(SIGKILL);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status));
    }
    fs::path onlyFile() const {
        fs::path only;
        for (const auto& entry : fs::recursive_directory_iterator(folder.path / "state"))
            if (entry.is_regular_file())
                only = entry.path();
        return only;
    }
    std::vector<std::string> left(const std::string& about) {
        const auto found = leftRecordLog(about);
        return found ? found->records : std::vector<std::string>();
    }
};

TEST_F(RecordLogTest, WhatAKilledProcessHasAppendedIsThereForTheNextOneAlone) {
    const std::string nul("a\0b", 3);
    appendAndDie({"one", "", nul, std::string(200'000, 'x')});
    EXPECT_EQ(fs::status(onlyFile()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_THAT(left(folder.make("other.log")), IsEmpty());
    fs::create_symlink(report, folder.path / "link.log");
    {
        const auto found = leftRecordLog(folder / "link.log");
        ASSERT_TRUE(found);
        EXPECT_THAT(found->records, ElementsAre("one", "", nul, std::string(200'000, 'x')));
        found->log->append("more");
        EXPECT_THAT(left(report), IsEmpty()) << "in use";
    }
    EXPECT_EQ(onlyFile(), "") << "it goes with its owner";
}

TEST_F(RecordLogTest, ARecordThatIsNotWholeIsNoneAndWhatComesAfterItTakesItsPlace) {
    appendAndDie({"one", "two", "three"});
    const fs::path file = onlyFile();
    const std::string whole = [&] {
        std::ifstream stream(file, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(stream), {});
    }();
    const std::size_t end = whole.size() - 13; // of "two"
    for (std::size_t cut = end; cut < whole.size(); ++cut)
        EXPECT_EQ(recordsOf(std::string_view(whole).substr(0, cut)).size(), 3u) << cut;
    for (std::size_t at = end; at < whole.size(); ++at) {
        std::string torn = whole;
        torn[at] = char(torn[at] ^ 0x11);
        EXPECT_EQ(recordsOf(torn).size(), 3u) << at;
    }
    fs::resize_file(file, whole.size() - 2);
    {
        const auto found = leftRecordLog(report);
        ASSERT_TRUE(found);
        found->log->append("x");
        std::ifstream stream(file, std::ios::binary);
        EXPECT_THAT(recordsOf(std::string(std::istreambuf_iterator<char>(stream), {})),
            ElementsAre(fs::canonical(report), "one", "two", "x"));
    }
    appendAndDie({"older"});
    appendAndDie({"newer"});
    EXPECT_THAT(left(report), ElementsAre("newer"));
    EXPECT_THAT(left(report), ElementsAre("older")) << "offered another time";
}

} // namespace
} // namespace genutil
