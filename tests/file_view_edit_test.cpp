#include "support/viewer.h"
#include "text/rtf.h"
#include "text/size_text.h"

#include <gmock/gmock.h>

using namespace genutil;
using fake::type;
using fake::Viewer;
using fake::wholeText;
using testing::Contains;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr const char* richBytes =
    "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0\\fs20 Residuals \\b high\\b0\\par}";

struct Editing : Viewer {
    const std::string path = file("a.log", "one\ntwo\n");
    // A changed file, asked for and answered.
    std::string question() const { return "File " + path + " has been modified - save changes ?"; }
};

TEST_F(Editing, SavesOnlyWhatHasChangedAndThenNoMore) {
    frmFileView& form = view(25, path);
    form.SaveTheFile();
    EXPECT_THAT(files.log, Not(Contains(StartsWith("saveFile"))));
    type(form, "zero ");
    EXPECT_TRUE(form.isModified() && form.mnu_Save.enabled);
    form.mnu_Save.userChoose();
    EXPECT_EQ(files.bytesOf(path), "zero one\ntwo\n");
    EXPECT_FALSE(form.isModified() || form.mnu_Save.enabled);
    EXPECT_FALSE(form.notice.pnlNotice.visible) << "what the viewer writes itself is no change by others";
    form.mnu_Close.userChoose();
    EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(Editing, AsksBeforeAChangeIsLostAndAgainAfterNo) {
    const std::string other = file("b.log", "other");
    struct Case {
        const char* what;
        std::function<void(frmFileView&)> act;
        bool goesOn;
    };
    const Case cases[] = {
        {"Open", [&](frmFileView& f) { f.mnu_OpenFile.userChoose(); }, true},
        {"drop", [&](frmFileView& f) { f.userDropFile(other); }, true},
        {"Print", [](frmFileView& f) { f.mnu_Print.userChoose(); }, false},
        {"External Editor", [](frmFileView& f) { f.mnu_Edit.userChoose(); }, false},
        {"close", [](frmFileView& f) { f.unload(UnloadReason::CloseBox); }, false},
    };
    for (const Case& c : cases)
        for (const Answer answer : {Answer::Yes, Answer::No}) {
            SCOPED_TRACE(c.what);
            files.put(path, "one\n");
            frmFileView& form = view(25, path, "ed");
            const auto alive = form.shared_from_this();
            type(form, "X");
            desktop.messages.clear();
            desktop.answers = {answer};
            desktop.chosenFiles = {other};
            c.act(form);
            ASSERT_EQ(desktop.messages.size(), c.what == std::string("Print") ? 2u : 1u)
                << "there is no printer, which is the second message";
            EXPECT_EQ(desktop.messages[0].text, question());
            EXPECT_EQ(desktop.messages[0].buttons, Buttons::YesNo);
            EXPECT_EQ(files.bytesOf(path), answer == Answer::Yes ? "Xone\n" : "one\n");
            if (c.goesOn) {
                EXPECT_EQ(wholeText(form), "other");
            } else if (c.what == std::string("Print")) {
                EXPECT_EQ(form.isModified(), answer == Answer::No);
            }
        }
}

TEST_F(Editing, LocksTheTextInAModeForReadingOnly) {
    frmFileView& form = view(23, path);
    type(form, "X");
    EXPECT_EQ(wholeText(form), "one\ntwo\n");
    EXPECT_FALSE(form.isModified());
}

TEST_F(Editing, KeepsEncodingMarkAndMixedLineEnds) {
    for (const std::string bytes : {"\xEF\xBB\xBF"
                                    "a\r\nb\nc\rd",
             "\xFF\xFE"
             "a\0\r\0\n\0\xE9\0",
             "25\xB0 12\r\n"}) {
        const std::string whole = bytes.starts_with('\xFF') ? std::string("\xFF\xFE"
                                                                          "a\0\r\0\n\0\xE9\0",
                                                                  10)
                                                            : bytes;
        frmFileView& form = view(25, file("e.log", whole));
        type(form, "x");
        form.rtbViewText.userUndo();
        form.SaveTheFile();
        EXPECT_EQ(files.bytesOf("/jobs/e.log"), whole);
    }
}

TEST_F(Editing, AsksWhereACharacterDoesNotFitTheEncoding) {
    for (const Answer answer : {Answer::No, Answer::Yes}) {
        frmFileView& form = view(25, file("e.log", "25\xB0\n"));
        type(form, "č");
        desktop.messages.clear();
        desktop.answers = {answer};
        form.mnu_Save.userChoose();
        ASSERT_EQ(desktop.messages.size(), 1u);
        EXPECT_THAT(desktop.messages[0].text, AllOf(HasSubstr("U+010D"), HasSubstr("windows-1252")));
        EXPECT_EQ(form.isModified(), answer == Answer::No);
        EXPECT_EQ(files.bytesOf("/jobs/e.log"), answer == Answer::Yes ? "č25°\n" : "25\xB0\n");
    }
}

TEST_F(Editing, HoldsTheEditsAndSaysSoWhenSavingFails) {
    frmFileView& form = view(25, path);
    type(form, "X");
    files.failures.emplace("saveFile", Error(errors::DiskFull, "no room for a.log"));
    form.mnu_Save.userChoose();
    EXPECT_THAT(host.log, Contains(StartsWith("ReportEventError (Form) Fileview::Sub mnu_Save_Click")));
    EXPECT_TRUE(form.isModified() && form.mnu_Save.enabled);
    EXPECT_EQ(wholeText(form), "Xone\ntwo\n");
    EXPECT_EQ(files.bytesOf(path), "one\ntwo\n");
}

TEST_F(Editing, OffersAnotherNameWhenAClosingViewerCannotSave) {
    frmFileView& form = view(25, path);
    const auto alive = form.shared_from_this();
    type(form, "X");
    files.failures.emplace("saveFile " + path, Error(errors::PermissionDenied, "read-only"));
    desktop.answers = {Answer::Yes, Answer::Yes};
    desktop.chosenFiles = {"/jobs/rescued.log"};
    form.unload(UnloadReason::CloseBox);
    EXPECT_FALSE(form.isLoaded());
    EXPECT_THAT(host.log, Contains(StartsWith("ReportEventError (Form) Fileview::Sub Form_Unload")));
    EXPECT_EQ(files.bytesOf("/jobs/rescued.log"), "Xone\ntwo\n");
    EXPECT_EQ(form.FileToView, "/jobs/rescued.log");
}

TEST_F(Editing, SavesUnderAnotherNameAndLeavesTheFirstFile) {
    frmFileView& form = view(25, path);
    desktop.chosenFiles = {"/jobs/copy.txt", "", "/jobs/second.txt"};
    form.mnu_SaveAs.userChoose();
    EXPECT_EQ(files.bytesOf("/jobs/copy.txt"), "one\ntwo\n") << "without edits the file is copied";
    EXPECT_EQ(desktop.dialogs[0].filter, "Text document (*.txt)|*.txt|All files (*.*)|*.*|");
    EXPECT_EQ(desktop.dialogs[0].flags, dialogflags::OverwritePrompt);
    EXPECT_EQ(desktop.dialogs[0].fileName, path);
    type(form, "X");
    const auto entries = host.log.size();
    form.mnu_SaveAs.userChoose();
    EXPECT_TRUE(form.isModified()) << "cancelled";
    EXPECT_EQ(host.log.size(), entries) << "a cancelled dialog is no error";
    form.mnu_SaveAs.userChoose();
    EXPECT_EQ(files.bytesOf("/jobs/copy.txt"), "one\ntwo\n");
    EXPECT_EQ(files.bytesOf("/jobs/second.txt"), "Xone\ntwo\n");
    EXPECT_EQ(form.caption.get(), "Processing Log: /jobs/second.txt");
    EXPECT_FALSE(form.isModified() || form.mnu_Save.enabled);
    files.failures.emplace("copyFile", Error(errors::DiskFull, "no room"));
    desktop.chosenFiles = {"/jobs/third.txt"};
    form.mnu_SaveAs.userChoose();
    EXPECT_EQ(form.FileToView, "/jobs/second.txt") << "the name changes only after the copy";
}

TEST_F(Editing, ShowsTheCopyOfAFileThatHasBecomeNewer) {
    frmFileView& form = view(25, path);
    files.put(path, "newer");
    desktop.chosenFiles = {"/jobs/copy.txt"};
    form.mnu_SaveAs.userChoose();
    EXPECT_EQ(files.bytesOf("/jobs/copy.txt"), "newer");
    EXPECT_EQ(wholeText(form), "newer") << "what is shown under a name is what is in the file";
}

TEST_F(Editing, SavesTheTextOfAWipedFileUnderAnotherName) {
    prog->put(program::WipeAfterView, true);
    frmFileView& form = view(25, path);
    EXPECT_FALSE(files.files.contains(path));
    EXPECT_TRUE(desktop.watched.empty()) << "that the viewer's own file is gone is no news";
    desktop.chosenFiles = {"/jobs/kept.txt"};
    form.mnu_SaveAs.userChoose();
    EXPECT_EQ(files.bytesOf("/jobs/kept.txt"), "one\ntwo\n");
}

TEST_F(Editing, AsksBeforeReplacingWhatAnotherProgramHasWritten) {
    frmFileView& form = view(25, path);
    type(form, "X");
    files.put(path, "by others");
    desktop.answers = {Answer::No, Answer::Yes};
    form.mnu_Save.userChoose();
    EXPECT_EQ(files.bytesOf(path), "by others");
    EXPECT_TRUE(form.isModified());
    EXPECT_EQ(desktop.messages.back().defaultAnswer, Answer::No);
    form.mnu_Save.userChoose();
    EXPECT_EQ(files.bytesOf(path), "Xone\ntwo\n");
}

TEST_F(Editing, KeepsTheViewerOpenThroughAnEditSessionAndShowsTheResult) {
    frmFileView& form = view(25, path, "editor -n");
    form.cmdSelect.enabled = false;
    host.whileRunning = [&] {
        EXPECT_FALSE(form.cmdClose.enabled || form.cmdEdit.enabled || form.cmdPrint.enabled);
        for (const MenuItem* held : {&form.mnu_OpenFile, &form.mnu_Save, &form.mnu_SaveAs, &form.mnu_Edit,
                 &form.mnu_Print, &form.mnu_PrintPreview, &form.mnu_ExportPdf, &form.mnu_Reload})
            EXPECT_FALSE(held->enabled) << held->name();
        EXPECT_TRUE(form.rtbViewText.locked) << "typing would be lost when the file is shown again";
        EXPECT_FALSE(form.unload(UnloadReason::CloseBox));
        files.put(path, "edited\nagain");
        desktop.watched.at(path)();
        EXPECT_FALSE(form.notice.pnlNotice.visible) << "the editor's work is shown when it ends";
    };
    form.rtbViewText.userSelect({1, 2}, {1, 1});
    form.mnu_Edit.userChoose();
    EXPECT_EQ(form.rtbViewText.selection(), (text::TextRange{{1, 1}, {1, 2}}));
    EXPECT_TRUE(host.logged("RunAndWait editor -n " + path));
    ASSERT_EQ(desktop.messages.size(), 1u);
    EXPECT_EQ(desktop.messages[0].text, "You have an edit session active !!\nPlease close the editor first");
    EXPECT_EQ(desktop.messages[0].icon, Icon::Information);
    EXPECT_EQ(wholeText(form), "edited\nagain");
    EXPECT_TRUE(form.isModified() && form.mnu_Save.enabled);
    EXPECT_TRUE(form.cmdClose.enabled && form.cmdEdit.enabled && !form.cmdSelect.enabled);
    EXPECT_FALSE(form.rtbViewText.locked);
    host.failing = {"RunAndWait"};
    form.mnu_Edit.userChoose();
    EXPECT_TRUE(form.cmdClose.enabled && !form.rtbViewText.locked) << "a session that failed is over, too";
    desktop.answers = {Answer::No};
    EXPECT_TRUE(form.unload());
}

TEST_F(Editing, ShowsRichTextByExtensionInTheDefaultSizeAndPlainTextAgain) {
    host.settings["File_View_Window"] = "0,1000,2000,6000,9000";
    frmFileView& form = view(25, path);
    desktop.chosenFiles = {file("REPORT.rtf", richBytes), path};
    form.mnu_OpenFile.userChoose();
    EXPECT_TRUE(form.rtbViewText.isRich() && form.rtbViewText.wrapsLines);
    EXPECT_EQ(form.rtbViewText.document()->line(0), "Residuals high");
    EXPECT_NEAR(form.width, 0.7 * desktop.theScreen.width, 1e-9);
    EXPECT_NEAR(form.height, 0.8 * desktop.theScreen.height, 1e-9);
    EXPECT_FALSE(form.isModified());
    form.mnu_OpenFile.userChoose();
    EXPECT_FALSE(form.rtbViewText.isRich() || form.rtbViewText.wrapsLines);
    EXPECT_TRUE(view(25, "/jobs/REPORT.rtf").rtbViewText.isRich());
}

TEST_F(Editing, SavesRichTextAsRichText) {
    frmFileView& form = view(25, file("r.rtf", richBytes));
    const auto edited = [] {
        auto rich = text::readRtf(richBytes);
        std::get<text::Paragraph>(rich.blocks[0]).runs[0].text = "Changed ";
        return rich;
    };
    form.rtbViewText.showRichFrom({edited, {}});
    form.rtbViewText.userEditRich();
    desktop.chosenFiles = {"/jobs/s.rtf"};
    form.mnu_SaveAs.userChoose();
    EXPECT_THAT(desktop.dialogs[0].filter, StartsWith("Rich Text Format (*.rtf)|*.rtf|"));
    EXPECT_EQ(files.bytesOf("/jobs/r.rtf"), richBytes);
    EXPECT_EQ(text::readRtf(files.bytesOf("/jobs/s.rtf")), edited());
}

TEST_F(Editing, KeepsWhatItCannotShowOfARichTextUntilTheUserGivesItUp) {
    const std::string bytes = "{\\rtf1{\\header Tarnbeck Dam}Text\\par}";
    frmFileView& form = view(25, file("h.rtf", bytes), "ed");
    form.mnu_Edit.userChoose();
    ASSERT_TRUE(form.isModified());
    form.mnu_Save.userChoose();
    EXPECT_TRUE(desktop.messages.empty());
    EXPECT_EQ(files.bytesOf("/jobs/h.rtf"), bytes) << "shown again, not edited";
    form.rtbViewText.showRichFrom({[] { return text::readRtf("{\\rtf1 New\\par}"); }, {}});
    form.rtbViewText.userEditRich();
    desktop.answers = {Answer::No, Answer::Yes};
    form.mnu_Save.userChoose();
    EXPECT_THAT(desktop.messages.back().text, HasSubstr("headers"));
    EXPECT_EQ(files.bytesOf("/jobs/h.rtf"), bytes);
    EXPECT_TRUE(form.isModified());
    form.mnu_Save.userChoose();
    EXPECT_EQ(text::plainText(text::readRtf(files.bytesOf("/jobs/h.rtf"))), "New");
}

TEST_F(Editing, NoticesAFileThatChangesAndReadsItAgain) {
    frmFileView& form = view(25, path);
    const auto tell = [&] { desktop.watched.at(path)(); };
    form.rtbViewText.userSelect({1, 1}, {1, 1});
    files.put(path, "one\ntwo\nthree\n");
    tell();
    EXPECT_TRUE(form.notice.pnlNotice.visible);
    form.notice.cmdIgnore.userPress();
    tell();
    EXPECT_FALSE(form.notice.pnlNotice.visible) << "the user knows of this change";
    type(form, "X");
    desktop.answers = {Answer::No};
    form.mnu_Save.userChoose();
    EXPECT_THAT(desktop.messages.back().text, HasSubstr("changed by another program"));
    form.rtbViewText.userUndo();
    files.put(path, "one\ntwo\nthree\nfour\n");
    tell();
    ASSERT_TRUE(form.notice.pnlNotice.visible);
    type(form, "X");
    desktop.answers = {Answer::No, Answer::Yes};
    form.notice.cmdReload.userPress();
    EXPECT_EQ(wholeText(form), "Xone\ntwo\n") << "the edits were to be kept";
    form.notice.cmdReload.userPress();
    EXPECT_EQ(wholeText(form), "one\ntwo\nthree\nfour\n");
    EXPECT_FALSE(form.notice.pnlNotice.visible || form.isModified());
    files.files.erase(path);
    tell();
    EXPECT_THAT(form.notice.lblNotice.caption.get(), HasSubstr("no longer there"));
    form.mnu_Reload.userChoose();
    EXPECT_EQ(form.rtbViewText.document()->lineCount(), 5u) << "the text is all that is left of the file";
    form.unload();
    EXPECT_TRUE(desktop.watched.empty());
}

TEST_F(Editing, NoticesWhatIsWrittenWhileTheFileIsRead) {
    files.whileReading = [&] { files.put(path, "newer"); };
    frmFileView& form = view(25, path);
    desktop.watched.at(path)();
    EXPECT_TRUE(form.notice.pnlNotice.visible);
}

TEST_F(Editing, TakesNoFileWhereNoneCanBeOpenedAndAsksNothingWithoutAChange) {
    const std::string other = file("b.log", "other");
    frmFileView& form = view(1, path);
    form.userDropFile(other);
    EXPECT_EQ(wholeText(form), "one\ntwo\n");
    form.mnu_Print.userChoose();
    ASSERT_EQ(desktop.messages.size(), 1u);
    EXPECT_EQ(desktop.messages[0].text, "No printer available !!") << "nothing is asked about changes";
}

TEST_F(Editing, ShowsNothingUnderTheNameOfAFileThatCannotBeRead) {
    frmFileView& form = view(25, path);
    desktop.chosenFiles = {"/jobs/missing.log"};
    form.mnu_OpenFile.userChoose();
    EXPECT_EQ(wholeText(form), "") << "the text of one file must not be saved under the name of another";
    EXPECT_FALSE(form.isModified() || form.mnu_Save.enabled);
    EXPECT_FALSE(form.mnu_PrintPreview.enabled || form.mnu_ExportPdf.enabled || form.mnu_Reload.enabled);
    for (frmFileView* empty : {&form, &view(24, path)}) {
        desktop.dialogs.clear();
        EXPECT_TRUE(empty->mnu_SaveAs.enabled);
        empty->mnu_SaveAs.userChoose();
        EXPECT_EQ(desktop.messages.back().text, "Select and display file first !!");
        EXPECT_TRUE(desktop.dialogs.empty()) << "nothing is there to be saved";
    }
    frmFileView& typed = view(24, path);
    type(typed, "X");
    desktop.chosenFiles = {"/jobs/typed.txt"};
    typed.mnu_SaveAs.userChoose();
    EXPECT_EQ(files.bytesOf("/jobs/typed.txt"), "X");
}

TEST_F(Editing, ReloadingMovesResizesAndStoresNothing) {
    frmFileView& form = view(25, path);
    form.userResize(9000, 6001, WindowState::Normal);
    form.userMove(100, 200);
    const auto stored = host.settings;
    files.put(path, std::string(500, 'x'));
    form.mnu_Reload.userChoose();
    EXPECT_EQ(wholeText(form), std::string(500, 'x'));
    EXPECT_EQ((std::array{form.width.get(), form.height.get(), form.left.get(), form.top.get()}),
        (std::array{9000.0, 6001.0, 100.0, 200.0}));
    EXPECT_EQ(host.settings, stored);
}

TEST_F(Editing, FindsForwardBackwardAndAround) {
    frmFileView& form = view(25, file("f.log", "Point A\npoint B\nappoint\n"));
    FindBar& find = form.findBar;
    form.mnu_FindNext.userChoose();
    ASSERT_TRUE(find.pnlFind.visible) << "there is nothing to look for yet";
    find.txtFind.userEdit("point");
    const auto at = [&] { return form.rtbViewText.selection().from; };
    using text::TextPosition;
    EXPECT_EQ(at(), (TextPosition{0, 0})) << "found as it is typed";
    form.mnu_FindNext.userChoose();
    EXPECT_EQ(at(), (TextPosition{1, 0}));
    find.chkWholeWord.userToggle();
    form.mnu_FindNext.userChoose();
    EXPECT_EQ(at(), (TextPosition{0, 0}));
    EXPECT_THAT(find.lblFindResult.caption.get(), HasSubstr("from the start"));
    find.chkMatchCase.userToggle();
    form.mnu_FindPrevious.userChoose();
    EXPECT_EQ(at(), (TextPosition{1, 0}));
    find.txtFind.userEdit("Q");
    EXPECT_EQ(find.lblFindResult.caption.get(), "Not found");
    form.userKey({.code = key::Escape});
    EXPECT_FALSE(find.pnlFind.visible);
    EXPECT_EQ(form.activeControl(), &form.rtbViewText);
}

TEST_F(Editing, GoesToALineAndSaysWhichThereAre) {
    frmFileView& form = view(25, path);
    desktop.typed = {"0", "4", "2x", " 2 "};
    form.mnu_GoToLine.userChoose();
    EXPECT_EQ(desktop.messages.size(), 3u);
    EXPECT_THAT(desktop.messages[2].text, AllOf(HasSubstr("\"2x\""), HasSubstr("1 to 3")));
    EXPECT_EQ(form.rtbViewText.caret(), (text::TextPosition{1, 0}));
    EXPECT_EQ(form.status.lblPosition.caption.get(), "Line 2, column 1");
}

TEST_F(Editing, SaysWhereTheCaretIsAndWhatIsSelected) {
    frmFileView& form = view(25, file("s.log", "a\tbé\nlonger\nend"));
    struct Case {
        text::TextPosition anchor, caret;
        std::string position, selection;
    };
    const Case cases[] = {
        {{0, 0}, {0, 0}, "Line 1, column 1", ""},
        {{0, 2}, {0, 5}, "Line 1, column 11", "2 characters selected"},
        {{0, 1}, {0, 2}, "Line 1, column 9", "1 character selected"},
        {{2, 0}, {0, 1}, "Line 1, column 2", "2 lines selected"},
        {{0, 1}, {2, 99}, "Line 3, column 4", "3 lines selected"},
    };
    for (const Case& c : cases) {
        form.rtbViewText.userSelect(c.anchor, c.caret);
        EXPECT_EQ(form.status.lblPosition.caption.get(), c.position);
        EXPECT_EQ(form.status.lblSelection.caption.get(), c.selection);
    }
    const std::pair<std::uint64_t, const char*> sizes[] = {{0, "0 bytes"}, {1, "1 byte"},
        {1023, "1023 bytes"}, {1024, "1.0 KB"}, {1024 * 1024 - 1, "1.0 MB"}, {6920601, "6.6 MB"}};
    for (const auto& [bytes, text] : sizes)
        EXPECT_EQ(text::sizeText(bytes), text);
}

TEST_F(Editing, ReadsTheBytesInAnotherEncodingWithoutChangingThem) {
    frmFileView& form = view(25, file("e.log", "caf\xC3\xA9 \xB0\n"));
    ComboBox& encodings = form.status.cboEncoding;
    EXPECT_EQ(encodings.selectedItem()->text, "windows-1252");
    EXPECT_EQ(form.status.lblSize.caption.get(), "8 bytes") << "of the file, not of the text in memory";
    EXPECT_EQ(form.rtbViewText.document()->line(0), "cafÃ© °");
    encodings.userSelect(0);
    EXPECT_EQ(form.rtbViewText.document()->encoding().name, "UTF-8");
    EXPECT_EQ(form.rtbViewText.document()->line(0), "café \xB0");
    EXPECT_FALSE(form.isModified());
    type(form, "x");
    form.mnu_Save.userChoose();
    EXPECT_EQ(files.bytesOf("/jobs/e.log"), "xcaf\xC3\xA9 \xB0\n");
}

TEST_F(Editing, ZoomsInStepsThatMeetTheNormalSizeAgain) {
    frmFileView& form = view(25, path);
    form.userZoom(3);
    EXPECT_NEAR(form.rtbViewText.zoom, 1.331, 1e-9);
    form.userZoom(-3);
    EXPECT_EQ(form.rtbViewText.zoom, 1.0);
    form.userZoom(-100);
    EXPECT_EQ(form.rtbViewText.zoom, 0.5);
    form.mnu_ZoomNormal.userChoose();
    EXPECT_EQ(form.rtbViewText.zoom, 1.0);
    form.mnu_WrapLines.userChoose();
    EXPECT_TRUE(form.rtbViewText.wrapsLines && form.mnu_WrapLines.checked);
}

} // namespace
