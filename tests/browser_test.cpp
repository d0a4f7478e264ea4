#include "browser/c_internal_browser_loader.h"
#include "support/world.h"

#include <gtest/gtest.h>

#include <functional>

using namespace genutil;

namespace {

struct Browser : ::testing::Test, fake::World {
    cInternalBrowserLoader loader{component};

    frmInternal_Browser& open(const std::string& page = "history.html") {
        loader.LoadForm(page);
        return *loader.form();
    }
    frmInternal_Browser& openWithPage() {
        open().webHistory_viewer.navigateComplete();
        return *loader.form();
    }
};

TEST_F(Browser, TakesFiveSixthsOfTheScreenAndAllOfASmallOne) {
    struct Case {
        int wide, high; // pixels
        double twipsPerPixel;
        bool isMaximized;
    };
    for (const Case& each : {Case{640, 480, 15, true}, Case{800, 601, 15, true}, Case{801, 600, 15, true},
             Case{801, 601, 15, false}, Case{1024, 768, 15, false}, Case{1920, 1080, 12, false},
             Case{800, 900, 1440.0 / 110, true}, Case{801, 900, 1440.0 / 110, false}}) {
        const Screen screen{
            each.wide * each.twipsPerPixel, each.high * each.twipsPerPixel, each.twipsPerPixel};
        desktop.theScreen = screen;
        const frmInternal_Browser& form = open();
        EXPECT_EQ(form.windowState == WindowState::Maximized, each.isMaximized)
            << each.wide << "x" << each.high;
        if (!each.isMaximized) {
            EXPECT_DOUBLE_EQ(form.width, screen.width * 5 / 6);
            EXPECT_DOUBLE_EQ(form.height, screen.height * 5 / 6);
        }
        EXPECT_EQ(form.caption.get(), "Kestal History");
    }
}

TEST_F(Browser, KeepsThePageAboveAStripWithTheCloseButtonAtEverySize) {
    frmInternal_Browser& form = open();
    const auto check = [&] {
        const WebView& page = form.webHistory_viewer;
        EXPECT_EQ(page.left, 0);
        EXPECT_EQ(page.top, 0);
        EXPECT_EQ(page.width, form.width - 80);
        EXPECT_EQ(page.height, form.height - 400);
        EXPECT_GE(form.cmdClose.top, page.top + page.height);
        EXPECT_LE(form.cmdClose.top + form.cmdClose.height, form.height);
        EXPECT_LE(form.cmdClose.left + form.cmdClose.width, form.width - 80);
        EXPECT_GT(form.cmdClose.left, form.width / 2 - 1000) << "towards the right";
    };
    check();
    for (const auto& [wide, high] : {std::pair(15360.0, 11520.0), {3000.0, 2000.0}, {6000.0, 900.0}}) {
        form.userResize(wide, high, WindowState::Normal);
        check();
    }
    form.userResize(0, 0, WindowState::Minimized); // nothing to lay out, and nothing to report
    EXPECT_EQ(form.webHistory_viewer.width, 0);
    EXPECT_TRUE(host.log.empty());
}

TEST_F(Browser, SwitchesCloseOffUntilThePageIsThereAndNeverAgain) {
    frmInternal_Browser& form = open("a.html");
    EXPECT_EQ(form.webHistory_viewer.address(), "a.html");
    EXPECT_EQ(form.HTMLpath, "a.html");
    EXPECT_FALSE(form.cmdClose.enabled);
    form.cmdClose.userPress();
    EXPECT_TRUE(form.isLoaded());
    form.webHistory_viewer.navigateComplete();
    EXPECT_TRUE(form.cmdClose.enabled);
    form.userResize(5000, 4000, WindowState::Normal);
    EXPECT_TRUE(form.cmdClose.enabled);
}

TEST_F(Browser, ClosesByButtonCloseBoxAndKeysAndLeavesOtherWindowsOpen) {
    const std::function<void(frmInternal_Browser&)> ways[] = {[](auto& form) { form.cmdClose.userPress(); },
        [](auto& form) { form.unload(UnloadReason::CloseBox); },
        [](auto& form) { form.mnuClose.userChoose(); },
        [](auto& form) { EXPECT_TRUE(form.userKey({.code = key::Escape})); }};
    for (const auto& close : ways) {
        const auto first = openWithPage().shared_from_this();
        frmInternal_Browser& second = openWithPage();
        ASSERT_EQ(desktop.openForms.size(), 2u);
        close(second);
        EXPECT_FALSE(second.isLoaded());
        EXPECT_EQ(loader.form().get(), &second) << "held until the next page";
        ASSERT_EQ(desktop.openForms.size(), 1u);
        first->unload();
    }
    open().unload(UnloadReason::CloseBox); // also while Close is off
    EXPECT_TRUE(desktop.openForms.empty());
    EXPECT_TRUE(host.log.empty());
}

TEST_F(Browser, HandsAWindowThatCannotBeMadeToTheHostAsAnError) {
    desktop.showFails = true;
    try {
        open();
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), errors::InternalError);
        EXPECT_EQ(error.source(), "(Class Module) cInternalBrowserLoader::Sub LoadForm");
    }
    EXPECT_TRUE(host.logged("ReportProcError (Form) InternalBrowser::Sub Form_Setup: no screen"));
    EXPECT_FALSE(loader.form());
}

