#include "frame/dialog_form.h"
#include "frame/loader.h"
#include "hostif/controls.h"
#include "support/world.h"

#include <gtest/gtest.h>

using namespace genutil;

namespace {

struct HelpedForm : DialogForm {
    explicit HelpedForm(Component& component) : DialogForm(component, "frmHelped", "Helped", "Helped") {
        on(cmdFail.click, "cmdFail_Click", [this] { inner(); });
        followMouse({&cmdFail});
        openHelpOnF1([] { return std::string("/opt/kestal/"); });
        moveOnEnter();
    }
    void Form_Setup() {
        run("Form_Setup", [&] {
            setUpKeysAndHelp({1400, 1401, 1403, 19002, 19002}, "help.txt");
            if (failing)
                inner();
            showAsSetUp();
        });
    }
    void inner() {
        run("inner", [] { throw Error(errors::TypeMismatch, "a detail"); });
    }
    Button cmdFail{*this, "cmdFail", "Fail"};
    bool failing = false;
};

struct HelpedLoader : FormLoader<HelpedForm> {
    explicit HelpedLoader(Component& component) : FormLoader(component, "cHelpedLoader") {}
    void LoadHelpedForm(std::int16_t modal, bool failing = false) {
        run("LoadHelpedForm", [&] {
            load(
                [&](HelpedForm& f) {
                    f.modal = modal;
                    f.MenuIhelp = true;
                    f.failing = failing;
                },
                [](HelpedForm& f) { f.Form_Setup(); }, [](HelpedForm&) {});
        });
    }
};

struct Frame : ::testing::Test, fake::World {

    Error raisedBy(const std::function<void()>& step) {
        try {
            step();
        } catch (const Error& error) {
            return error;
        }
        return Error(0, "nothing was raised");
    }
};

TEST_F(Frame, ReportsAnErrorAtEveryProcedureAndRaisesItWithTheStandardDescription) {
    HelpedLoader loader(component);
    const Error error = raisedBy([&] { loader.LoadHelpedForm(1, true); });
    EXPECT_EQ(error.number(), errors::TypeMismatch);
    EXPECT_EQ(error.source(), "(Class Module) cHelpedLoader::Sub LoadHelpedForm");
    EXPECT_EQ(error.description(), standardDescription(errors::TypeMismatch));
    EXPECT_TRUE(host.logged("ReportProcError (Form) Helped::Sub inner: a detail"));
    EXPECT_TRUE(host.logged("ReportProcError (Form) Helped::Sub Form_Setup: Type mismatch"));
    EXPECT_EQ(loader.form(), nullptr) << "a form that failed to set itself up is dropped";
}

TEST_F(Frame, EndsAnErrorAtTheEventHandler) {
    HelpedLoader loader(component);
    loader.LoadHelpedForm(0);
    loader.form()->cmdFail.userPress();
    EXPECT_TRUE(host.logged("ReportProcError (Form) Helped::Sub inner: a detail"));
    EXPECT_TRUE(host.logged("ReportEventError (Form) Helped::Sub cmdFail_Click: Type mismatch"));
}

TEST_F(Frame, SkipsOneReportWhenTheHostAsksAndReactivatesByName) {
    const auto fail = [&] {
        procedure(
            component, [] { return std::string("name"); }, [] { throw 1; });
    };
    host.skipNextReport = true;
    EXPECT_EQ(raisedBy(fail).number(), errors::InternalError);
    EXPECT_TRUE(host.log.empty());
    EXPECT_FALSE(host.skipNextReport);
    host.skipNextReport = true;
    GenUtil(component).ReportError("ignored", "reActivate");
    EXPECT_FALSE(host.skipNextReport);
    EXPECT_TRUE(host.log.empty());
}

TEST_F(Frame, TellsTheUserWhenAnEventErrorCannotBeReported) {
    host.missing = {"errHandler"};
    HelpedLoader loader(component);
    loader.LoadHelpedForm(0);
    loader.form()->cmdFail.userPress();
    ASSERT_EQ(desktop.messages.size(), 1u);
    EXPECT_EQ(desktop.messages[0].title, "Kestal utilities");
    EXPECT_NE(desktop.messages[0].text.find("(Form) Helped::Sub cmdFail_Click"), std::string::npos);
    EXPECT_NE(desktop.messages[0].text.find("errHandler"), std::string::npos);
    // A procedure's error still reaches its caller with its own number.
    EXPECT_EQ(raisedBy([&] { loader.form()->inner(); }).number(), errors::TypeMismatch);
}

TEST_F(Frame, LetsInstantHelpFollowActivationAndTheMouseOnlyWhenAskedFor) {
    HelpedLoader loader(component);
    loader.LoadHelpedForm(0);
    HelpedForm& form = *loader.form();
    EXPECT_TRUE(host.logged("SetupHelp frmHelped 1401 1403 19002 19002 help.txt"));
    EXPECT_TRUE(host.logged("ShowFormHelp frmHelped"));
    form.cmdFail.mouseMove();
    EXPECT_TRUE(host.logged("ShowControlHelp cmdFail"));

    host.log.clear();
    form.userActivate(false);
    form.cmdFail.mouseMove();
    form.mouseMove();
    form.MenuIhelp = false;
    form.userActivate(true);
    form.cmdFail.mouseMove();
    form.mouseMove();
    EXPECT_TRUE(host.log.empty());
    form.unload();
    EXPECT_TRUE(host.logged("InstantHelp released"));
}

TEST_F(Frame, OpensHelpOnF1AndConsumesTheKeyEvenWhenHelpFails) {
    HelpedLoader loader(component);
    loader.LoadHelpedForm(0);
    EXPECT_TRUE(loader.form()->userKey({.code = key::F1}));
    EXPECT_TRUE(host.logged("ShowHelpFile frmHelped /opt/kestal/"));
    host.failing = {"ShowHelpFile"};
    EXPECT_TRUE(loader.form()->userKey({.code = key::F1}));
    EXPECT_TRUE(host.logged("ReportEventError (Form) Helped::Sub Form_KeyDown: ShowHelpFile failed"));
}

TEST_F(Frame, MovesToTheNextControlOnEnterAndConsumesOnlyThat) {
    HelpedLoader loader(component);
    loader.LoadHelpedForm(0);
    EXPECT_TRUE(loader.form()->userCharacter('\r'));
    EXPECT_EQ(host.log.back(), "NextControl");
    host.log.clear();
    EXPECT_FALSE(loader.form()->userCharacter('5'));
    EXPECT_TRUE(host.log.empty());
}

TEST_F(Frame, KeepsAModelessFormUntilTheNextOneAndReleasesAModalOne) {
    HelpedLoader loader(component);
    loader.LoadHelpedForm(1);
    EXPECT_EQ(loader.form(), nullptr);
    loader.LoadHelpedForm(0);
    const auto first = loader.form();
    loader.SetBlank();
    EXPECT_EQ(loader.form(), first);
    loader.LoadHelpedForm(0);
    EXPECT_NE(loader.form(), first);
    EXPECT_EQ(desktop.openForms.size(), 2u);
    { const HelpedLoader other(component); }
    EXPECT_TRUE(first->isLoaded());
}

} // namespace
