#include "lsoptions/frm_ls_options.h"
#include "preferences/c_defaults_loader.h"
#include "preferences/editor_choice.h"
#include "support/error_of.h"
#include "support/ls_world.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace genutil {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

// A host with a settings store that notes its calls and can fail at each.
struct StoreHost : fake::LSHost {
    std::string failing;
    bool opens = true;
    bool closes = true;
    std::set<std::string> existing; // files

    void note(const std::string& what) {
        log.push_back(what);
        if (!failing.empty() && what.starts_with(failing))
            throw Error(errors::PathAccess, failing + " has failed");
    }

    struct Store : SettingsStore {
        StoreHost& host;
        explicit Store(StoreHost& owner) : host(owner) {}
        std::string ProgramSectionName() override { return "Kestal"; }
        bool OpenSettingsStore(const RecordPtr&, bool& storeFlag, bool& workingCopy) override {
            host.note("Open");
            storeFlag = workingCopy = true;
            return host.opens;
        }
        void SaveAllSettings(const SettingsChoice& choice, const RecordPtr& prog, const RecordPtr& job,
            const RecordPtr&, const RecordPtr& preferences, const RecordPtr&, bool storeFlag) override {
            std::string flags;
            for (const bool flag : {choice.programChanged, choice.programPathMissing, choice.preferences,
                     choice.jobConfiguration, choice.options, choice.further, storeFlag})
                flags += flag ? '1' : '0';
            host.note("Save " + flags + " " + prog->read("ListFolder").toText() + " " +
                      preferences->read("KFactor").toText() + (job ? " job" : ""));
        }
        void CloseSettingsStore(const RecordPtr&, bool, bool, bool& changed) override {
            host.note("Close");
            changed = host.closes;
        }
    };
    std::unique_ptr<SettingsStore> createSettingsStore() override { return std::make_unique<Store>(*this); }

    struct Procedures : fake::FakeGeneralProcedures {
        StoreHost& host;
        explicit Procedures(StoreHost& owner) : FakeGeneralProcedures(owner), host(owner) {}
        void SplitPath(
            const std::string& path, std::string& file, std::string& folder, std::string& drive) override {
            const auto slash = path.find_last_of("/\\") + 1;
            drive = path.substr(0, path.find(':') + 1);
            folder = path.substr(drive.size(), slash - drive.size());
            file = path.substr(slash);
        }
        bool FileExists(const std::string& path) override { return host.existing.contains(path); }
        std::string FitPathToLabel(const std::string& path, Control&, Form&) override {
            return "fitted " + path;
        }
        std::string ListFolderFor(
            std::int16_t location, const std::string& data, const std::string& job) override {
            return std::to_string(location) + data + job;
        }
        void BeforeSave(Form&) override { host.note("BeforeSave"); }
    };
    std::unique_ptr<GeneralProcedures> createGeneralProcedures() override {
        return std::make_unique<Procedures>(*this);
    }
};

struct Preferences : testing::Test {
    StoreHost host;
    fake::FakeFiles files;
    fake::ScriptedDesktop desktop;
    Component component{desktop, files, host};
    cDefaultsLoader loader{component};
    RecordPtr IHelp = record({{"InstantHelpOn", false}});
    RecordPtr prog = fake::programObject();
    RecordPtr currentJob = record({{"JobPath", "/jobs/"}});
    std::shared_ptr<fake::FakeRecord> mainForm = std::make_shared<fake::FakeRecord>();
    RecordPtr genPrefs = record({{"StartMaximized", false}, {"ListGroup", std::int16_t{2}},
        {"DefaultEditor", "/usr/bin/ed\x7F-n\x7F-x"}, {"MultiplePointEntry", true}, {"KFactor", 0.13},
        {"KeepBackupsInRecycleBin", true}, {"ShowExtension", true}, {"LoadLastJob", true}});
    RecordPtr LSOptPrefs = fake::optionSet();

