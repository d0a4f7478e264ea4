#include "hostif/error.h"
#include "platform/system/system_files.h"
#include "support/another_user.h"
#include "support/file_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace genutil {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

class SaveFile : public testing::Test {
protected:
    void save(const std::string& name, const std::string& bytes) {
        files->saveFile(folder / name, [&](const text::ByteSink& sink) {
            sink(bytes.substr(0, bytes.size() / 2));
            sink(bytes.substr(bytes.size() / 2));
        });
    }
    int failureOf(const std::function<void()>& act, const std::string& saying) {
        try {
            act();
        } catch (const Error& error) {
            EXPECT_THAT(error.description(), testing::HasSubstr(saying));
            return error.number();
        }
        return 0;
    }

    fake::FileFolder folder;
    std::unique_ptr<FileSystem> files = makeSystemFiles();
};

TEST_F(SaveFile, TheFileHoldsExactlyTheNewBytesWhateverItHeldAndHoweverLongItsName) {
    const std::string longest = std::string(1, 'x') + std::string(127, '\xC3') + std::string(127, '\xA4');
    for (const std::string& name : {std::string("report.log"), std::string(255, 'x'), longest}) {
        for (const std::size_t size :
            {std::size_t(0), std::size_t(1), std::size_t(300'001), std::size_t(65'536)}) {
            const std::string bytes(size, 'n');
            save(name, bytes);
            EXPECT_EQ(folder.contents(name), bytes) << name << size;
        }
        EXPECT_EQ(folder.names(), Names{name});
        fs::remove(folder / name);
    }
}

TEST_F(SaveFile, KeepsLinksModeOwnerAndAttributes) {
    const std::string path = folder.make("report.log");
    fs::create_symlink("report.log", folder / "link.log");
    fs::create_symlink("link.log", folder / "link of link.log");
    fs::create_symlink("made.log", folder / "dangling.log");
    ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
    const bool isSuperuser = ::chown(path.c_str(), 65534, 65534) == 0;
    const bool hasAttributes = ::setxattr(path.c_str(), "user.comment", "kept", 4, 0) == 0;

    save("link of link.log", "new");
    save("dangling.log", "made");
    EXPECT_TRUE(fs::is_symlink(folder / "link of link.log"));
    EXPECT_TRUE(fs::is_symlink(folder / "dangling.log"));
    EXPECT_EQ(folder.contents("report.log"), "new");
    EXPECT_EQ(folder.contents("made.log"), "made");
    EXPECT_EQ(folder.status("report.log").st_mode & 07777, 0640u);
    if (isSuperuser) {
        EXPECT_EQ(folder.status("report.log").st_uid, 65534u);
    }
    if (hasAttributes) {
        std::string comment(4, ' ');
        EXPECT_EQ(::getxattr(path.c_str(), "user.comment", comment.data(), 4), 4);
        EXPECT_EQ(comment, "kept");
    }
    const mode_t earlier = ::umask(027);
    save("fresh.log", "new");
    ::umask(earlier);
    EXPECT_EQ(folder.status("fresh.log").st_mode & 07777, 0640u);
}

TEST_F(SaveFile, AFileThatMayNotBeReplacedIsWrittenInPlace) {
    const std::string old(100'000, 'o');
    fs::create_directory(folder / "closed");
    for (const char* name : {"linked.log", "foreign.log", "closed/report.log"})
        fs::permissions(folder.make(name, old), fs::perms::all);
    fs::create_hard_link(folder / "linked.log", folder / "other name.log");
    fs::permissions(folder.make("readable.log", old), fs::perms::owner_read | fs::perms::others_read);
    constexpr auto writing = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    fs::permissions(folder / "closed", writing, fs::perm_options::remove);

    const fake::AnotherUser user;
    for (const char* name : {"linked.log", "foreign.log", "closed/report.log"}) {
        if (name == std::string("foreign.log") && !user.isSet())
            continue; // only the superuser can make a file that is another's
        for (const std::string& bytes :
            {std::string(200'000, 'n'), std::string(70'000, 'm'), std::string()}) {
            const auto before = folder.status(name);
            save(name, bytes);
            const auto after = folder.status(name);
            EXPECT_EQ(folder.contents(name), bytes) << name;
            EXPECT_EQ(after.st_ino, before.st_ino) << name;
            EXPECT_EQ(after.st_uid, before.st_uid) << name;
            EXPECT_EQ(after.st_mode, before.st_mode) << name;
        }
    }
    EXPECT_EQ(failureOf([&] { save("readable.log", "new"); }, "Cannot open"), errors::PermissionDenied);
    EXPECT_EQ(failureOf([&] { save("closed/new.log", "new"); }, "closed/new.log"), errors::PermissionDenied);
    EXPECT_EQ(
        folder.names(), (Names{"linked.log", "other name.log", "foreign.log", "report.log", "readable.log"}));
    if (!user.isSet())
        fs::permissions(folder / "closed", writing, fs::perm_options::add); // so that it can be removed
}

TEST_F(SaveFile, WhatWritingThrowsPassesThroughAndTheFileStays) {
    folder.make("report.log", "old");
    folder.make("linked.log", "old");
    fs::create_hard_link(folder / "linked.log", folder / "other name.log");
    for (const char* name : {"report.log", "linked.log", "new.log"}) {
        const auto write = [](const text::ByteSink& sink) {
            sink(std::string(200'000, 'n'));
            throw 42;
        };
        EXPECT_THROW(files->saveFile(folder / name, write), int);
    }
    EXPECT_EQ(folder.contents("report.log"), "old");
    EXPECT_EQ(folder.contents("other name.log"), "old");
    EXPECT_EQ(folder.names(), (Names{"report.log", "linked.log", "other name.log"}));
}

TEST_F(SaveFile, TwoSavesAtATimeDoNotMix) {
    folder.make("report.log", "old");
    files->saveFile(folder / "report.log", [&](const text::ByteSink& sink) {
        sink("outer");
        save("report.log", "inner");
        EXPECT_EQ(folder.contents("report.log"), "inner");
        sink(" save");
    });
    EXPECT_EQ(folder.contents("report.log"), "outer save");

    fs::create_hard_link(folder / "report.log", folder / "other name.log");
    const int other = ::open((folder / "report.log").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(other, LOCK_EX), 0);
    EXPECT_EQ(
        failureOf([&] { save("report.log", "new"); }, "another program is saving it"), errors::PathAccess);
    ::close(other);
    EXPECT_EQ(folder.contents("report.log"), "outer save");
    EXPECT_EQ(folder.names(), (Names{"report.log", "other name.log"}));
}

TEST_F(SaveFile, CopyingLeavesTwoNamesOfOneFileAloneAndGivesANewFileTheSourcesMode) {
    const std::string bytes(200'001, 'o');
    const std::string from = folder.make("report.log", bytes);
    ASSERT_EQ(::chmod(from.c_str(), 04666), 0);
    fs::create_symlink("report.log", folder / "link.log");
    const auto stamp = files->stampOf(from);
    files->copyFile(from, folder / "link.log");
    files->copyFile(folder / "link.log", from);
    EXPECT_EQ(files->stampOf(from), stamp);
    files->copyFile(from, folder / "copy.log");
    EXPECT_EQ(folder.contents("copy.log"), bytes);
    EXPECT_EQ(folder.status("copy.log").st_mode & 07777, 0666u);
}

} // namespace
} // namespace genutil
