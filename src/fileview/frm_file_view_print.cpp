#include "fileview/frm_file_view.h"

#include "fileview/frm_printing.h"
#include "fileview/report_print.h"
#include "text/letters.h"

#include <algorithm>

// File > Print: asks for a printer and prints the file, or what is selected of it.
namespace genutil {
namespace {

constexpr const char* selectionFile = "k_seltxt.tmp";
constexpr int mostPages = 9999; // what printer dialogs take

text::TextDocument readText(FileSystem& files, const std::string& path, const std::string& encoding) {
    const auto source = files.openFile(path);
    return text::TextDocument::load(*source, files.codePages(), encoding);
}

int shownCount(std::size_t count) {
    return int(std::min<std::size_t>(count, mostPages));
}

// Takes the form away whichever way a run ends.
struct ProgressScope {
    std::shared_ptr<frmPrinting> form;
    ~ProgressScope() { form->end(); }
};

} // namespace

void frmFileView::PrintFile() {
    run("PrintFile", [this] {
        if (FileToView.empty()) {
            desktop().ask({.text = "Select and display file first !!"});
            return;
        }
        const PointerScope hourglass(desktop(), Pointer::Hourglass);
        PrinterSetupAndGo();
    });
}

void frmFileView::PrinterSetupAndGo() {
    run("PrinterSetupAndGo", [this] {
        const auto alive = shared_from_this();
        if (isPrintable())
            PrintText();
        desktop().doEvents();
    });
}

bool frmFileView::isPrintable() {
    if (fileFormat_ == FileFormat::RichText)
        desktop().ask({.text = "Rich text is not printed.", .icon = Icon::Information});
    return fileFormat_ == FileFormat::PlainText;
}

void frmFileView::ExportPdf() {
    run("ExportPdf", [this] {
        const auto alive = shared_from_this();
        if (FileToView.empty() || !isPrintable())
            return;
        FileDialog dialog = commonDialog1;
        dialog.filter = "PDF document (*.pdf)|*.pdf|";
        dialog.filterIndex = 1;
        dialog.flags = dialogflags::OverwritePrompt;
        dialog.fileName = FileToView + ".pdf";
        if (!desktop().showSave(*this, dialog) || dialog.fileName.empty())
            return;
        const auto stamp = component().files().stampOf(dialog.fileName);
        const auto own = component().files().stampOf(FileToView);
        if (stamp && own && stamp->device == own->device && stamp->file == own->file)
            throw Error(errors::FileExists, "'" + dialog.fileName + "' is the report itself");
        const PointerScope hourglass(desktop(), Pointer::Hourglass);
        const auto printer = desktop().pdfPrinter(dialog.fileName);
        const bool wide = isWideReport(FileToView);
        PrintDialog whole;
        whole.page.orientation = orientationFor(wide);
        printer->setPage(whole.page);
        printAsChosen(*printer, whole, wide);
    });
}

void frmFileView::PageDetails(
    std::size_t& pageCount, std::size_t& linesPerPage, double topMargin, double bottomMarginHeight) {
    run("PageDetails", [&] {
        const std::size_t lines = rtbViewText.document()->lineCount();
        const genutil::PageDetails details =
            pageDetails(*desktop().printer(), lines, topMargin, bottomMarginHeight);
        pageCount = details.pageCount;
        linesPerPage = details.linesPerPage;
    });
}

bool frmFileView::SelectPrinterSetProperties(PrintDialog& dialog) {
    return run(
        "SelectPrinterSetProperties",
        [&] {
            Printer& printer = *desktop().printer();
            const PageSettings wanted = dialog.page;
            dialog.device = printer.device();
            dialog.page = printer.page();
            // The sheet that the report wants, also where the printer cannot be told so.
            dialog.page.orientation = wanted.orientation;
            dialog.page.paperSize = wanted.paperSize;
            if (!desktop().showPrint(*this, dialog))
                return false;
            const std::string chosen = text::upperCased(dialog.device.name);
            const std::vector<PrinterDevice> installed = printer.installed();
            const auto found = std::ranges::find_if(installed,
                [&](const PrinterDevice& device) { return text::upperCased(device.name) == chosen; });
            if (found == installed.end())
                throw Error(errors::DeviceError,
                    "The printer '" + dialog.device.name + "' is not installed any more");
            printer.choose(*found);
            setChosenPage(printer, dialog.page);
            return true;
        },
        "Function");
}

void frmFileView::setChosenPage(Printer& printer, PageSettings chosen) {
    // The run prints the copies itself, one whole report after another.
    chosen.copies = 1;
    try {
        printer.setPage(chosen);
    } catch (const Error&) {
        // A printer that refuses to be turned prints as it stands.
        const PageOrientation own = printer.page().orientation;
        if (own == chosen.orientation)
            throw;
        chosen.orientation = own;
        printer.setPage(chosen);
    }
}

PrintDialog frmFileView::dialogFor(Printer& printer, bool wide) {
    PrintDialog dialog;
    dialog.flags = printflags::InformationContext;
    std::size_t pageCount = 1;
    if (takesOrientation(printer)) {
        PageSettings settings = printer.page();
        settings.orientation = orientationFor(wide);
        settings.paperSize = PageSettings::a4;
        printer.setPage(settings);
        std::size_t linesPerPage = 1;
        PageDetails(pageCount, linesPerPage, 0, 0);
        const PrintedLines shown = allLines(*rtbViewText.document());
        if (survey(shown).hasFormFeeds)
            pageCount = countPages(shown, linesPerPage);
        dialog.page = printer.page();
    } else {
        const auto file = readText(component().files(), FileToView, rtbViewText.document()->encoding().name);
        const PrintedLines lines = allLines(file);
        pageCount = usualPageDetails(printer, lines.end + 2, orientationFor(wide)).pageCount;
        dialog.page.orientation = orientationFor(wide);
        dialog.page.paperSize = PageSettings::a4;
    }
    dialog.toPage = dialog.maxPage = shownCount(pageCount);
    if (!rtbViewText.selection().isEmpty())
        dialog.flags += printflags::Selection;
    return dialog;
}

void frmFileView::PrintText() {
    run("PrintText", [this] {
        const bool wide = isWideReport(FileToView);
        Printer* const printer = desktop().printer();
        if (!printer) {
            desktop().ask({.text = "No printer available !!", .icon = Icon::Exclamation});
            return;
        }
        printer->setFont(reportFont(wide));
        PrintDialog dialog = dialogFor(*printer, wide);
        if (SelectPrinterSetProperties(dialog))
            printAsChosen(*printer, dialog, wide);
    });
}

text::TextDocument frmFileView::textToPrint(bool selection) {
    FileSystem& files = component().files();
    if (!selection)
        return readText(files, FileToView, rtbViewText.document()->encoding().name);
    const auto scratch = files.makeScratchFile(selectionFile, rtbViewText.selectedText());
    if (!scratch->whyElsewhere().empty())
        desktop().ask({.text = "The selected text is printed by way of '" + scratch->path() + "':\n" +
                               scratch->whyElsewhere() + ".",
            .icon = Icon::Information});
    return readText(files, scratch->path(), text::encodings::utf8);
}

void frmFileView::printAsChosen(Printer& printer, const PrintDialog& chosen, bool wide) {
    const bool selection = (chosen.flags & printflags::Selection) != 0 && !rtbViewText.selection().isEmpty();
    const text::TextDocument document = textToPrint(selection);
    PrintOrder order{.lines = allLines(document),
        .header = pageHeader(prog->get(program::VersionText), FileToView,
            fileProcs_->FileDate(FileToView, 0, true, 1), desktop().localTime()),
        .font = reportFont(wide),
        .orientation = chosen.page.orientation,
        .copies = chosen.page.copies};
    if (!selection && (chosen.flags & printflags::PageNumbers) != 0) {
        const auto [from, to] = std::minmax(chosen.fromPage, chosen.toPage);
        order.fromPage = std::size_t(std::max(from, 1));
        // The dialog's last page was estimated without margins: it stands for the last one that there is.
        if (to < chosen.maxPage)
            order.toPage = std::size_t(std::max(to, 1));
    }
    printer.setTitle(FileToView.substr(FileToView.find_last_of('/') + 1));
    PrintOutcome outcome;
    {
        const ProgressScope progress{std::make_shared<frmPrinting>(component(), FileToView)};
        outcome = printReport(printer, order,
            [&](std::size_t done, std::size_t total) { return progress.form->goesOn(done, total); });
    }
    if (outcome.end == PrintOutcome::End::BeyondLastPage)
        desktop().ask({.text = "Nothing is printed: page " + std::to_string(outcome.fromPage) +
                               " is beyond the last page, " + std::to_string(outcome.pageCount) + ".",
            .icon = Icon::Exclamation});
}

} // namespace genutil
