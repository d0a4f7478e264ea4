#include "display/c_display_loader.h"
#include "support/display_world.h"
#include "support/plot_facts.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace genutil;

namespace {

struct DisplaySettings : ::testing::Test, fake::DisplayWorld {
    cDisplayLoader loader{component};
    bool alphasExist = true;

    // Shows the dialog to the user who then does `act`, and closes it by its close box unless that did.
    bool show(const std::function<void(frmDisplay&)>& act) {
        desktop.acts = {[&](Form& form) { act(dynamic_cast<frmDisplay&>(form)); }};
        written.clear();
        return loader.LoadDisplaySettingsForm(IHelp, mainForm, prog, jobCfg, nullptr, alphasExist);
    }
    void checkPoints(const std::string& indices) {
        for (std::size_t i = 0; i < pointBoxCount; ++i)
            check(displayBoxes()[i].menuItem, indices.find(char('0' + i)) != std::string::npos);
    }
    bool isChecked(const std::string& part, const char* member = "Checked") {
        return mainForm->children.at(part)->read(member).toBool();
    }
};

std::string tickedPoints(frmDisplay& form) {
    std::string indices;
    for (std::size_t i = 0; i < pointBoxCount; ++i)
        if (form.chkPoints(i).ticked)
            indices += char('0' + i);
    return indices;
}

// x ticked, o cleared; X and - while disabled.
std::string stateOf(std::initializer_list<const CheckBox*> boxes) {
    std::string states;
    for (const CheckBox* box : boxes)
        states += box->ticked ? (box->enabled ? 'x' : 'X') : (box->enabled ? 'o' : '-');
    return states;
}

TEST_F(DisplaySettings, ShowAtMostTwoLabelsAndPointsOnlyExactlyWithoutAny) {
    const struct {
        const char *inMenu, *opened, *clicks, *then;
    } cases[] = {
        {"", "", "134", "34"},
        {"0", "0", "1", "1"},
        {"0", "0", "0", "0"},
        {"01", "1", "", "1"},
        {"1", "1", "1", "0"},
        {"12", "12", "17", "27"},
        {"12", "12", "23", "3"}, // 1 is the oldest, although it stands alone
        {"123", "23", "", "23"},
        {"0", "0", "1023", "23"},
        {"12", "12", "02", "2"},
        {"12", "12", "113", "13"},
    };
    for (const auto& each : cases) {
        checkPoints(each.inMenu);
        EXPECT_TRUE(show([&](frmDisplay& form) {
            EXPECT_EQ(tickedPoints(form), each.opened) << each.inMenu;
            for (const char* click = each.clicks; *click; ++click)
                form.chkPoints(std::size_t(*click - '0')).userToggle();
            EXPECT_EQ(tickedPoints(form), each.then) << each.inMenu << " " << each.clicks;
            for (std::int16_t i = 0; i < 8; ++i)
                if (form.chkPoints(std::size_t(i)).ticked)
                    form.PointChecks(i, true); // shown already
            EXPECT_EQ(tickedPoints(form), each.then);
        }));
    }
}

TEST_F(DisplaySettings, EnableWhatTheJobHasAndKeepTheScaleBarWithItsPosition) {
    const struct {
        bool geodetic, noLinearScale;
        std::vector<const char*> inMenu;
        const char *opened, *click, *then; // PlotGeog, ScaleBar, ScaleDefault, ZoneBdys
        bool scaleBarShown;
    } cases[] = {
        {true, false, {"mnuViewScaleBar", "mnuViewDefault"}, "oxxo", "chkPlotGeog", "x--o", false},
        {true, false, {"mnuViewScaleBar", "mnuViewDefault"}, "oxxo", "chkScaleBar", "oo-o", false},
        {true, false, {"mnuViewScaleBar"}, "oxoo", "chkZoneBdys", "oxox", true},
        {true, false, {"mnuViewDefault", "mnuViewZoneBdys"}, "ooXx", "chkScaleBar", "oxxx", true},
        {true, false, {"mnuViewPlotGeog", "mnuViewScaleBar", "mnuViewDefault"}, "x-Xo", "chkPlotGeog", "ooXo",
            false},
        {false, false, {"mnuViewPlotGeog", "mnuViewZoneBdys"}, "X---", "chkZoneBdys", "X---", false},
        {true, true, {"mnuViewScaleBar", "mnuViewZoneBdys"}, "-xox", "chkPlotGeog", "-xox", true},
    };
    for (const auto& each : cases) {
        for (const char* item : {"mnuViewPlotGeog", "mnuViewScaleBar", "mnuViewDefault", "mnuViewZoneBdys"})
            check(item, std::ranges::count(each.inMenu, std::string_view(item)) > 0);
        check("mnuViewPtAlpha", true);
        jobCfg = record({{"GeodeticDisplays", each.geodetic}, {"NoLinearScale", each.noLinearScale}});
        host.hasGeoidFile = each.geodetic && !each.noLinearScale;
        host.usesGeoid = each.geodetic && each.noLinearScale;
        alphasExist = !each.noLinearScale;
        std::string then;
        show([&](frmDisplay& form) {
            const auto state = [&] {
                return stateOf(
                    {&form.chkPlotGeog, &form.chkScaleBar, &form.chkScaleDefault, &form.chkZoneBdys});
            };
            EXPECT_EQ(state(), each.opened) << each.click;
            EXPECT_EQ(stateOf({&form.chkPoints(2), &form.chkPoints(6), &form.chkPoints(7), &form.chkGeoid}),
                std::string(alphasExist ? "x" : "X") + (each.geodetic ? "ooo" : "---"));
            dynamic_cast<CheckBox&>(*form.findControl(each.click)).userToggle();
            EXPECT_EQ(then = state(), each.then) << each.opened;
        });
        EXPECT_EQ(isChecked("picScaleBar", "Visible"), each.scaleBarShown) << each.opened << each.click;
        EXPECT_EQ(isChecked("mnuViewZoneBdys"), then[3] == 'x');
    }
}

TEST_F(DisplaySettings, WriteEveryChoiceInOrderAndOnlyWhenAccepted) {
    const std::vector<std::string> order{"PtOnly", "PtNum", "PtAlpha", "PtDesc", "PtHts", "PtDeriv", "PtNVal",
        "PtVertDef", "LinesHt", "LinesRad", "LinesTrav", "LinesRef", "Geoid", "LinesLSang", "LinesLSdis",
        "LinesLSSDis", "LinesLSVA", "LinesLSGPS", "PtLSGPSPts", "PlotGeog", "ScaleBar", "Default",
        "ZoneBdys"};
    for (const std::size_t ticked : {3u, 8u, 13u, 18u, 20u, 22u}) {
        checkPoints("");
        EXPECT_TRUE(show([&](frmDisplay& form) {
            for (std::size_t i = pointBoxCount; i < form.boxes.size(); ++i)
                form.boxes[i].ticked = i == ticked;
            form.boxes[ticked].ticked = true;
            form.cmdOK.userPress();
        }));
        ASSERT_EQ(written.size(), order.size() + 1);
        EXPECT_EQ(written[22], "picScaleBar.Visible=" + std::to_string(ticked == 20));
        written.erase(written.begin() + 22);
        for (std::size_t i = 0; i < order.size(); ++i)
            EXPECT_EQ(written[i], "mnuView" + order[i] + (i == ticked ? ".Checked=1" : ".Checked=0"));
    }
    EXPECT_FALSE(show([](frmDisplay& form) {
        form.chkGeoid.ticked = true;
        form.cmdCancel.userPress();
    }));
    EXPECT_TRUE(written.empty());
}

TEST_F(DisplaySettings, NameAMissingPartOfTheMainWindowAndWriteNothing) {
    for (const char* part : {"mnuViewPtDeriv", "picScaleBar"}) {
        const RecordPtr earlier = std::exchange(mainForm->children[part], nullptr);
        try {
            show([](frmDisplay&) {});
            ADD_FAILURE() << part;
        } catch (const Error& error) {
            EXPECT_EQ(error.source(), "(Class Module) cDisplayLoader::LoadDisplaySettingsForm");
        }
        EXPECT_NE(host.log.back().find(part), std::string::npos) << host.log.back();
        EXPECT_TRUE(written.empty() && !loader.form());
        mainForm->children[part] = earlier;
    }
}

TEST_F(DisplaySettings, ListenToTheirKeys) {
    const struct {
        Answer answer;
        bool isOpen, accepted;
    } answers[] = {{Answer::Cancel, true, true}, {Answer::Yes, false, true}, {Answer::No, false, false}};
    for (const auto& each : answers) {
        desktop.answers = {each.answer};
        EXPECT_EQ(show([&](frmDisplay& form) {
            EXPECT_TRUE(form.userKey({.code = key::Escape}));
            EXPECT_EQ(form.isShown() && form.isLoaded(), each.isOpen);
            EXPECT_TRUE(form.userKey({.code = key::Escape, .repeated = true}));
        }),
            each.accepted);
        EXPECT_EQ(std::exchange(desktop.messages, {}).size(), 1u);
        // The end of the application asks the same once there is something to lose, and is no OK by itself.
        EXPECT_FALSE(show([](frmDisplay& form) { form.userClose(UnloadReason::Ending); }));
        EXPECT_TRUE(desktop.messages.empty());
        desktop.answers = {each.answer};
        EXPECT_EQ(show([&](frmDisplay& form) {
            form.boxes[8].userToggle();
            EXPECT_EQ(form.userClose(UnloadReason::Ending), each.answer != Answer::Cancel);
        }),
            each.accepted);
        EXPECT_EQ(std::exchange(desktop.messages, {}).size(), 1u);
    }
    show([&](frmDisplay& form) {
        CheckBox& box = form.boxes[8];
        box.setFocus();
        EXPECT_TRUE(form.userKey({.code = key::Space}) && box.ticked);
        EXPECT_TRUE(form.userKey({.code = key::Space, .repeated = true}) && box.ticked);
        EXPECT_TRUE(form.userKey({.code = key::Space}) && !box.ticked);
        form.cmdOK.setFocus();
        EXPECT_FALSE(form.userKey({.code = key::Space}));
        prog->write("ProgramFolder", "/elsewhere/");
        EXPECT_TRUE(form.userKey({.code = key::F1}) && form.userCharacter('\r'));
        EXPECT_TRUE(host.logged("ShowHelpFile frmDisplay /opt/kestal/") && host.logged("NextControl"));
    });
}

TEST_F(DisplaySettings, HaveTheirFocusOrderAndHelpOfTheirOwnTopics) {
    show([&](frmDisplay& form) {
        EXPECT_TRUE(host.logged("SetupHelp frmDisplay 8600 8605 19004 19006 kestal-help.txt"));
        std::map<int, std::string> order;
        for (Control* control : form.controls()) {
            if (control->tabIndex >= 0)
                order[control->tabIndex] = control->name();
            host.log.clear();
            control->mouseMove();
            EXPECT_EQ(host.logged("ShowControlHelp " + control->name()), !host.log.empty());
            EXPECT_TRUE(host.log.empty() || control->helpContextId > form.helpContextId) << control->name();
        }
        EXPECT_EQ(order.size(), form.boxes.size() + 2);
        EXPECT_EQ(order[0] + order[9] + order[12] + order[16] + order[17] + order[24],
            "chkGPSPointschkLSGPSVectorschkZoneBdyscmdCancelchkPoints0chkPoints7");
    });
}

TEST_F(DisplaySettings, HaveTheBoxesMenuItemsAndLegendThatTheProductDefines) {
    ASSERT_EQ(displayBoxes().size(), std::size(fake::plotFacts));
    for (const fake::PlotFact& fact : fake::plotFacts) {
        const auto box = std::ranges::find(displayBoxes(), fact.control, &DisplayBox::control);
        ASSERT_NE(box, displayBoxes().end()) << fact.control;
        EXPECT_EQ(box->caption, fact.caption);
        EXPECT_EQ(box->menuItem, fact.menuItem);
        ASSERT_EQ(box->legend.control == nullptr, fact.width == 0) << fact.control;
        if (fact.width == 0)
            continue;
        EXPECT_EQ(std::string(box->legend.control).substr(4), fact.control.substr(3));
        EXPECT_EQ(
            (std::array<int, 3>{box->legend.color.red, box->legend.color.green, box->legend.color.blue}),
            fact.colour)
            << fact.control;
        EXPECT_EQ("-d.x"[int(box->legend.style)], fact.style) << fact.control;
        EXPECT_EQ(box->legend.width, fact.width) << fact.control;
    }
}

} // namespace
