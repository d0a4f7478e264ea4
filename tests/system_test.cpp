#include "hostif/error.h"
#include "platform/system/system_files.h"
#include "support/another_user.h"
#include "support/file_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <string>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace genutil {
namespace {

namespace fs = std::filesystem;

class WipeFile : public testing::Test {
protected:
    std::string make(const std::string& name, const std::string& contents = "secret") {
        return folder.make(name, contents);
    }

    fake::FileFolder folder;
    std::unique_ptr<FileSystem> files = makeSystemFiles();
};

TEST_F(WipeFile, TruncatesAndRemovesAFileOfAnySize) {
    for (const std::size_t size : {std::size_t(0), std::size_t(1), std::size_t(200'001)}) {
        const std::string path = make("report.log", std::string(size, 'x'));
        const int before = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        files->wipeFile(path);
        EXPECT_FALSE(fs::exists(path)) << size;
        struct stat left {};
        ASSERT_EQ(::fstat(before, &left), 0);
        EXPECT_EQ(left.st_size, 0) << size;
        ::close(before);
    }
}

TEST_F(WipeFile, OverwritesFromTheStartAndSaysSoWhenItCannotGoOn) {
    constexpr std::size_t size = 200'001;
    constexpr std::size_t writable = 100'000;
    const std::string path = make("report.log", std::string(size, 'x'));
    rlimit earlier{};
    ::getrlimit(RLIMIT_FSIZE, &earlier);
    const rlimit limited{writable, earlier.rlim_max};
    std::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &limited);
    try {
        files->wipeFile(path);
        ADD_FAILURE() << "the failure was not told";
    } catch (const Error& error) {
        EXPECT_THAT(error.description(), testing::HasSubstr("Cannot overwrite '" + path));
    }
    ::setrlimit(RLIMIT_FSIZE, &earlier);
    std::signal(SIGXFSZ, SIG_DFL);
    EXPECT_EQ(folder.contents("report.log"), std::string(writable, '\0') + std::string(size - writable, 'x'));
}

TEST_F(WipeFile, RefusesWhatIsNotOneRegularFileAndNamesThePathAndTheRule) {
    const std::string target = make("target.log");
    fs::create_symlink(target, folder / "link.log");
    fs::create_hard_link(make("first.log"), folder / "second.log");
    fs::create_directory(folder / "folder");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);

    struct Case {
        std::string path;
        int number;
        std::string rule;
    };
    for (const Case& each : {
             Case{folder / "link.log", errors::PathAccess, "symbolic link"},
             Case{folder / "second.log", errors::PathAccess, "hard links"},
             Case{folder / "folder", errors::PathAccess, "only regular files"},
             Case{folder / "pipe", errors::PathAccess, "only regular files"},
             Case{"/dev/null", errors::PathAccess, "only regular files"},
             Case{folder / "missing.log", errors::FileNotFound, "Cannot find"},
             Case{target + std::string(1, '\0') + "x", errors::BadFileName, "zero byte"},
             Case{"", errors::BadFileName, "must not be empty"},
         }) {
        try {
            files->wipeFile(each.path);
            ADD_FAILURE() << each.path << " was wiped";
        } catch (const Error& error) {
            EXPECT_EQ(error.number(), each.number) << each.path;
            EXPECT_THAT(error.description(), testing::HasSubstr(each.rule));
            if (each.number != errors::BadFileName) {
                EXPECT_THAT(error.description(), testing::HasSubstr(each.path));
            }
        }
    }
    for (const char* kept : {"target.log", "first.log", "second.log"}) {
        EXPECT_EQ(folder.contents(kept), "secret") << kept;
    }
}

TEST_F(WipeFile, LeavesAFileThatCannotBeWrittenAsItIs) {
    const std::string path = make("locked.log");
    fs::permissions(path, fs::perms::owner_read);
    {
        const fake::AnotherUser user;
        EXPECT_THROW(files->wipeFile(path), Error);
    }
    EXPECT_EQ(fs::file_size(path), 6u);
}

TEST(ScratchFile, NeverTouchesWhatHasItsNameAndGoesWithItsOwner) {
    const fake::FileFolder folder;
    const auto files = makeSystemFiles();
    const fs::path before = fs::current_path();
    fs::current_path(folder.path);
    const std::string name = "k_seltxt.tmp";
    const std::string other = folder.make("other", "secret");
    const std::function<void()> takings[] = {[] {}, [&] { folder.make(name, "mine"); },
        [&] { fs::create_symlink(other, folder / name); },
        [&] { fs::create_symlink("nowhere", folder / name); }};
    for (const auto& take : takings) {
        take();
        const std::set<std::string> earlier = folder.names();
        const bool isFree = !earlier.contains(name);
        {
            const auto scratch = files->makeScratchFile(name, "selected\ntext");
            EXPECT_EQ(scratch->path() == folder / name, isFree);
            EXPECT_EQ(scratch->whyElsewhere().empty(), isFree) << scratch->whyElsewhere();
            EXPECT_EQ(text::readAll(*files->openFile(scratch->path())), "selected\ntext");
            EXPECT_EQ(folder.names().size(), earlier.size() + 1);
            struct stat status {};
            EXPECT_EQ(::lstat(scratch->path().c_str(), &status), 0);
            EXPECT_EQ(status.st_mode & 0777u, 0600u);
        }
        EXPECT_EQ(folder.names(), earlier);
        EXPECT_EQ(folder.contents("other"), "secret");
        fs::remove(folder / name);
    }
    auto scratch = files->makeScratchFile(name, "x");
    fs::rename(folder.make("newer", "another's"), folder / name);
    scratch.reset();
    EXPECT_EQ(folder.contents(name), "another's");
    fs::current_path(before);
}

} // namespace
} // namespace genutil