    Preferences() {
        prog->write("SettingsWorkFile", "/home/kestal.work");
        prog->write("DataPath", "/data/");
        prog->write("ListFolder", "");
        prog->write("WindowsFolder", "C:\\Windows");
        prog->write("IsWin9xFamily", false);
        prog->write("IsWinNTFamily", false);
        mainForm->children["mnuHelpInstantHelp"] = record({{"Checked", false}});
    }
    static RecordPtr record(std::map<std::string, Value, std::less<>> values) {
        return std::make_shared<fake::FakeRecord>(std::move(values));
    }
    bool show(const std::function<void(frmDefaults&)>& act) {
        desktop.acts.push_front([act](Form& form) { act(dynamic_cast<frmDefaults&>(form)); });
        return loader.LoadDefaultsForm(IHelp, prog, currentJob, mainForm, genPrefs, LSOptPrefs);
    }
    static void key(Form& form, int code, bool ctrl = false) {
        form.userKey({.code = code, .ctrl = ctrl});
        form.userCharacter(code);
    }
};

TEST_F(Preferences, ShowsWhatIsStoredAndStoresWhatIsShown) {
    const RecordPtr before = genPrefs, options = LSOptPrefs, program = prog;
    EXPECT_TRUE(show([](frmDefaults& form) {
        EXPECT_EQ(form.lblEditor.caption.get(), "fitted /usr/bin/ed");
        EXPECT_TRUE(form.optStartSize[1].selected && !form.optStartSize[0].selected);
        EXPECT_TRUE(form.optPromptMode[1].selected && form.optListGroup[2].selected);
        EXPECT_TRUE(!form.chkInstantHelp.ticked && form.chkLoadLast.ticked && form.chkShowExtn.ticked);
        EXPECT_EQ(form.optListGroup[0].caption.get(), "/opt/kestal/List");
        EXPECT_EQ(form.optListGroup[0].width.get(), form.lblTestLength.width + 348);
        form.optStartSize[0].userSelect();
        form.optPromptMode[0].userSelect();
        EXPECT_FALSE(form.optStartSize[1].selected || form.optPromptMode[1].selected);
        form.chkLoadLast.userToggle();
        form.chkInstantHelp.userToggle();
        form.cmdOK.userPress();
    }));
    EXPECT_THAT(host.log, Contains("Save 0110001 2/data//jobs/ 0.13 job"));
    EXPECT_NE(genPrefs, before);
    EXPECT_TRUE(LSOptPrefs == options && prog == program) << "neither has been saved";
    EXPECT_EQ(genPrefs->read("DefaultEditor"), Value("/usr/bin/ed"));
    EXPECT_TRUE(genPrefs->read("StartMaximized").toBool() && genPrefs->read("ShowExtension").toBool());
    EXPECT_FALSE(genPrefs->read("MultiplePointEntry").toBool() || genPrefs->read("LoadLastJob").toBool());
    EXPECT_TRUE(IHelp->read("InstantHelpOn").toBool());
    EXPECT_TRUE(mainForm->child("mnuHelpInstantHelp")->read("Checked").toBool());
    EXPECT_TRUE(files.wiped.empty());
}

TEST_F(Preferences, TurnsStoredAndTypedTextsIntoValuesThatCanBeUsed) {
    const struct {
        std::int16_t location, kept;
        const char* typed;
        double factor;
    } cases[] = {{0, 1, "abc", 0}, {3, 1, "0.13xyz", 0.13}, {-1, 1, "", 0}, {1, 1, " - 0,2", -0.2},
        {2, 2, "1e999", 0}};
    currentJob = nullptr;
    setNumberLocale({",", "."});
    for (const auto& each : cases) {
        genPrefs->write("ListGroup", each.location);
        host.log.clear();
        EXPECT_TRUE(show([&](frmDefaults& form) {
            form.txtKfactor.userEdit(each.typed);
            form.cmdOK.userPress();
        }));
        EXPECT_EQ(genPrefs->read("ListGroup").toInt16(), each.kept);
        EXPECT_EQ(genPrefs->read("KFactor").toDouble(), each.factor) << each.typed;
        EXPECT_THAT(host.log, Contains(HasSubstr(" " + std::to_string(each.kept) + "/data/ ")));
        show([](frmDefaults& form) { form.cmdOK.userPress(); });
        EXPECT_EQ(genPrefs->read("KFactor").toDouble(), each.factor) << "shown and saved again";
    }
    setNumberLocale({});
}

