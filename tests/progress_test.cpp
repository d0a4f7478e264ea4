#include "progress/c_progress.h"
#include "support/world.h"

#include <gtest/gtest.h>

#include <optional>

using namespace genutil;

namespace {

struct Gauge : ::testing::Test, fake::World {
    std::optional<cProgress> progress{std::in_place, component};
};

TEST_F(Gauge, MovesOnlyForwardWithinTheScaleButRemembersEveryPercentage) {
    progress->GaugeSetup("Network adjustment", "Iteration ");
    struct Step {
        std::int16_t perCent;
        const char* count;
        int bar;
        const char* shown;
    };
    const Step steps[] = {{10, "1", 10, "1"}, {5, "2", 10, "2"}, {7, "3", 7, "3"}, {7, "", 7, "3"},
        {0, "4", 7, "4"}, {101, "5", 7, "5"}, {50, "6", 7, "6"}, {51, "7", 51, "7"}, {-3, "8", 51, "8"},
        {1, "", 1, "8"}, {100, "", 100, "8"}};
    for (const Step& step : steps) {
        progress->Gauge(step.count, step.perCent);
        EXPECT_EQ(progress->form()->pnlGauge.floodPercent, step.bar) << step.perCent;
        EXPECT_EQ(progress->form()->lblValue.caption.get(), step.shown) << step.perCent;
    }
    EXPECT_EQ(desktop.eventRounds, 5) << "events run when the bar moves";
    EXPECT_EQ(desktop.repaints, 8) << "a new count is painted at once";
}

TEST_F(Gauge, TakesItsWidthFromTheTitle) {
    for (const char* title : {"Go", "Least-squares adjustment of the network"}) {
        progress->GaugeSetup(title, "Points read: ");
        const frmProgress& form = *progress->form();
        EXPECT_EQ(form.width, form.lblTitle.width + 480);
        EXPECT_EQ(form.pnlGauge.width, form.lblTitle.width);
        EXPECT_EQ(form.lbl100.left + form.lbl100.width, form.pnlGauge.left + form.pnlGauge.width);
        EXPECT_EQ(form.lblValue.left, form.lblProgress.left + form.lblProgress.width);
        EXPECT_EQ(form.lblValue.caption.get(), "");
        EXPECT_EQ(form.left, (desktop.theScreen.width - form.width) / 2);
    }
    EXPECT_EQ(desktop.openForms.size(), 2u) << "a second set-up leaves the first window open";
}

TEST_F(Gauge, IsUsableWithAnyTitle) {
    const auto layOut = [&](const std::string& title) -> const frmProgress& {
        progress->GaugeSetup(title, "Points read: ");
        return *progress->form();
    };
    const double usual = layOut("Least-squares adjustment of the network").height;
    for (const char* shortOne : {"", "\n"})
        EXPECT_GE(layOut(shortOne).lblValue.width, desktop.textWidth({}, "12345"));
    const frmProgress& two = layOut("Least-squares adjustment\nof the network");
    EXPECT_EQ(two.lblTitle.width, desktop.textWidth(two.lblTitle.font, "Least-squares adjustment"));
    EXPECT_EQ(two.height, usual + 240);
    EXPECT_GE(two.lblProgress.top, two.lblTitle.top + two.lblTitle.height);
    const frmProgress& wide = layOut(std::string(5000, 'W'));
    EXPECT_LT(wide.width, desktop.theScreen.width);
    EXPECT_EQ(wide.width, wide.lblTitle.width + 480);
    EXPECT_GE(wide.left, 0);
}

TEST_F(Gauge, FailsBeforeSetUpAndIsHarmlessToRemoveTwice) {
    try {
        progress->Gauge("1", 1);
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), errors::ObjectNotSet);
        EXPECT_EQ(error.source(), "(Class Module) cProgress::Sub Gauge");
    }
    progress->GaugeRemove();
    progress->GaugeSetup("T", "L");
    progress->GaugeRemove();
    progress->GaugeRemove();
    EXPECT_TRUE(desktop.openForms.empty());
}

TEST_F(Gauge, ClosesItsWindowWhenDestroyedAndSurvivesItsRemovalByAnEvent) {
    progress->GaugeSetup("T", "L");
    desktop.onEvents = [&] { progress->GaugeRemove(); };
    progress->Gauge("1", 1);
    EXPECT_TRUE(desktop.openForms.empty());
    desktop.onEvents = nullptr;
    progress->GaugeSetup("T", "L");
    progress.reset();
    EXPECT_TRUE(desktop.openForms.empty());
}

TEST_F(Gauge, GoesOnWithoutAWindowWhenNoneCanBeShownOrTheUserClosedIt) {
    desktop.showFails = true;
    progress->GaugeSetup("T", "L");
    progress->Gauge("1", 1);
    desktop.showFails = false;
    progress->GaugeSetup("T", "L");
    progress->form()->unload(UnloadReason::CloseBox);
    progress->Gauge("2", 2);
    EXPECT_EQ(progress->form()->lblValue.caption.get(), "2");
}

} // namespace
