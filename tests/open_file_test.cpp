#include "hostif/error.h"
#include "platform/system/system_files.h"
#include "support/another_user.h"
#include "support/file_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace genutil {
namespace {

namespace fs = std::filesystem;

class OpenFile : public testing::Test {
protected:
    static std::string readAll(text::ByteSource& source) {
        std::string bytes;
        std::string block(70'000, '\0');
        while (const std::size_t size = source.read(block))
            bytes.append(block, 0, size);
        return bytes;
    }

    template<class Act>
    static Error failureOf(const Act& act) {
        try {
            act();
        } catch (const Error& error) {
            return error;
        }
        return Error(0, "accepted");
    }

    fake::FileFolder folder;
    std::unique_ptr<FileSystem> files = makeSystemFiles();
};

TEST_F(OpenFile, GivesTheBytesUpToTheEndThatReadingMeets) {
    const std::string old(200'001, 'o');
    const std::string path = folder.make("report.log", old);
    fs::create_symlink("report.log", folder / "link.log");
    EXPECT_EQ(readAll(*files->openFile(folder / "link.log")), old);

    const auto growing = files->openFile(path);
    EXPECT_EQ(growing->expectedSize(), old.size());
    folder.make("report.log", old + "more");
    EXPECT_EQ(readAll(*growing), old + "more");

    const auto shrinking = files->openFile(path);
    std::string block(1000, '\0');
    EXPECT_EQ(shrinking->read(block), block.size());
    fs::resize_file(path, 1500);
    EXPECT_EQ(readAll(*shrinking), std::string(500, 'o'));

    const auto withoutSize = files->openFile("/proc/self/status");
    EXPECT_EQ(withoutSize->expectedSize(), 0u);
    EXPECT_THAT(readAll(*withoutSize), testing::HasSubstr("Pid:"));
    const auto unreadable = files->openFile("/proc/self/mem");
    EXPECT_THROW(readAll(*unreadable), Error);
}

TEST_F(OpenFile, RefusesWhatIsNotARegularFileWithoutWaitingForIt) {
    fs::create_directory(folder / "folder");
    fs::create_symlink("round.log", folder / "round.log");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0666), 0);
    fs::permissions(folder.make("locked.log"), fs::perms::none);
    const std::string good = folder.make("good.log");

    struct Case {
        std::string path;
        int number;
        std::string rule;
    };
    const fake::AnotherUser user;
    for (const Case& each : {
             Case{folder / "folder", errors::PathAccess, "is a folder"},
             Case{folder / "pipe", errors::PathAccess, "only regular files"},
             Case{"/dev/zero", errors::PathAccess, "only regular files"},
             Case{folder / "round.log", errors::PathAccess, "Cannot find"},
             Case{folder / "locked.log", errors::PermissionDenied, "Cannot open"},
             Case{folder / "missing.log", errors::FileNotFound, "Cannot find"},
             Case{folder / "missing/report.log", errors::PathNotFound, "folder"},
             Case{good + "/report.log", errors::PathNotFound, "Cannot find"},
             Case{folder / std::string(300, 'x'), errors::BadFileName, "Cannot find"},
             Case{good + std::string(1, '\0') + "x", errors::BadFileName, "zero byte"},
             Case{"", errors::BadFileName, "must not be empty"},
         }) {
        const Error opening = failureOf([&] { files->openFile(each.path); });
        EXPECT_EQ(opening.number(), each.number) << opening.description();
        EXPECT_THAT(opening.description(), testing::HasSubstr(each.rule));
        if (each.number != errors::BadFileName) {
            EXPECT_THAT(opening.description(), testing::HasSubstr(each.path));
        }
        EXPECT_EQ(failureOf([&] { files->copyFile(each.path, folder / "copy.log"); }).number(), each.number);
        if (each.number != errors::FileNotFound) {
            EXPECT_EQ(failureOf([&] { files->copyFile(good, each.path); }).number(), each.number)
                << each.path;
        }
        EXPECT_EQ(files->stampOf(each.path).has_value(), each.number == errors::PermissionDenied)
            << each.path;
    }
    EXPECT_EQ(folder.names(), (std::set<std::string>{"pipe", "round.log", "locked.log", "good.log"}));
}

TEST_F(OpenFile, StampsAreEqualUntilTheFileIsWrittenTo) {
    const std::string path = folder.make("report.log", "old");
    fs::create_symlink("report.log", folder / "link.log");
    const auto stamp = files->stampOf(path);
    EXPECT_EQ(stamp->size, 3u);
    EXPECT_EQ(files->stampOf(folder / "link.log"), stamp);
    files->openFile(path);
    EXPECT_EQ(files->stampOf(path), stamp);
    files->saveFile(path, [](const text::ByteSink& sink) { sink("new"); });
    EXPECT_NE(files->stampOf(path), stamp);
}

} // namespace
} // namespace genutil
