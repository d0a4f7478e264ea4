#include "host/late_bound.h"
#include "host/services.h"
#include "host/settings_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <fstream>

using namespace kestal;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

QString contentsOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

class HostTest : public testing::Test {
protected:
    QString path(const QString& name) const { return folder_.filePath(name); }
    std::string file(const char* name) const { return path(name).toStdString(); }
    HostPtr makeHost() {
        HostPaths paths;
        paths.settings = path("kestal.ini");
        paths.log = path("kestal.log");
        paths.help = path("help.txt");
        auto host = std::make_shared<Host>(paths);
        host->attended = false;
        return host;
    }

private:
    QTemporaryDir folder_;
};

TEST_F(HostTest, SettingsComeBackAsTheSameText) {
    const std::string values[] = {"0,1000,2000,6000,9000", "", " blanks ", "\"quoted\", 'twice'",
        "a;b=c#d\\e\\n", "\u00E9\u4E2D\U0001F4D0", "@Invalid()", "line\nbreak\ttab", "true", "007"};
    for (const std::string& value : values) {
        writeSetting(file("settings.ini"), "Kestal", "File View/Window", value);
        EXPECT_EQ(readSetting(file("settings.ini"), "Kestal", "File View/Window", "absent"), value);
    }
    EXPECT_EQ(readSetting(file("settings.ini"), "Kestal", "Other", "a,b"), "a,b");
    EXPECT_EQ(readSetting(file("none.ini"), "Kestal", "Other", "x"), "x");
}

TEST_F(HostTest, SettingsWrittenByHandKeepTheirCommas) {
    std::ofstream(file("hand.ini")) << "[Kestal]\nFile_View_Window=0,1000,2000,6000,9000\n";
    EXPECT_EQ(readSetting(file("hand.ini"), "Kestal", "File_View_Window", ""), "0,1000,2000,6000,9000");
}

TEST_F(HostTest, ASettingThatCannotBeStoredIsAnError) {
    EXPECT_THROW(writeSetting("/proc/kestal.ini", "Kestal", "Key", "1"), AutomationError);
    EXPECT_THROW(writeSetting("relative.ini", "Kestal", "Key", "1"), AutomationError);
    EXPECT_THROW(readSetting(file("a.ini"), "Kestal", "", "1"), AutomationError);
}