TEST_F(Browser, LooksForWordsInTheStripAndEscapeEndsTheSearchBeforeTheWindow) {
    frmInternal_Browser& form = openWithPage();
    std::string asked;
    form.webHistory_viewer.searching.connect(
        [&](const std::string& text, bool backwards) { asked += text + (backwards ? "< " : "> "); });
    form.mnuFindNext.userChoose();
    ASSERT_TRUE(form.txtFind.visible) << "there is nothing to look for yet";
    EXPECT_EQ(form.activeControl(), &form.txtFind);
    form.txtFind.userEdit("arc");
    form.userKey({.code = key::Enter});
    form.userKey({.code = key::Enter, .shift = true});
    form.mnuFindPrevious.userChoose();
    EXPECT_EQ(asked, "arc> arc> arc< arc< ");
    form.webHistory_viewer.found(2, 7);
    EXPECT_EQ(form.lblStatus.caption.get(), "2 of 7");
    EXPECT_LE(form.lblStatus.left + form.lblStatus.width, form.cmdClose.left);
    form.webHistory_viewer.found(0, 0);
    EXPECT_EQ(form.lblStatus.caption.get(), "Not found");

    form.userKey({.code = key::Escape});
    EXPECT_FALSE(form.txtFind.visible);
    EXPECT_EQ(form.activeControl(), &form.webHistory_viewer);
    EXPECT_EQ(asked, "arc> arc> arc< arc< > ");
    EXPECT_TRUE(form.isLoaded());
    form.userKey({.code = key::Escape});
    EXPECT_FALSE(form.isLoaded());
}

TEST_F(Browser, SaysWhyALinkWasNotFollowedUntilAnotherPageComesAndZoomsWithinItsLimits) {
    frmInternal_Browser& form = openWithPage();
    form.webHistory_viewer.refused("Not opened");
    EXPECT_EQ(form.lblStatus.caption.get(), "Not opened");
    form.webHistory_viewer.navigateComplete();
    EXPECT_EQ(form.lblStatus.caption.get(), "");
    for (int i = 0; i < 30; ++i)
        form.mnuZoomIn.userChoose();
    EXPECT_EQ(form.webHistory_viewer.zoom, 3.0);
    form.webHistory_viewer.zoomWanted(-50);
    EXPECT_EQ(form.webHistory_viewer.zoom, 0.5);
    form.mnuZoomNormal.userChoose();
    EXPECT_EQ(form.webHistory_viewer.zoom, 1.0);
}

} // namespace
