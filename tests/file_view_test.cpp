#include "fileview/window_fit.h"
#include "support/viewer.h"

#include <gtest/gtest.h>

using namespace genutil;
using fake::Viewer;

namespace {

TEST_F(Viewer, FixesTitleMenusAndMemoryByViewMode) {
    const std::string path = file("a.log", "text\n");
    struct Case {
        std::int16_t mode;
        std::string title;
        bool open, print, edit, remembers;
    };
    const std::string shown = ": " + path;
    const Case cases[] = {
        {1, "File Display" + shown, false, true, true, true},
        {4, "File Display" + shown, false, true, true, true},
        {21, "File Display" + shown, false, true, true, true},
        {22, "List Points" + shown, false, true, true, false},
        {23, "Development History", false, false, false, false},
        {24, "View File", true, true, true, true},
        {25, "Processing Log" + shown, true, true, true, true},
        {26, "View Data File" + shown, true, true, true, true},
        {29, "Inverse Report" + shown, true, true, true, true},
        {5, "File Display" + shown, false, true, true, false},
    };
    for (const Case& c : cases) {
        frmFileView& form = view(c.mode, path, c.mode == 4 ? " " : "ed");
        EXPECT_EQ(form.caption.get(), c.title) << c.mode;
        EXPECT_EQ(form.mnu_OpenFile.enabled, c.open) << c.mode;
        EXPECT_EQ(form.mnu_Print.enabled, c.print) << c.mode;
        EXPECT_EQ(form.mnu_SaveAs.visible, c.edit) << c.mode;
        EXPECT_EQ(form.mnu_Edit.visible, c.mode != 4) << c.mode;
        EXPECT_EQ(form.rtbViewText.locked, !c.edit) << c.mode;
        EXPECT_FALSE(form.mnu_Save.enabled || form.isModified()) << c.mode;
        host.settings.clear();
        form.userResize(6000, 4000, WindowState::Normal);
        EXPECT_EQ(host.settings.contains("File_View_Window"), c.remembers) << c.mode;
        host.settings.clear();
        for (const MenuItem* own : {&form.mnu_PrintPreview, &form.mnu_ExportPdf})
            EXPECT_EQ(own->enabled, c.print && c.mode != 24) << c.mode;
        EXPECT_EQ(form.mnu_Reload.enabled, c.mode != 24) << c.mode;
        form.userResize(15000, 11520, WindowState::Maximized);
        form.unload();
        EXPECT_EQ(form.prog->get(program::FileViewState), c.remembers ? 2 : 0) << c.mode;
        host.settings.clear();
    }
    EXPECT_EQ(loader.form()->rtbViewText.document()->line(0), "text");
    EXPECT_EQ(view(23, path).helpContextId, 7700);
    EXPECT_EQ(view(24, path).FileToView, "");
}

TEST_F(Viewer, FitsTheWindowToTheWidestLine) {
    const Screen large{.width = 28800, .height = 16200, .twipsPerPixel = 15};
    const Screen small{.width = 12000, .height = 9000, .twipsPerPixel = 15};
    struct Case {
        const Screen& screen;
        std::size_t columns;
        double width, height;
    };
    // text box 9360; a text of n > 80 columns asks for (n + 3) * 100 + 72
    const Case cases[] = {
        {large, 80, 9480, 6900},                      // not wider than 80 dots: as designed
        {large, 81, 9480, 6900},                      // wider, but it fits
        {large, 100, 10492, 16200 * 10492 / 28800.0}, // widened, with the screen's proportions
        {large, 1000, 28800, 6900},                   // never wider than the screen
        {small, 92, 9692, 9000 * 9692 / 12000.0},     // more than 0.8 of a small screen
        {small, 200, 12000, 6900},
    };
    for (const Case& c : cases) {
        desktop.theScreen = c.screen;
        host.settings.clear();
        frmFileView& form = view(22, file("a.log", "short\n" + std::string(c.columns, 'x') + "\r\nshort"));
        EXPECT_EQ(form.width, c.width) << c.columns;
        EXPECT_NEAR(form.height, c.height, 0.001) << c.columns;
    }
    const auto widened = fitWindow(small, {5000, 3000}, 4880, 5000);
    ASSERT_TRUE(widened);
    EXPECT_EQ(widened->window.width, 0.8 * small.width) << "a small screen is filled to 0.8 at least";
    EXPECT_EQ(widened->window.height, 0.8 * small.height);
    const auto exact = fitWindow(small, {11000, 3000}, 10880, 11808);
    ASSERT_TRUE(exact);
    EXPECT_EQ(exact->window.width, small.width);
    EXPECT_EQ(exact->window.height, 3000) << "only a window narrower than the screen gets its proportions";
}

TEST_F(Viewer, MeasuresProseLineByLineAndTabsByColumns) {
    desktop.fixedPitch = false;
    const auto prose =
        text::TextDocument::fromBytes("short\n" + std::string(90, 'm') + "\n" + std::string(90, 'n'));
    EXPECT_EQ(wantedTextWidth(desktop, {.name = "MS Sans Serif"}, prose), 93 * 100);
    desktop.fixedPitch = true;
    const auto plain = [&](std::size_t columns) {
        const auto text = text::TextDocument::fromBytes(std::string(columns, 'x'));
        return wantedTextWidth(desktop, {.name = "Courier New"}, text);
    };
    EXPECT_EQ(plain(80), 300) << "no wider than 80 dots: the margin alone";
    EXPECT_EQ(plain(81), 8400);
    const auto tabs = text::TextDocument::fromBytes(std::string(12, '\t') + "x");
    EXPECT_EQ(wantedTextWidth(desktop, {.name = "Courier New"}, tabs), (12 * 8 + 1 + 3) * 100);
}

TEST_F(Viewer, RestoresAStoredPlacementAndReportsADamagedOne) {
    const std::string path = file("a.log", std::string(500, 'x'));
    host.settings["File_View_Window"] = "0,1000,2000,6000,9000";
    const frmFileView& placed = view(25, path);
    EXPECT_EQ(placed.top, 1000);
    EXPECT_EQ(placed.left, 2000);
    EXPECT_EQ(placed.height, 6000);
    EXPECT_EQ(placed.width, 9000);
    EXPECT_EQ(placed.rtbViewText.width, 8880);
    EXPECT_EQ(placed.rtbViewText.height, 5300);
    host.settings["File_View_Window"] = "2,1000,2000,6000,9000";
    const frmFileView& maximized = view(25, path);
    EXPECT_EQ(maximized.windowState, WindowState::Maximized);
    EXPECT_EQ(maximized.width, 9000) << "when it is restored";
    for (const char* damaged : {"7", "0,0,0,0,0", "0,1,1,-5,100", "0,0,0,1e9,1e9", "0", "0,,,,"}) {
        host.log.clear();
        host.settings["File_View_Window"] = damaged;
        EXPECT_EQ(view(25, path).width, 9480) << damaged;
        EXPECT_EQ(
            std::ranges::count_if(host.log,
                [](auto& e) { return e.starts_with("ReportEventError (Form) Fileview::Sub LargeFileView"); }),
            1)
            << damaged;
    }
    host.settings["File_View_Window"] = "0,99999,99999,6000,9000";
    EXPECT_LT(view(25, path).left, desktop.theScreen.width) << "a window off the screen is brought back";
}

TEST_F(Viewer, StoresTheCentredPlacementAndTheMaximizedMark) {
    frmFileView& form = view(25, file("a.log", std::string(120, 'x')));
    EXPECT_FALSE(host.settings.contains("File_View_Window"))
        << "fitting a window is not the user's choice of its size";
    form.userResize(9000, 6001, WindowState::Normal);
    EXPECT_EQ(host.settings["File_View_Window"], "0,2760,3180,6001,9000");
    form.userResize(15360, 11520, WindowState::Maximized);
    EXPECT_EQ(host.settings["File_View_Window"], "2,2760,3180,6001,9000");
    host.settings.clear();
    form.userResize(15000, 11520, WindowState::Maximized);
    EXPECT_EQ(host.settings["File_View_Window"], "2");
    form.unload();
    EXPECT_EQ(form.prog->get(program::FileViewState), 2);
}

TEST_F(Viewer, SaysSoWhenAFileCannotBeReadAndStaysOpenWithoutIt) {
    for (const std::string& path : {std::string("/jobs/missing.log"), std::string()})
        for (const char* placement : {"", "0,1000,2000,6000,9000"}) {
            host.settings["File_View_Window"] = placement;
            desktop.messages.clear();
            const frmFileView& form = view(25, path);
            ASSERT_EQ(desktop.messages.size(), 1u) << path;
            EXPECT_EQ(desktop.messages[0].text, "Error - Bad filename or file does not exist !!");
            EXPECT_EQ(desktop.messages[0].title, "Kestal utilities");
            EXPECT_TRUE(form.isShown());
            EXPECT_EQ(desktop.pointer(), Pointer::Default);
        }
}

TEST_F(Viewer, OpensAnotherFileAndLeavesTheShownOneWhenTheUserCancels) {
    frmFileView& form = view(24, "");
    EXPECT_FALSE(form.mnu_Print.enabled);
    const std::string second = file("second.inv", "bearing");
    const std::string third = file("third.log", "log");
    desktop.chosenFiles = {third, second, ""};
    form.mnu_OpenFile.userChoose();
    form.mnu_OpenFile.userChoose();
    EXPECT_EQ(desktop.dialogs[0].flags, 12);
    EXPECT_EQ(std::ranges::count(desktop.dialogs[0].filter, '|'), 24);
    EXPECT_EQ(form.caption.get(), "View File: " + second);
    EXPECT_FALSE(form.isModified() || form.mnu_Save.enabled);
    EXPECT_TRUE(form.mnu_Print.enabled && form.mnu_SaveAs.enabled);
    EXPECT_EQ(desktop.dialogs[1].folder, third.substr(0, third.rfind('/') + 1)) << "where the shown file is";
    form.mnu_OpenFile.userChoose();
    EXPECT_EQ(form.FileToView, second);
    EXPECT_EQ(form.rtbViewText.document()->line(0), "bearing");
}

TEST_F(Viewer, TakesBoldTypeFromEastAsianReports) {
    for (const auto& [charSet, bold] : {std::pair{0, true}, {128, false}, {129, false}, {130, false},
             {131, true}, {134, false}, {136, false}, {238, true}}) {
        host.charSet = std::int16_t(charSet);
        EXPECT_EQ(view(25, file("a.log", "x")).rtbViewText.font.get().bold, bold) << charSet;
    }
}

TEST_F(Viewer, HandsItsResultsBackToTheHost) {
    prog->put(program::WipeAfterView, true);
    prog->put(program::Changed, true);
    const RecordPtr hostProgram = prog;
    const std::string path = file("secret.log", "x");
    bool cancelled = true;
    std::shared_ptr<ReportText> text;
    desktop.acts.push_back([](Form& form) { static_cast<frmFileView&>(form).mnu_Close.userChoose(); });
    loader.LoadFileViewForm(false, true, 1, path, prog, "", &cancelled, &text);
    EXPECT_EQ(files.wiped, std::vector{path});
    EXPECT_NE(prog, hostProgram) << "a changed program object is handed back as a copy";
    EXPECT_FALSE(prog->get(program::WipeAfterView));
    EXPECT_TRUE(hostProgram->get(program::WipeAfterView));
    EXPECT_FALSE(cancelled);
    EXPECT_EQ(text->document()->line(0), "x");
    EXPECT_EQ(loader.form(), nullptr);
}

TEST_F(Viewer, PassesPageKeysOfTheButtonsToTheText) {
    frmFileView& form = view(25, file("a.log", "x"));
    std::vector<int> sent;
    form.rtbViewText.sentKey.connect([&](int code) { sent.push_back(code); });
    form.cmdPrint.setFocus();
    for (const int code : {key::PageUp, key::PageDown, key::End, key::Home, key::Up})
        form.cmdPrint.keyDown(*std::make_unique<KeyEvent>(KeyEvent{.code = code}));
    EXPECT_EQ(sent, (std::vector{key::PageUp, key::PageDown, key::End, key::Home}));
    EXPECT_EQ(form.activeControl(), &form.rtbViewText);
    EXPECT_FALSE(form.cmdClose.isDefault);
}

} // namespace
