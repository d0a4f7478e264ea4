#include "component/class_list.h"
#include "component/registration.h"
#include "hostif/error.h"

#include <k_genutil/activation.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include <sys/file.h>

namespace fs = std::filesystem;
using namespace genutil;
using ::testing::HasSubstr;

namespace {

const k_genutil::ClassName gauge = k_genutil::classes::cProgress;

struct Registry : ::testing::Test {
    fs::path folder, file, library;

    Registry() {
        std::string name = (fs::temp_directory_path() / "genutil-registry-XXXXXX").string();
        folder = ::mkdtemp(name.data());
        file = folder / "registry.ini";
        library = folder / "libserver.so";
        std::ofstream(library) << "not a library";
        ::setenv("K_GENUTIL_REGISTRY", file.c_str(), 1);
    }
    ~Registry() override { fs::remove_all(folder); }

    void write(const std::string& text) { std::ofstream(file, std::ios::binary) << text; }
    std::string text() const {
        std::ostringstream all;
        all << std::ifstream(file, std::ios::binary).rdbuf();
        return all.str();
    }
    std::string failureOf(const std::function<void()>& act) const {
        try {
            act();
        } catch (const std::exception& error) {
            return error.what();
        }
        return "no failure";
    }
};

TEST_F(Registry, KeepsForeignEntriesByteForByte) {
    const std::string foreign =
        "; kept\r\n[progid other.Thing]\r\nclass = {1}\r\n\r\n[broken\nnonsense\n[x]\n\xff=\xfe";
    write(foreign);
    registerServer(library);
    const std::string registered = text();
    EXPECT_TRUE(registered.starts_with(foreign + "\n[class {")) << registered;
    EXPECT_EQ(k_genutil::classOf("K_GENUTIL.cprogress"), gauge.clsid);
    for (const PublicClass& c : publicClasses) {
        EXPECT_EQ(k_genutil::classOf(c.name.progId), c.name.clsid);
        EXPECT_EQ(k_genutil::registryValue("class " + k_genutil::guidText(c.name.clsid), "server", E_FAIL),
            library);
    }
    EXPECT_THAT(
        registered, HasSubstr("name=k_genutil\nhelpstring=Kestal general utilities\nhelpfile=Kestal.chm\n"));
    registerServer(library);
    EXPECT_EQ(text(), registered) << "registering twice changes nothing";
    write(text() + "; y follows\n[y]\nlast=1");
    unregisterServer();
    EXPECT_EQ(text(), foreign + "\n; y follows\n[y]\nlast=1");
    for (const auto& entry : fs::directory_iterator(folder))
        EXPECT_THAT(entry.path().filename().string(),
            ::testing::AnyOf("registry.ini", "registry.ini.lock", "libserver.so"));
}

TEST_F(Registry, IsWholeForEveryReaderWhileProgramsRegister) {
    write("[progid other.Thing]\nclass=" + k_genutil::guidText(gauge.clsid) + "\n");
    const auto comeAndGo = [&] {
        for (int i = 0; i < 20; ++i) {
            registerServer(library);
            unregisterServer();
        }
    };
    std::thread first(comeAndGo);
    std::thread second(comeAndGo);
    std::string failure = "no failure";
    for (int i = 0; i < 300 && failure == "no failure"; ++i)
        failure = failureOf([] { k_genutil::classOf("other.Thing"); });
    first.join();
    second.join();
    EXPECT_EQ(failure, "no failure");
    EXPECT_EQ(text(), "[progid other.Thing]\nclass=" + k_genutil::guidText(gauge.clsid) + "\n");
}

TEST_F(Registry, IsNotWrittenWhileAnotherProgramHasItLocked) {
    const int lock = ::open((file.string() + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(::flock(lock, LOCK_EX), 0);
    std::thread waiting([&] { registerServer(library); });
    std::this_thread::sleep_for(std::chrono::milliseconds(120));
    EXPECT_FALSE(fs::exists(file));
    ::close(lock);
    waiting.join();
    EXPECT_TRUE(fs::exists(file));
}

TEST_F(Registry, RefusesWhatItCannotTrustAndSaysWhy) {
    const std::string id = "[class " + k_genutil::guidText(gauge.clsid) + "]\n";
    const fs::path open = folder / "open";
    fs::create_directory(open);
    fs::copy_file(library, open / "lib.so");
    fs::permissions(open, fs::perms::all);
    fs::copy_file(library, folder / "writable.so");
    fs::permissions(folder / "writable.so", fs::perms::all);
    fs::create_symlink(open / "lib.so", folder / "link.so");
    const auto served = [&](const std::string& path) { return id + "server=" + path + "\n"; };
    const struct {
        const char* what;
        std::string registry;
        const char* failure;
    } cases[] = {
        {"unknown class", "[class {0}]\nserver=/x\n", "there is no such entry"},
        {"relative path", served("libserver.so"), "the library path must be absolute"},
        {"missing file", served("/nonexistent/lib.so"), "the library must exist"},
        {"folder", served(folder.string()), "the library must be a regular file"},
        {"world-writable file", served(folder / "writable.so"),
            "the library must not be writable by everyone"},
        {"world-writable folder", served(open / "lib.so"), "folder must not be writable by everyone"},
        {"link into a world-writable folder", served(folder / "link.so"),
            "folder must not be writable by everyone"},
        {"no library", served(library), "libserver.so"},
        {"no server", id + "name=cProgress\n", "server must be given"},
        {"corrupt line", served(library) + "nonsense\n", "line 3: a line must be key=value"},
        {"zero byte", served(library) + std::string("a=\0b\n", 5), "zero bytes"},
        {"key twice", served(library) + "SERVER=/x\n", "a key must not be given twice"},
        {"empty key twice", id + "server=\n" + served(library).substr(id.size()), "must not be given twice"},
        {"entry twice", served(library) + served(library), "an entry must not be given twice"},
    };
    for (const auto& c : cases) {
        write(c.registry);
        const std::string failure = failureOf([] { k_genutil::Server::forClass(gauge.clsid); });
        EXPECT_THAT(failure, HasSubstr(c.failure)) << c.what;
        EXPECT_THAT(failure, HasSubstr(file.string())) << c.what;
        EXPECT_THAT(failure, HasSubstr("[class " + k_genutil::guidText(gauge.clsid) + "]")) << c.what;
    }
    write("[progid k_genutil.cProgress]\nclass={not an id}\n");
    EXPECT_THAT(
        failureOf([] { k_genutil::classOf(gauge.progId); }), HasSubstr("class must be a class identifier"));

    fs::permissions(file, fs::perms::others_write, fs::perm_options::add);
    EXPECT_THAT(
        failureOf([] { k_genutil::classOf(gauge.progId); }), HasSubstr("must not be writable by everyone"));
    EXPECT_THAT(failureOf([&] { registerServer(library); }), HasSubstr("must not be writable by everyone"));
    fs::remove(file);
    fs::create_directory(file);
    EXPECT_THAT(failureOf([&] { registerServer(library); }), HasSubstr("must be a regular file"));
    fs::remove(file);
    EXPECT_THAT(
        failureOf([&] { registerServer(open / "lib.so"); }), HasSubstr("folder must not be writable"));
    EXPECT_THAT(failureOf([&] { registerServer(folder / "no\nserver=/evil.so"); }), HasSubstr("line breaks"));
    EXPECT_FALSE(fs::exists(file)) << "a refused registration leaves nothing behind";
}

} // namespace
