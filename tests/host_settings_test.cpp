#include "host/general_preferences.h"
#include "host/late_bound.h"
#include "host/main_form_object.h"
#include "host/services.h"
#include "support/another_user.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <csignal>
#include <fstream>
#include <random>
#include <sstream>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace kestal;
using testing::HasSubstr;

namespace {

constexpr const char* handWritten =
    "; mine, \xE9\r\n[Kestal]\r\nFileViewState = 2\r\n[Other]\r\nkey=\"a;b\"\r\n";

class HostSettings : public testing::Test {
protected:
    std::string path(const char* name) const { return folder_.filePath(name).toStdString(); }
    std::string settings() const { return path("kestal.ini"); }
    HostPtr makeHost() const {
        HostPaths paths;
        paths.settings = QString::fromStdString(settings());
        paths.log = QString::fromStdString(path("kestal.log"));
        paths.help = "/no/help.txt";
        auto host = std::make_shared<Host>(paths);
        host->attended = false;
        return host;
    }
    static void put(const std::string& file, const std::string& bytes) {
        std::ofstream(file, std::ios::binary) << bytes;
    }
    static std::string contents(const std::string& file) {
        std::ostringstream all;
        all << std::ifstream(file, std::ios::binary).rdbuf();
        return all.str();
    }
    // What a writer says; "" when it writes.
    std::string refusal(const char* value = "1") const {
        try {
            writeSetting(settings(), "Kestal", "Key", value);
            return "";
        } catch (const AutomationError& error) {
            EXPECT_EQ(error.number(), errors::PathAccess);
            EXPECT_THAT(error.what(), HasSubstr(settings()));
            return error.what();
        }
    }

