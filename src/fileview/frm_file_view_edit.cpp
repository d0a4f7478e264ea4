#include "fileview/frm_file_view.h"

#include "text/rtf.h"

#include <array>

// What the viewer does with a text that has been edited: saving it here, under another name, or elsewhere
// before it is lost; and the session of an external editor.
namespace genutil {
namespace {

// Puts a value back at the end of a scope, whichever way it is left.
template<class T>
class Restored {
public:
    Restored(Observed<T>& value, T meanwhile) : value_(value), earlier_(value) { value_ = meanwhile; }
    ~Restored() { value_ = earlier_; }
    Restored(const Restored&) = delete;
    Restored& operator=(const Restored&) = delete;

private:
    Observed<T>& value_;
    T earlier_;
};

} // namespace

// A warning proposes the answer that loses nothing.
bool frmFileView::confirm(const std::string& question, Icon icon) {
    return desktop().ask({.text = question,
               .icon = icon,
               .buttons = Buttons::YesNo,
               .defaultAnswer = icon == Icon::Exclamation ? Answer::No : Answer::Yes}) == Answer::Yes;
}

bool frmFileView::SaveChanges() {
    return run("SaveChanges", [this] {
        if (!confirm("File " + FileToView + " has been modified - save changes ?"))
            return true;
        if (!saveText(FileToView))
            return false;
        noteNothingToSave();
        return true;
    });
}

bool frmFileView::settleChanges() {
    return !(modified_ && editAllowed_) || SaveChanges();
}

void frmFileView::noteNothingToSave() {
    modified_ = false;
    mnu_Save.enabled = false;
}

void frmFileView::SaveTheFile() {
    run("SaveTheFile", [this] {
        if (!modified_ || !saveText(FileToView))
            return;
        noteNothingToSave();
    });
}

std::optional<std::string> frmFileView::askSaveName() {
    FileDialog dialog = commonDialog1;
    dialog.filter = fileFormat_ == FileFormat::RichText ? "Rich Text Format (*.rtf)|*.rtf|"
                                                        : "Text document (*.txt)|*.txt|";
    dialog.filter += "All files (*.*)|*.*|";
    dialog.filterIndex = 1;
    dialog.flags = dialogflags::OverwritePrompt;
    dialog.fileName = FileToView;
    if (!desktop().showSave(*this, dialog) || dialog.fileName.empty())
        return std::nullopt;
    return dialog.fileName;
}

void frmFileView::SaveAs() {
    run("SaveAs", [this] {
        const bool isShown = !FileToView.empty() && shownFile_ == FileToView;
        if (!isShown && !edited_) {
            desktop().ask({.text = "Select and display file first !!"});
            return;
        }
        const auto chosen = askSaveName();
        if (!chosen)
            return;
        FileSystem& files = component().files();
        // A file that is gone, wiped perhaps, cannot be copied: its text is what there is to save.
        const bool isGone = FileToView.empty() || !files.stampOf(FileToView);
        const bool isNewerOnDisk = !isGone && !edited_ && notice.isOverwriteOfOthers(FileToView);
        if (!isGone)
            files.copyFile(FileToView, *chosen);
        modified_ = modified_ || isGone;
        FileToView = *chosen;
        textIsThatOf(*chosen);
        SetFormCaption();
        if (isNewerOnDisk && showFile(Fit::Nothing))
            textIsThatOf(*chosen);
        SaveTheFile();
        enableOwnCommands();
    });
}

bool frmFileView::confirmOverwrite(const std::string& file) {
    return !notice.isOverwriteOfOthers(file) ||
           confirm("File " + file +
                       " has been changed by another program since it was read.\n"
                       "Replace it with the text that is shown here ?",
               Icon::Exclamation);
}

bool frmFileView::saveText(const std::string& file) {
    if (file.empty()) {
        const auto chosen = askSaveName();
        if (!chosen)
            return false;
        FileToView = *chosen;
        SetFormCaption();
        return writeText(*chosen);
    }
    return confirmOverwrite(file) && writeText(file);
}

bool frmFileView::confirmRichLoss() {
    return !edited_ || richIsWhole_ ||
           confirm(
               "File " + shownFile_ +
                   " holds headers, footers, notes, links, hidden text or drawings, which cannot be kept.\n"
                   "Save the changed text without them ?",
               Icon::Exclamation);
}

std::string frmFileView::richFile() const {
    if (!edited_)
        return richBytes_;
    if (rtbViewText.isRich())
        return text::writeRtf(*rtbViewText.richText());
    // The host has put a plain text in its place.
    const text::TextDocument& document = *rtbViewText.document();
    return text::writeRtf(text::readRtf(document.text({{}, document.end()})));
}

bool frmFileView::writeText(const std::string& file) {
    const PointerScope hourglass(desktop(), Pointer::Hourglass);
    FileSystem& files = component().files();
    if (fileFormat_ == FileFormat::RichText) {
        if (!confirmRichLoss())
            return false;
        std::string bytes = richFile();
        files.saveFile(file, [&](const text::ByteSink& sink) { sink(bytes); });
        richBytes_ = std::move(bytes);
        richIsWhole_ = richIsWhole_ || edited_;
    } else if (!writePlain(file)) {
        return false;
    }
    edited_ = false;
    textIsThatOf(file);
    return true;
}

bool frmFileView::writePlain(const std::string& file) {
    FileSystem& files = component().files();
    text::TextDocument& document = *rtbViewText.document();
    try {
        files.saveFile(file, [&](const text::ByteSink& sink) { document.write(sink, files.codePages()); });
    } catch (const text::UnencodableCharacter& refused) {
        if (!confirm(refused.what() + std::string(".\nSave the file as UTF-8 instead ?"), Icon::Exclamation))
            return false;
        document.setEncoding({});
        status.showText();
        return writePlain(file);
    }
    document.markSaved();
    return true;
}

void frmFileView::textIsThatOf(const std::string& file) {
    shownFile_ = file;
    followFile(component().files().stampOf(file));
}

void frmFileView::rescueText() {
    while (confirm(
        "The changes to " + FileToView + " are not saved.\nSave them under another name ?", Icon::Question)) {
        const auto chosen = askSaveName();
        if (!chosen)
            return;
        FileToView = *chosen;
        bool saved = false;
        handle("Form_Unload", [&] { saved = writeText(*chosen); });
        if (saved)
            return;
    }
}

void frmFileView::offerUnsaved() {
    // What cannot be read of it does not keep the user from the report.
    handle("OfferUnsaved", [this] {
        const auto unsaved = journal.findLeft();
        if (unsaved == EditJournal::Left::Nothing)
            return;
        if (unsaved == EditJournal::Left::Outdated) {
            journal.dropLeft();
            desktop().ask({.text = "Changes to " + FileToView +
                                   " were not saved when the program ended.\n"
                                   "They cannot be restored: the file has been changed since.",
                .icon = Icon::Exclamation});
            return;
        }
        if (!confirm("Changes to " + FileToView + " were not saved when the program ended.\nRestore them ?",
                Icon::Question))
            return journal.dropLeft();
        const auto document = rtbViewText.document();
        const bool isWhole = journal.restore(document);
        rtbViewText.setDocument(document);
        modified_ = edited_ = mnu_Save.enabled = true;
        if (!isWhole)
            desktop().ask({.text = "Only a part of the changes to " + FileToView + " could be restored.",
                .icon = Icon::Exclamation});
    });
}

void frmFileView::EditFile() {
    run("EditFile", [this] {
        // The file is shown again afterwards: what has been typed here would be gone.
        if (edited_ && !settleChanges())
            return;
        const text::TextPosition anchor = rtbViewText.anchor();
        const text::TextPosition caret = rtbViewText.caret();
        runEditor();
        if (FileToView.empty())
            return;
        DisplayFile();
        rtbViewText.select(anchor, caret);
    });
}

void frmFileView::runEditor() {
    // The commands that the session holds back; the text too, since the reload would overwrite what is typed.
    Observed<bool>* const held[] = {&cmdClose.enabled, &cmdEdit.enabled, &cmdPrint.enabled,
        &cmdSelect.enabled, &mnu_OpenFile.enabled, &mnu_Save.enabled, &mnu_SaveAs.enabled, &mnu_Edit.enabled,
        &mnu_Print.enabled, &mnu_PrintPreview.enabled, &mnu_ExportPdf.enabled, &mnu_Reload.enabled,
        &status.cboEncoding.enabled};
    std::vector<std::unique_ptr<Restored<bool>>> restored;
    for (Observed<bool>* each : held)
        restored.push_back(std::make_unique<Restored<bool>>(*each, false));
    restored.push_back(std::make_unique<Restored<bool>>(rtbViewText.locked, true));
    struct Session {
        bool& active;
        explicit Session(bool& flag) : active(flag) { active = true; }
        ~Session() { active = false; }
    } session(editSessionActive_);

    const std::string commandLine = component().strUtil().EditorCommand(Editor, FileToView);
    component().objects().createFileProcedures()->RunAndWait(commandLine);
}

} // namespace genutil