TEST_F(Preferences, AskBeforeBackupsAreDeletedForGoodAndBeforeEscapeEnds) {
    desktop.answers = {Answer::Cancel, Answer::Ok, Answer::Cancel, Answer::No};
    EXPECT_FALSE(show([&](frmDefaults& form) {
        EXPECT_TRUE(desktop.messages.empty()) << "not while it is loaded";
        form.chkRecycleBin.userToggle();
        EXPECT_TRUE(form.chkRecycleBin.ticked) << "cancelled";
        form.chkRecycleBin.userToggle();
        EXPECT_FALSE(form.chkRecycleBin.ticked);
        EXPECT_EQ(desktop.messages.size(), 2u);
        EXPECT_EQ(desktop.messages[0].defaultAnswer, Answer::Cancel);
        form.chkRecycleBin.userToggle();
        form.LSOptionsSaved = true; // by a dialog of options
        key(form, key::Escape);
        EXPECT_TRUE(form.isLoaded());
        key(form, key::Escape);
        EXPECT_FALSE(form.isLoaded());
    }));
    EXPECT_EQ(desktop.messages.size(), 4u);
    EXPECT_EQ(desktop.messages.back().text, "Save changes on exit?");
    EXPECT_FALSE(show([](frmDefaults& form) { EXPECT_TRUE(form.userClose(UnloadReason::Ending)); }));
    EXPECT_EQ(desktop.messages.size(), 4u) << "nothing would be lost";
    desktop.answers = {Answer::Cancel, Answer::No};
    EXPECT_FALSE(show([](frmDefaults& form) {
        form.LSOptionsSaved = true;
        EXPECT_FALSE(form.userClose(UnloadReason::Ending));
        EXPECT_TRUE(form.userClose(UnloadReason::Ending));
    }));
    EXPECT_THAT(host.log, Not(Contains("Open")));
}

TEST_F(Preferences, KeysMoveAndChangeWhatHasTheFocus) {
    show([&](frmDefaults& form) {
        form.tabPreferences.current = 1;
        form.txtKfactor.setFocus();
        EXPECT_THAT(host.log, Contains("SelectAllText"));
        key(form, key::Delete, true);
        EXPECT_EQ(form.txtKfactor.text.get(), "");
        key(form, key::Home);
        EXPECT_TRUE(form.activeControl() == &form.optStartSize[0] && form.tabPreferences.current == 0);
        key(form, key::End);
        EXPECT_EQ(form.activeControl(), &form.cmdOK);
        form.chkLoadLast.setFocus();
        key(form, key::Space);
        EXPECT_FALSE(form.chkLoadLast.ticked);
        for (const auto& [code, call] : std::initializer_list<std::pair<int, const char*>>{
                 {key::Up, "FocusPrevious"}, {key::Down, "FocusNext"}, {key::Enter, "NextControl"}}) {
            key(form, code);
            EXPECT_EQ(host.log.back(), call);
        }
        key(form, key::F1);
        EXPECT_EQ(host.log.back(), "ShowHelpFile frmDefaults /opt/kestal/");
        form.cmdCancel.userPress();
    });
}

TEST_F(Preferences, HandBackOptionsAndProgramByWhatBecameOfThem) {
    // Whether the dialog of options saves, whether the preferences are accepted, whether the program changed.
    for (const auto& [saves, accepts, changes] :
        {std::array{true, true, true}, std::array{true, false, true}, std::array{false, true, false}}) {
        const RecordPtr options = LSOptPrefs, program = prog;
        prog->write("Changed", changes);
        show([&, saves = saves, accepts = accepts](frmDefaults& form) {
            for (Button* const button : {&form.cmdLSOptions, &form.cmdLSPointOptions}) {
                desktop.acts.push_front([saves](Form& dialog) {
                    if (auto* const ls = dynamic_cast<frmLS_Options*>(&dialog); ls && saves) {
                        ls->checkOf(5).userToggle();
                        ls->cmdOK.userPress();
                    }
                });
                button->userPress();
            }
            EXPECT_EQ(form.LSOptionsSaved, saves);
            (accepts ? form.cmdOK : form.cmdCancel).userPress();
        });
        EXPECT_EQ(LSOptPrefs != options, saves && accepts);
        EXPECT_EQ(prog != program, changes);
    }
    EXPECT_THAT(host.log, Contains("Save 1110101 2/data//jobs/ 0.13 job"));
}