TEST_F(HostTest, RunAndWaitPassesTheArgumentsAsTheyAreWithoutAShell) {
    const std::string script = file("echo arguments.sh");
    std::ofstream(script) << "#!/bin/sh\nout=$1; shift\nprintf '<%s>' \"$@\" > \"$out\"\nexit 7\n";
    QFile::setPermissions(
        QString::fromStdString(script), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const auto strings = makeStrUtil(nullptr);
    const auto files = makeFileProcs(makeHost());
    const std::string names[] = {"plain.log", "a b  c.log", "say \"hi\".log", "$(touch x) `id` $HOME *.log",
        "-n.log", "back\\slash\\", "\u00E4\u00F6.log", "'; echo"};
    for (const std::string& name : names) {
        const Variant command =
            LateBound(strings.get())
                .call("EditorCommand",
                    {Variant(std::string_view(script + '\x7F' + "\"" + file("out.txt") + "\" --wait")),
                        Variant(std::string_view(name))});
        EXPECT_EQ(int32Of(LateBound(files.get()).call("RunAndWait", {command})), 7);
        const QString expected =
            "<--wait><" + QString::fromStdString(name.starts_with('-') ? "./" + name : name) + ">";
        EXPECT_EQ(contentsOf(path("out.txt")), expected);
    }
}

TEST_F(HostTest, AProgramThatDoesNotStartIsReportedAndReturns) {
    const auto host = makeHost();
    const auto files = makeFileProcs(host);
    EXPECT_EQ(int32Of(LateBound(files.get()).call("RunAndWait", {Variant("/no/such/editor x")})), -1);
    EXPECT_THAT(contentsOf(host->log.path()).toStdString(), HasSubstr("/no/such/editor"));
    EXPECT_THROW(LateBound(files.get()).call("RunAndWait", {Variant("\"open")}), AutomationError);
    EXPECT_THROW(LateBound(files.get())
                     .call("FileDate", {Variant("/no/such"), Variant(std::int16_t{0}), Variant(true),
                                           Variant(std::int16_t{1})}),
        AutomationError);
}

TEST_F(HostTest, ErrorReportsGoToTheLogAndEventErrorsToTheUserToo) {
    const auto host = makeHost();
    std::vector<std::string> shown;
    host->showProblem = [&](const QString& problem) { shown.push_back(problem.toStdString()); };
    const auto handler = makeErrHandler(host);
    const LateBound errHandler(handler.get());
    errHandler.call("ReportProcError", {Variant("Disk full"), Variant("Sub A"), Variant(false)});
    errHandler.call("ReportEventError", {Variant("No\nprinter"), Variant("Sub B")});
    errHandler.call("ReportEventError", {Variant("Late"), Variant("Sub C")});
    EXPECT_THAT(shown, ElementsAre("No\nprinter", "Late"));
    const std::string log = contentsOf(host->log.path()).toStdString();
    EXPECT_THAT(log, HasSubstr("Late  In Sub C\n"));
    EXPECT_THAT(log, HasSubstr("Sub A: Disk full\n"));
    EXPECT_THAT(log, HasSubstr("No | printer  Disk full | In Sub B\n"));
    errHandler.put("SkipNextReport", Variant(true));
    EXPECT_TRUE(truthOf(errHandler.get("SkipNextReport")));
}

TEST_F(HostTest, ALogThatGrowsTooLargeKeepsOneOldFile) {
    constexpr qint64 largest = 200;
    LogFile log(path("kestal.log"), largest);
    for (int i = 0; i < 40; ++i)
        log.write(QString("entry %1").arg(i));
    log.write(QString(1000, 'x'));
    EXPECT_LE(QFile(log.path()).size(), largest);
    EXPECT_LE(QFile(log.oldPath()).size(), largest);
    EXPECT_THAT(contentsOf(log.oldPath()).toStdString(), HasSubstr("entry 39"));
    EXPECT_EQ(QDir(path(".")).entryList(QDir::Files).size(), 2);
}

// A form of the component, as far as the focus needs it.
class FakeControl : public AutomationObject {
public:
    FakeControl(std::string& active, const char* name, std::int32_t tabIndex, bool enabled)
        : AutomationObject(name) {
        property("Name", [name] { return Variant(name); });
        property("TabIndex", [tabIndex] { return Variant(tabIndex); });
        property("Enabled", [enabled] { return Variant(enabled); });
        property("Visible", [] { return Variant(true); });
        method("SetFocus", [&active, name] { active = name; });
    }
};

class FakeForm : public AutomationObject {
public:
    std::string active;
    std::vector<Ref<IDispatch>> all;

    FakeForm() : AutomationObject("form") {
        const std::tuple<const char*, int, bool> controls[] = {{"third", 9, true}, {"label", -1, true},
            {"first", 0, true}, {"off", 1, false}, {"second", 4, true}};
        for (const auto& [name, tabIndex, enabled] : controls)
            all.push_back(Ref<IDispatch>::adopt(new FakeControl(active, name, tabIndex, enabled)));
        property("Controls", [this] { return Variant(static_cast<IDispatch*>(this)); });
        property("Count", [this] { return Variant(static_cast<std::int32_t>(all.size())); });
        method("Item", [this](std::int32_t i) { return all.at(static_cast<std::size_t>(i)); });
        property("ActiveControl", [this] {
            for (const auto& each : all)
                if (static_cast<AutomationObject*>(each.get())->className() == active)
                    return Variant(each.get());
            return Variant(static_cast<IDispatch*>(nullptr));
        });
    }
};

TEST_F(HostTest, TheFocusFollowsTheTabOrderOverUsableControls) {
    struct Case {
        const char* member;
        const char* from;
        std::int16_t steps;
        bool stops;
        const char* to;
    };
    const Case cases[] = {
        {"FocusNext", "", 1, false, "first"},
        {"FocusNext", "first", 1, false, "second"},
        {"FocusNext", "third", 1, false, "first"},
        {"FocusNext", "third", 1, true, "third"},
        {"FocusPrevious", "first", 1, false, "third"},
        {"FocusPrevious", "third", 2, false, "first"},
        {"FocusPrevious", "second", 5, true, "first"},
    };
    const auto service = makeGenProcs(makeHost());
    const auto form = Ref<FakeForm>::adopt(new FakeForm);
    for (const Case& each : cases) {
        form->active = each.from;
        LateBound(service.get())
            .call(each.member, {Variant(form.get()), Variant(each.steps), Variant(each.stops)});
        EXPECT_EQ(form->active, each.to) << each.member << " from " << each.from;
    }
}

TEST_F(HostTest, EveryServiceClassCreatesItsObject) {
    const auto host = makeHost();
    for (const ServiceClass& service : serviceClasses())
        EXPECT_TRUE(service.create(host)) << service.name.progId;
}

// What the instant-help service asks of a form or a control.
class FakeTopic : public AutomationObject {
public:
    FakeTopic(const char* name, std::int32_t topic) : AutomationObject(name) {
        property("Name", [name] { return Variant(name); });
        property("HelpContextID", [topic] { return Variant(topic); });
    }
};

TEST(InstantHelpPlace, ItIsBesideTheWindowOrElseOverACornerWhereItHidesNothingOfUse) {
    const QRect screen(0, 0, 1000, 800), small(0, 0, 640, 400);
    const PanelSizes sizes{{400, 200}, {600, 120}, {200, 380}};
    struct Case {
        QRect window, screen;
        std::vector<QRect> visible;
        QRect shown, wanted;
    };
    const Case cases[] = {{{100, 300, 450, 200}, screen, {}, {}, {556, 300, 400, 200}},
        {{350, 700, 450, 100}, screen, {}, {}, {350, 494, 400, 200}},
        {{300, 140, 600, 530}, screen, {}, {}, {300, 676, 600, 120}},
        {{250, 0, 750, 800}, screen, {}, {}, {44, 0, 200, 380}}, {small, small, {}, {}, {240, 0, 400, 200}},
        {small, small, {{500, 50, 10, 10}}, {}, {0, 200, 400, 200}},
        {small, small, {{600, 350, 10, 10}}, {0, 0, 400, 200}, {0, 0, 400, 200}},
        {small, small, {{500, 50, 10, 10}, {100, 300, 10, 10}, {100, 50, 10, 10}}, {}, {240, 200, 400, 200}}};
    for (const Case& each : cases) {
        const QRect place = placeBeside(each.window, each.screen, sizes, each.visible, each.shown);
        EXPECT_EQ(place, each.wanted)
            << place.x() << ' ' << place.y() << ' ' << place.width() << ' ' << each.wanted.x();
    }
}

TEST_F(HostTest, InstantHelpShowsTheTopicOfTheControlOrElseOfTheForm) {
    std::ofstream(file("help.txt"))
        << "[1800] Viewer\n.\n[1802] Select\n.\n[1900] Foreign\n.\n[19999] Shared\n.\n";
    std::ofstream(file("other.txt")) << "[1800] Other source\n.\n";
    const auto host = makeHost();
    QString shown;
    host->showInstantHelp = [&](const QString& title, const QString&) { shown = title; };
    const auto service = makeInstantHelp(host);
    const LateBound help(service.get());
    const auto object = [](const char* name, int topic) {
        return Ref<IDispatch>::adopt(new FakeTopic(name, topic));
    };
    const auto form = object("frmFileView", 1800);
    const auto setUp = [&](const QString& source) {
        help.call("SetupHelp", {Variant(form.get()), Variant(1801), Variant(1805), Variant(19999),
                                   Variant(19999), Variant(std::string_view(source.toStdString()))});
    };
    const auto label = object("lblDummy", 0);
    setUp(host->paths.help);
    help.call("AttachComboLabel", {Variant(label.get()), Variant(object("cboKind", 1802).get())});
    const std::pair<Ref<IDispatch>, const char*> cases[] = {{object("cmdSelect", 1802), "Select"},
        {object("cmdOK", 19999), "Shared"}, {object("cmdOther", 1900), "Viewer"},
        {object("picture", 0), "Viewer"}, {label, "Select"}};
    for (const auto& [control, title] : cases) {
        shown.clear();
        help.call("ShowControlHelp", {Variant(form.get()), Variant(control.get())});
        EXPECT_EQ(shown, title);
    }
    shown.clear();
    help.call("ShowControlHelp", {Variant(form.get()), Variant(object("cmdLost", 1805).get())});
    EXPECT_EQ(shown, "") << "a topic without a text changes nothing";
    setUp(path("other.txt"));
    help.call("ShowFormHelp", {Variant(form.get())});
    EXPECT_EQ(shown, "Other source");
    help.put("InstantHelpOn", Variant(true));
    EXPECT_TRUE(host->instantHelpOn) << "the choice is the program's";
}

TEST_F(HostTest, TheProgramTakesOverWhatADialogHasChanged) {
    const auto host = makeHost();
    const auto changed = Ref<RecordObject>::adopt(host->prog->clone());
    changed->set("FileViewState", Variant(2));
    host->takeProgram(changed.get());
    EXPECT_FALSE(host->prog->isChanged());
    EXPECT_EQ(int16Of(makeHost()->prog->value("FileViewState")), 2) << "it outlives the session";
    std::ofstream(file("kestal.ini")) << "[Kestal]\nFileViewState=many\n";
    EXPECT_EQ(int16Of(makeHost()->prog->value("FileViewState")), 0);
    EXPECT_THAT(contentsOf(path("kestal.log")).toStdString(), HasSubstr("FileViewState is not used"));
}

TEST_F(HostTest, FoldersAndPathsFollowTheirRules) {
    const auto host = makeHost();
    const auto service = makeGenProcs(host);
    const LateBound genProcs(service.get());
    const auto folder = [&](int location, const char* job) {
        return textOf(genProcs.call("ListFolderFor", {Variant(location), Variant("/data/"), Variant(job)}));
    };
    EXPECT_EQ(folder(0, "/job/"), host->paths.program.toStdString() + "List/");
    EXPECT_EQ(folder(1, "/job/"), "/data/List/");
    EXPECT_EQ(folder(2, "/job/"), "/job/");
    EXPECT_EQ(folder(2, ""), "/data/") << "no job is open";
    EXPECT_THROW(folder(3, ""), AutomationError);
    host->setDataPath("/other");
    EXPECT_EQ(host->prog->text("ListFolder"), "/other/List/") << "it follows the data folder";

    const auto exists = [&](const QString& name, bool foldersToo) {
        return truthOf(genProcs.call(
            "FileExists", {Variant(std::string_view(name.toStdString())), Variant(foldersToo)}));
    };
    std::ofstream(file("there.log")) << "x";
    EXPECT_TRUE(exists(path("there.log"), false));
    EXPECT_FALSE(exists(path("."), false));
    EXPECT_TRUE(exists(path("."), true));

    k_genutil::Text name("dam.v2.gdb");
    const Variant extension =
        genProcs.call("SplitExtension", {byReference(name.inOut()), byReference(name.inOut()), Variant(0)});
    EXPECT_EQ(textOf(extension), ".gdb");
    EXPECT_EQ(name.utf8(), "dam.v2") << "the same text is argument and result";

    Variant null;
    null.vt = VT_NULL;
    EXPECT_EQ(textOf(genProcs.call("FieldOrDefault", {null, Variant("fallback")})), "fallback");
    EXPECT_EQ(textOf(genProcs.call("FieldOrDefault", {Variant(""), Variant("fallback")})), "");
}

} // namespace