    QTemporaryDir folder_;
};

TEST_F(HostSettings, NothingOfTheFileButTheKeyIsChanged) {
    put(settings(), handWritten);
    ::chmod(settings().c_str(), 0640);
    ASSERT_EQ(::symlink(settings().c_str(), path("link.ini").c_str()), 0);
    writeSetting(path("link.ini"), "Kestal", "New", "x,y");
    writeSetting(path("link.ini"), "Kestal", "FileViewState", "1");
    EXPECT_EQ(contents(settings()),
        "; mine, \xE9\r\n[Kestal]\r\nFileViewState =1\r\nNew=\"x,y\"\r\n[Other]\r\nkey=\"a;b\"\r\n");
    EXPECT_TRUE(QFileInfo(QString::fromStdString(path("link.ini"))).isSymLink());
    struct stat status {};
    ASSERT_EQ(::stat(settings().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640u);
    EXPECT_FALSE(QFile::exists(QString::fromStdString(settings() + ".work")));
}

TEST_F(HostSettings, AFileThatCannotBeWrittenIsNamedWithTheRuleAndStays) {
    const std::pair<std::string, const char*> damaged[] = {{"[Kestal]\nKey=0\n[Prefer", "line 3 must be"},
        {std::string("[Kestal]\nKey=\0\n", 15), "text file"},
        {"\x7F"
         "ELF\x02\n",
            "line 1 must be"}};
    for (const auto& [bytes, rule] : damaged) {
        put(settings(), bytes);
        EXPECT_THAT(refusal(), HasSubstr(rule));
        EXPECT_EQ(contents(settings()), bytes);
    }
    put(settings(), handWritten);
    const int other = ::open((settings() + ".lock").c_str(), O_RDWR);
    ASSERT_EQ(::flock(other, LOCK_EX), 0);
    EXPECT_THAT(refusal(), HasSubstr("another program is writing it"));
    ::close(other);
    const rlimit whole = [] {
        rlimit limit{};
        ::getrlimit(RLIMIT_FSIZE, &limit);
        return limit;
    }();
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit full{100, whole.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &full);
    const std::string reason = refusal(std::string(500, 'x').c_str());
    ::setrlimit(RLIMIT_FSIZE, &whole);
    EXPECT_THAT(reason, HasSubstr("File too large"));
    ::chmod(settings().c_str(), 0444);
    ::chmod(folder_.path().toLocal8Bit(), 0755);
    {
        const genutil::fake::AnotherUser user;
        ASSERT_TRUE(user.isSet() || ::geteuid() != 0);
        EXPECT_THAT(refusal(), HasSubstr(user.isSet() ? "Permission denied" : "read-only"));
    }
    ::chmod(folder_.path().toLocal8Bit(), 0777);
    ::chmod((settings() + ".lock").c_str(), 0666);
    {
        const genutil::fake::AnotherUser user;
        EXPECT_THAT(refusal(), HasSubstr("read-only"));
    }
    EXPECT_EQ(contents(settings()), handWritten);
}

// A child that stores both ways, each time all keys with one figure, is killed at any moment.
TEST_F(HostSettings, AWriterThatIsKilledLeavesTheOldSettingsOrTheNew) {
    constexpr int kills = 200;
    constexpr int keys = 40;
    put(settings(), "; kept\n[Foreign]\nkey=1\n");
    const auto saveForEver = [&](int figure) {
        for (;; ++figure) {
            std::vector<Setting> all;
            for (int key = 0; key < keys; ++key)
                all.push_back({"Kestal", "Key" + std::to_string(key), std::to_string(figure)});
            storeSettings(settings(), all);
            SettingsChange change(settings());
            change.write(change.settings());
            for (Setting& setting : all)
                setting.value = std::to_string(figure + 1);
            change.store(all);
            change.commit();
        }
    };
    std::mt19937 random(20261123);
    int inTheMiddle = 0;
    int saved = 0;
    for (int i = 0; i < kills; ++i) {
        const std::string before = contents(settings());
        const pid_t child = ::fork();
        if (child == 0) {
            saveForEver(i * 100'000);
            ::_exit(1);
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 12'000));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        inTheMiddle += QFile::exists(QString::fromStdString(settings() + ".work"));
        const IniText now(contents(settings()));
        const auto first = now.value("Kestal", "Key0");
        ASSERT_EQ(now.fault() + now.value("Foreign", "key").value_or("lost"), "1");
        for (int key = 0; key < keys; ++key)
            ASSERT_EQ(now.value("Kestal", "Key" + std::to_string(key)), first) << "half a change";
        saved += contents(settings()) != before;
    }
    std::printf("%d writers killed, %d of them with a working copy, %d after they had saved\n", kills,
        inTheMiddle, saved);
    EXPECT_GT(inTheMiddle, 0);
    EXPECT_GT(saved, 0);
    EXPECT_EQ(refusal(), "") << "what a killed writer leaves is in nobody's way";
}

TEST_F(HostSettings, TwoWritersKeepEachOthersKeys) {
    constexpr int each = 60;
    const auto write = [&](const char* name) {
        for (int i = 0; i < each; ++i)
            writeSetting(settings(), name, "Key" + std::to_string(i), "x");
    };
    const pid_t child = ::fork();
    if (child == 0) {
        write("Child");
        ::_exit(0);
    }
    write("Parent");
    int status = 1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    const IniText all = loadSettings(settings());
    for (int i = 0; i < each; ++i)
        for (const char* name : {"Child", "Parent"})
            EXPECT_EQ(all.value(name, "Key" + std::to_string(i)), "x") << name;
}

TEST_F(HostSettings, APreferenceThatDoesNotFitIsTheDefaultAndIsLogged) {
    const std::pair<const char*, const char*> wrong[] = {{"KFactor", "a lot"}, {"KFactor", ""},
        {"KFactor", "1e999"}, {"KFactor", "nan"}, {"ListGroup", "3"}, {"ListGroup", "-1"},
        {"ListGroup", "99999"}, {"ShowExtension", "perhaps"}, {"LoadLastJob", ""},
        {"DefaultEditor", "\xFF\xFE"}, {"DefaultEditor", "/usr/bin/ed\\x1b"}};
    const auto defaults = makeGeneralPreferences();
    for (const auto& [name, value] : wrong) {
        const auto bytes = std::string("[Preferences]\nStartMaximized=True\n") + name + "=" + value + "\n";
        put(settings(), bytes);
        put(path("kestal.log"), "");
        const auto host = makeHost();
        EXPECT_EQ(host->genPrefs->text(name), defaults->text(name)) << value;
        EXPECT_TRUE(truthOf(host->genPrefs->value("StartMaximized")));
        EXPECT_THAT(contents(path("kestal.log")), HasSubstr(std::string("setting ") + name));
        EXPECT_EQ(contents(settings()), bytes);
    }
    const auto service = makeGenProcs(makeHost());
    put(settings(), "[A]\nB=\xFF\n");
    const Variant file{std::string_view(settings())};
    EXPECT_EQ(textOf(LateBound(service.get())
                         .call("ReadSetting", {file, Variant("A"), Variant("B"), Variant("fallback"),
                                                  Variant(true), Variant(true)})),
        "fallback");
}

// The calls that the component makes after OK, in their order.
TEST_F(HostSettings, TheStoreTakesTheChosenSettingsIntoTheFileInOneStep) {
    put(settings(), handWritten);
    put(settings() + ".work", "left by a killed program");
    const auto host = makeHost();
    const auto storeObject = makeSettingsStore(host);
    const auto procedures = makeGenProcs(host);
    const LateBound store(storeObject.get());
    const LateBound genProcs(procedures.get());
    const auto prefs = Ref<RecordObject>::adopt(host->genPrefs->clone());
    prefs->set("DefaultEditor", Variant("/opt/my ed/ed\x7F-n"));
    prefs->set("KFactor", Variant(0.13));
    const Variant prog(host->prog.get());
    const Variant nothing(static_cast<IDispatch*>(nullptr));
    VARIANT_BOOL storeFlag = VARIANT_FALSE, workingCopy = VARIANT_FALSE, closed = VARIANT_FALSE;
    const auto flag = [](VARIANT_BOOL& value) {
        VARIANT argument;
        VariantInit(&argument);
        argument.vt = VT_BYREF | VT_BOOL;
        argument.pboolVal = &value;
        return argument;
    };
    const auto save = [&] {
        genProcs.call("SaveAllSettings",
            {Variant(false), Variant(true), Variant(true), Variant(false), Variant(false), Variant(false),
                prog, nothing, nothing, Variant(prefs.get()), nothing, nothing, nothing, Variant(true)});
    };
    EXPECT_THROW(save(), AutomationError) << "the store is not open";
    EXPECT_TRUE(truthOf(store.call("OpenSettingsStore", {prog, flag(storeFlag), flag(workingCopy)})));
    EXPECT_TRUE(storeFlag && workingCopy);
    save();
    EXPECT_EQ(contents(settings()), handWritten) << "nothing is changed yet";
    EXPECT_EQ(readSetting(host->prog->text("SettingsWorkFile"), "Preferences", "KFactor", ""), "0.13");
    store.call("CloseSettingsStore", {prog, Variant(true), Variant(false), flag(closed)});
    EXPECT_TRUE(closed);
    EXPECT_THAT(
        contents(settings()), testing::StartsWith("; mine, \xE9\r\n[Kestal]\r\nFileViewState = 2\r\n"));
    EXPECT_EQ(makeHost()->genPrefs->text("DefaultEditor"), "/opt/my ed/ed\x7F-n");
    EXPECT_EQ(readSetting(settings(), "Kestal", "ProgPath", ""), host->prog->text("ProgramFolder"));

    const std::string before = contents(settings());
    store.call("OpenSettingsStore", {prog, flag(storeFlag), flag(workingCopy)});
    QFile::remove(QString::fromStdString(settings() + ".work")); // as after an error
    EXPECT_THROW(store.call("CloseSettingsStore", {prog, Variant(true), Variant(false), flag(closed)}),
        AutomationError);
    host->abandonStore();
    EXPECT_EQ(contents(settings()), before);
    EXPECT_EQ(refusal(), "") << "the file is free again";
}

TEST_F(HostSettings, AHostStoresWhatItsUserHasChangedOverWhatOthersHaveStoredSince) {
    const auto first = makeHost(), second = makeHost();
    first->marks.choose(Mark::Heights, true);
    first->keepMarks();
    second->marks.choose(Mark::Geoid, true);
    second->keepMarks();
    const auto change = [](Host& host, const char* option, double value) {
        const auto options = Ref<RecordObject>::adopt(host.lsOptions->clone());
        options->set(option, Variant(value));
        host.takeLsOptions(options.get());
    };
    change(*first, "AngleSD", 3);
    change(*second, "AzimuthSD", 4);
    change(*second, "AngleSD", 5);
    change(*first, "AngleSD", 10); // its default again, which the file has no more
    const auto later = makeHost();
    EXPECT_TRUE(later->marks.isSet(Mark::Heights) && later->marks.isSet(Mark::Geoid));
    EXPECT_EQ(later->lsOptions->text("AzimuthSD"), "4");
    EXPECT_EQ(later->lsOptions->text("AngleSD"), "10");
}

TEST_F(HostSettings, ThatCannotBeStoredAreToldOfOnceUntilOneIs) {
    const auto host = makeHost();
    std::vector<std::string> told;
    host->showProblem = [&](const QString& problem) { told.push_back(problem.toStdString()); };
    put(settings(), "no setting\n");
    host->marks.choose(Mark::Geoid, true);
    host->keepMarks();
    host->setInstantHelp(true);
    EXPECT_THAT(told, testing::ElementsAre(HasSubstr("What the plot shows cannot be stored")));
    put(settings(), "");
    host->marks.choose(Mark::Geoid, false);
    host->keepMarks();
    put(settings(), "no setting\n");
    host->setInstantHelp(false);
    host->setInstantHelp(true);
    EXPECT_EQ(told.size(), 2u);
}

TEST_F(HostSettings, DialogsReadAndPutTheMarksOfTheViewMenuByName) {
    const auto host = makeHost();
    const auto object = makeScreenFormObject(host);
    const LateBound mainForm(object.get());
    for (const ViewMark& mark : viewMarks())
        EXPECT_EQ(truthOf(mainForm.child(mark.name).get("Checked")), mark.initial) << mark.name;
    mainForm.child("mnuViewZoneBdys").put("Checked", Variant(true));
    mainForm.child("mnuViewPlotGeog").put("Checked", Variant(true));
    EXPECT_FALSE(truthOf(mainForm.child("picScaleBar").get("Visible"))) << "a geographic plot has none";
    mainForm.child("picScaleBar").put("Visible", Variant(true));
    mainForm.child("mnuHelpInstantHelp").put("Checked", Variant(true));
    host->keepMarks();
    const auto later = makeHost();
    EXPECT_TRUE(
        later->marks.isSet(Mark::ZoneBoundaries) && later->marks.showsScaleBar() && later->instantHelpOn);
    try {
        mainForm.get("mnuViewNothing");
        FAIL();
    } catch (const AutomationError& error) {
        EXPECT_EQ(error.number(), errors::NoSuchMember);
        EXPECT_THAT(error.what(), HasSubstr("mnuViewNothing"));
    }
}

TEST_F(HostSettings, AtMostTwoLabelsAreChosenInTheMenu) {
    ViewMarks marks; // begins with the point numbers
    const std::pair<Mark, std::vector<Mark>> steps[] = {{Mark::Heights, {Mark::PointNumbers, Mark::Heights}},
        {Mark::AlphaIds, {Mark::AlphaIds, Mark::Heights}}, {Mark::PointsOnly, {}},
        {Mark::Descriptions, {Mark::Descriptions}}};
    for (const auto& [mark, labels] : steps) {
        marks.choose(mark, true);
        EXPECT_EQ(marks.labels(), labels);
        EXPECT_EQ(marks.isSet(Mark::PointsOnly), labels.empty());
    }
    marks.choose(Mark::Descriptions, false);
    EXPECT_TRUE(marks.isSet(Mark::PointsOnly));
}

} // namespace