TEST_F(Preferences, LeaveNoWorkingCopyBehindWhenStoringFails) {
    const RecordPtr before = genPrefs;
    const auto accept = [](frmDefaults& form) { form.unload(UnloadReason::CloseBox); };
    for (const std::string step : {"Open", "Save", "Close"}) {
        host.failing = step;
        files.wiped.clear();
        EXPECT_EQ(fake::errorOf([&] { show(accept); }), errors::PathAccess) << step;
        EXPECT_EQ(files.wiped.size(), step == "Open" ? 0u : 1u) << step;
        EXPECT_TRUE(genPrefs == before && !IHelp->read("InstantHelpOn").toBool()) << step;
    }
    EXPECT_THAT(files.wiped, ElementsAre("/home/kestal.work"));
    host.failing = "Save";
    files.failures.emplace("wipeFile", Error(errors::PathAccess, "locked"));
    EXPECT_EQ(fake::errorOf([&] { show(accept); }), errors::PathAccess);
    EXPECT_THAT(host.log, Contains(HasSubstr("cDefaultsLoader::Function LoadDefaultsForm: locked")));
    files.failures.clear();

    // The main window has no such mark; the store has kept its working copy, or has not.
    host.failing.clear();
    mainForm->children.clear();
    for (const bool closes : {false, true}) {
        host.closes = closes;
        files.wiped.clear();
        EXPECT_EQ(fake::errorOf([&] { show(accept); }), errors::ObjectNotSet);
        EXPECT_EQ(files.wiped.size(), closes ? 0u : 1u);
    }

    // Settings that cannot be opened are not written; everything else is as after OK.
    mainForm->children["mnuHelpInstantHelp"] = record({{"Checked", true}});
    host.opens = false;
    host.log.clear();
    EXPECT_TRUE(show(accept));
    EXPECT_NE(genPrefs, before);
    EXPECT_THAT(host.log, Not(Contains("Close")));

    host.failing = "BeforeSave";
    show([](frmDefaults& form) {
        form.unload(UnloadReason::CloseBox);
        EXPECT_TRUE(form.isLoaded()) << "what could not be saved stays on the screen";
        form.cmdCancel.userPress();
    });
}

TEST_F(Preferences, LookForAnEditorWhereOneIs) {
    const struct {
        const char *stored, *family, *present, *folder, *file;
    } cases[] = {
        {"C:\\Ed\\ed.exe", "", "C:\\Ed\\ed.exe", "C:\\Ed\\", "ed.exe"},
        {"", "", "", "C:\\Windows", "NotePad.exe"},
        {"/old/ed", "", "/old/WordPad.exe", "/old/", "WordPad.exe"},
        {"gone.exe", "IsWin9xFamily", "C:\\Program Files\\Accessories\\WordPad.exe",
            "C:\\Program Files\\Accessories\\", "WordPad.exe"},
        {"", "IsWinNTFamily", "C:\\Program Files\\Windows NT\\Accessories\\WordPad.exe",
            "C:\\Program Files\\Windows NT\\Accessories\\", "WordPad.exe"},
        {"", "IsWinNTFamily", "C:\\Program Files\\Accessories\\WordPad.exe", "C:\\Windows", "NotePad.exe"},
    };
    for (const auto& each : cases) {
        genPrefs->write("DefaultEditor", each.stored);
        for (const char* const family : {"IsWin9xFamily", "IsWinNTFamily"})
            prog->write(family, std::string_view(family) == each.family);
        host.existing = {each.present};
        desktop.dialogs.clear();
        // Cancelled, of a name that would be cut in two, chosen.
        desktop.chosenFiles = {"",
            "/bin/e\x7F"
            "d",
            "/bin/my ed"};
        show([&](frmDefaults& form) {
            form.cmdSelectEdit.userPress();
            form.cmdSelectEdit.userPress();
            EXPECT_EQ(form.lblEditor.caption.get(), "fitted " + std::string(each.stored));
            form.cmdSelectEdit.userPress();
            form.cmdOK.userPress();
        });
        EXPECT_EQ(desktop.dialogs.front().folder, each.folder) << each.stored;
        EXPECT_EQ(desktop.dialogs.front().fileName, each.file);
        EXPECT_EQ(genPrefs->read("DefaultEditor"), Value("/bin/my ed"));
    }
    EXPECT_EQ(desktop.messages.size(), std::size(cases));
}

} // namespace
} // namespace genutil
