#include "fileview/frm_file_view.h"

#include "fileview/frm_print_preview.h"
#include "fileview/frm_printing.h"
#include "fileview/printed_file.h"
#include "fileview/report_printing.h"
#include "text/letters.h"

#include <algorithm>

// File > Print: asks for a printer and prints the file, or what is selected of it.
namespace genutil {
namespace {

constexpr const char* selectionFile = "k_seltxt.tmp";
constexpr int mostPages = 9999; // what printer dialogs take

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
        desktop().ask({.text = richTextIsNotPrinted, .icon = Icon::Information});
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
        checkPdfTarget(component().files(), FileToView, dialog.fileName);
        const PointerScope hourglass(desktop(), Pointer::Hourglass);
        PrintDialog whole;
        whole.page.orientation = orientationFor(isWideReport(FileToView));
        printAsChosen(*pdfPrinterFor(desktop(), dialog.fileName, whole.page.orientation), whole);
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
                    "The printer '" + dialog.device.name + "' is not installed any more, or does not answer");
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
    dialog.document = FileToView;
    dialog.flags = printflags::InformationContext;
    std::size_t pageCount = 1;
    if (setReportSheet(printer, wide)) {
        std::size_t linesPerPage = 1;
        PageDetails(pageCount, linesPerPage, 0, 0);
        const PrintedLines shown = allLines(*rtbViewText.document());
        if (hasFormFeeds(shown))
            pageCount = PagedLines(shown, linesPerPage).count();
        dialog.page = printer.page();
    } else {
        const text::TextDocument file = fileAsItIs();
        pageCount = usualPageDetails(printer, allLines(file).end + 2, orientationFor(wide)).pageCount;
        dialog.page.orientation = orientationFor(wide);
        dialog.page.paperSize = PageSettings::a4;
    }
    dialog.toPage = dialog.maxPage = shownCount(pageCount);
    if (!rtbViewText.selection().isEmpty())
        dialog.flags += printflags::Selection;
    return dialog;
}

PrintEstimate frmFileView::estimate(
    Printer& printer, const PrinterDevice& device, const PageSettings& page, const text::TextDocument& file) {
    struct AsItWas {
        Printer& printer;
        PrinterDevice device = printer.device();
        PageSettings page = printer.page();
        Font font = printer.font();
        ~AsItWas() {
            try {
                printer.choose(device);
                printer.setPage(page);
                printer.setFont(font);
            } catch (const Error&) {
                // What is printed on is chosen and set again.
            }
        }
    } const asItWas{printer};
    printer.choose(device);
    setChosenPage(printer, page);
    const ReportPages pages(printer, reportOf(file, page.orientation));
    return {pages.count(), pages.cutOff()};
}

Printer* frmFileView::printerOrMessage() {
    Printer* const printer = desktop().printer();
    if (!printer)
        desktop().ask({.text = "No printer available !!", .icon = Icon::Exclamation});
    return printer;
}

void frmFileView::PrintText() {
    run("PrintText", [this] {
        const bool wide = isWideReport(FileToView);
        Printer* const printer = printerOrMessage();
        if (!printer)
            return;
        printer->setFont(reportFont(wide));
        PrintDialog dialog = dialogFor(*printer, wide);
        dialog.estimate = [this, printer, file = std::shared_ptr<text::TextDocument>()](
                              const PrinterDevice& device,
                              const PageSettings& page) mutable -> std::optional<PrintEstimate> {
            try {
                if (!file)
                    file = std::make_shared<text::TextDocument>(fileAsItIs());
                return estimate(*printer, device, page, *file);
            } catch (const Error&) {
                return std::nullopt; // printing will say why
            }
        };
        if (SelectPrinterSetProperties(dialog))
            printAsChosen(*printer, dialog);
    });
}

void frmFileView::PrintPreview() {
    run("PrintPreview", [this] {
        const auto alive = shared_from_this();
        if (FileToView.empty() || !isPrintable())
            return;
        Printer* const printer = printerOrMessage();
        if (printer && previewOn(*printer))
            PrintFile();
    });
}

bool frmFileView::previewOn(Printer& printer) {
    const PointerScope hourglass(desktop(), Pointer::Hourglass);
    setReportSheet(printer, isWideReport(FileToView));
    const text::TextDocument file = fileAsItIs();
    const ReportPages pages(printer, reportOf(file, printer.page().orientation));
    const auto preview = std::make_shared<frmPrintPreview>(component(), printer, pages, FileToView);
    preview->Form_Setup(helpContextId, prog->get(program::ProgramFolder));
    return preview->PrintChosen;
}

text::TextDocument frmFileView::fileAsItIs() {
    return readReport(component().files(), FileToView, rtbViewText.document()->encoding().name);
}

PrintedReport frmFileView::reportOf(const text::TextDocument& document, PageOrientation orientation) {
    return printedReport(component(), prog, *fileProcs_, FileToView, allLines(document), orientation);
}

text::TextDocument frmFileView::textToPrint(bool selection) {
    FileSystem& files = component().files();
    if (!selection)
        return fileAsItIs();
    const auto scratch = files.makeScratchFile(selectionFile, rtbViewText.selectedText());
    if (!scratch->whyElsewhere().empty())
        desktop().ask({.text = "The selected text is printed through the file '" + scratch->path() + "':\n" +
                               scratch->whyElsewhere() + ".",
            .icon = Icon::Information});
    return readReport(files, scratch->path(), text::encodings::utf8);
}

bool frmFileView::mayCutOff(const std::string& what) {
    if (what.empty())
        return true;
    return desktop().ask({.text = what + ".\n\nPrint it anyway?",
               .icon = Icon::Exclamation,
               .buttons = Buttons::YesNo,
               .defaultAnswer = Answer::Yes}) == Answer::Yes;
}

void frmFileView::printAsChosen(Printer& printer, const PrintDialog& chosen) {
    const bool selection = (chosen.flags & printflags::Selection) != 0 && !rtbViewText.selection().isEmpty();
    const text::TextDocument document = textToPrint(selection);
    const ReportPages pages(printer, reportOf(document, chosen.page.orientation));
    if (!mayCutOff(pages.cutOff()))
        return;
    PrintRange range{.copies = chosen.page.copies};
    if (!selection && (chosen.flags & printflags::PageNumbers) != 0) {
        const auto [from, to] = std::minmax(chosen.fromPage, chosen.toPage);
        range.fromPage = std::size_t(std::max(from, 1));
        // The dialog's last page was estimated without margins: it stands for the last one that there is.
        if (to < chosen.maxPage)
            range.toPage = std::size_t(std::max(to, 1));
    }
    PrintOutcome outcome;
    {
        const ProgressScope progress{std::make_shared<frmPrinting>(component(), FileToView)};
        outcome = printReport(printer, pages, range,
            [&](std::size_t done, std::size_t total) { return progress.form->goesOn(done, total); });
    }
    if (outcome.end == PrintOutcome::End::BeyondLastPage)
        desktop().ask({.text = beyondLastPage(outcome) + ".", .icon = Icon::Exclamation});
}

} // namespace genutil
