#include "platform/qt/qt_printer.h"

#include "hostif/error.h"
#include "platform/qt/fonts.h"
#include "platform/qt/print_ink.h"

#include <QFileInfo>
#include <QImage>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QSaveFile>

#include <algorithm>
#include <optional>

namespace genutil {
namespace {

constexpr double twipsPerInch = 1440;
constexpr double twipsPerPoint = 20;
constexpr double inchesPerMetre = 1 / 0.0254;
constexpr int resolution = 1200;   // dots per inch of a PDF file: fine enough for any size of font
constexpr double usualMargin = 12; // points that printers cannot print on, and a PDF file keeps free
constexpr const char* pdfDevice = "PDF file";

QPageLayout layoutOf(const PageSettings& settings, const QMarginsF& unprintable) {
    const QPageSize::PageSizeId known = QPageSize::id(settings.paperSize);
    const QPageSize size(known == QPageSize::Custom ? QPageSize::A4 : known);
    const auto orientation =
        settings.orientation == PageOrientation::Landscape ? QPageLayout::Landscape : QPageLayout::Portrait;
    return QPageLayout(size, orientation, unprintable, QPageLayout::Point);
}

void setInkAndSides(QPrinter& printer, const PageSettings& settings) {
    printer.setColorMode(settings.colorMode == 1 ? QPrinter::GrayScale : QPrinter::Color);
    if (settings.duplex > 0)
        printer.setDuplex(settings.duplex == 1   ? QPrinter::DuplexNone
                          : settings.duplex == 2 ? QPrinter::DuplexShortSide
                                                 : QPrinter::DuplexLongSide);
}

// A paper that a document is painted on, and what it takes to end it well.
class Paper {
public:
    virtual ~Paper() = default;
    virtual QPagedPaintDevice& device() = 0;
    virtual int dotsPerInch() const = 0;
    virtual void finish() {}
    virtual void giveUp() {}
};

class PdfPaper : public Paper {
public:
    explicit PdfPaper(const std::string& path) : file_(QString::fromStdString(path)), writer_(&file_) {
        writer_.setResolution(resolution);
        writer_.setCreator("Kestal");
    }
    QPagedPaintDevice& device() override { return writer_; }
    int dotsPerInch() const override { return resolution; }
    void open() {
        if (file_.isOpen())
            return;
        // The rename would put the file into the place of a device or a folder.
        const QFileInfo there(file_.fileName());
        if (there.exists() && !there.isFile())
            throw Error(errors::PathAccess,
                "'" + file_.fileName().toStdString() + "' is not written: only regular files are");
        if (!file_.open(QIODevice::WriteOnly))
            fail();
    }
    void finish() override {
        if (!file_.commit())
            fail();
    }
    void giveUp() override { file_.cancelWriting(); }

private:
    [[noreturn]] void fail() {
        throw Error(errors::DeviceError,
            ("The PDF file '" + file_.fileName() + "' cannot be written: " + file_.errorString())
                .toStdString());
    }

    QSaveFile file_;
    QPdfWriter writer_;
};

class SystemPaper : public Paper {
public:
    explicit SystemPaper(const PrinterDevice& device, const PageSettings& settings)
        : printer_(QPrinterInfo::printerInfo(QString::fromStdString(device.name)), QPrinter::HighResolution) {
        setInkAndSides(printer_, settings);
        if (settings.paperBin > 0)
            printer_.setPaperSource(QPrinter::PaperSource(settings.paperBin - 1));
    }
    QPagedPaintDevice& device() override { return printer_; }
    int dotsPerInch() const override { return printer_.resolution(); }
    void giveUp() override { printer_.abort(); }

private:
    QPrinter printer_;
};

class QtPrinter : public SystemPrinter {
public:
    QtPrinter(PrinterDevice device, bool hasOthers) : device_(std::move(device)), hasOthers_(hasOthers) {
        renewPaper();
    }

    std::vector<PrinterDevice> installed() override {
        std::vector<PrinterDevice> all;
        if (hasOthers_)
            for (const QPrinterInfo& info : QPrinterInfo::availablePrinters())
                all.push_back({info.printerName().toStdString(), info.makeAndModel().toStdString(),
                    info.location().toStdString()});
        all.push_back({pdfDevice, "pdf", device_.driver == "pdf" ? device_.port : pdfPath_});
        return all;
    }
    PrinterDevice device() const override { return device_; }
    void choose(const PrinterDevice& device) override {
        device_ = device;
        renewPaper();
    }
    PageSettings page() const override { return page_; }
    void setPage(const PageSettings& settings) override {
        page_ = settings;
        renewPaper();
    }
    double scaleWidth() const override { return paper_->device().width() * twipsPerDot(); }
    double scaleHeight() const override { return paper_->device().height() * twipsPerDot(); }
    double sheetWidth() const override { return sheet().width() * twipsPerPoint; }
    double sheetHeight() const override { return sheet().height() * twipsPerPoint; }
    double physicalOffsetX() const override { return offset().left(); }
    double physicalOffsetY() const override { return offset().top(); }
    double twipsPerPixelX() const override { return twipsPerDot(); }
    double twipsPerPixelY() const override { return twipsPerDot(); }

    Font font() const override { return font_; }
    void setFont(const Font& font) override {
        if (font == font_)
            return;
        font_ = font;
        ink_.emplace(toQFont(font_), &paper_->device());
    }
    double textWidth(const std::string& text) const override { return ink_->width(text) * twipsPerDot(); }
    double textHeight(const std::string&) const override { return ink_->lineHeight() * twipsPerDot(); }
    double currentX() const override { return x_; }
    double currentY() const override { return y_; }
    void setCurrent(double x, double y) override {
        x_ = x;
        y_ = y;
    }

    void printLine(const PrintedLine& line) override {
        begin();
        const QPointF at(x_ / twipsPerDot(), y_ / twipsPerDot());
        ink_->paint(*painter_, at, paper_->device().width(), line);
        setCurrent(0, y_ + textHeight({}));
    }
    void newPage() override {
        begin();
        if (!paper_->device().newPage())
            fail("takes no further page");
        setCurrent(0, 0);
    }
    void endDocument() override {
        if (!painter_)
            return;
        const bool ended = painter_->end();
        painter_.reset();
        if (!ended)
            fail("has not taken the document");
        paper_->finish();
        renewPaper();
    }
    void cancelDocument() override {
        if (!painter_)
            return;
        paper_->giveUp();
        painter_->end();
        painter_.reset();
        renewPaper();
    }

    PagePicture picture(int width, int height, const std::function<void()>& print) override {
        PagePicture picture{
            width, height, std::vector<std::uint32_t>(std::size_t(width) * std::size_t(height))};
        QImage image(reinterpret_cast<uchar*>(picture.pixels.data()), width, height, QImage::Format_RGB32);
        image.fill(Qt::white);
        // In the paper's dots, so that fonts are as large as they are there.
        image.setDotsPerMeterX(qRound(paper_->dotsPerInch() * inchesPerMetre));
        image.setDotsPerMeterY(image.dotsPerMeterX());
        // Gone before the image is.
        const std::unique_ptr<QPainter, std::function<void(QPainter*)>> scope(
            (painter_ = std::make_unique<QPainter>(&image)).get(), [this](QPainter*) { painter_.reset(); });
        painter_->setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
        painter_->scale(width / (sheetWidth() / twipsPerDot()), height / (sheetHeight() / twipsPerDot()));
        painter_->translate(offset().left(), offset().top());
        print();
        return picture;
    }

    bool ask(QWidget* owner, PrintDialog& dialog) override;

private:
    double twipsPerDot() const { return twipsPerInch / paper_->dotsPerInch(); }
    QMargins offset() const { return paper_->device().pageLayout().marginsPixels(paper_->dotsPerInch()); }
    QSizeF sheet() const { return paper_->device().pageLayout().fullRect(QPageLayout::Point).size(); }
    bool isPdf() const { return device_.driver == "pdf"; }

    void renewPaper() {
        if (isPdf())
            paper_ = std::make_unique<PdfPaper>(device_.port);
        else
            paper_ = std::make_unique<SystemPaper>(device_, page_);
        constexpr QMarginsF margins(usualMargin, usualMargin, usualMargin, usualMargin);
        paper_->device().setPageLayout(layoutOf(page_, margins));
        ink_.emplace(toQFont(font_), &paper_->device());
    }
    void begin() {
        if (painter_)
            return;
        if (auto* pdf = dynamic_cast<PdfPaper*>(paper_.get()))
            pdf->open();
        painter_ = std::make_unique<QPainter>();
        if (painter_->begin(&paper_->device()))
            return;
        painter_.reset();
        fail("cannot be begun with");
    }
    [[noreturn]] void fail(const char* what) const {
        throw Error(errors::DeviceError, "The printer '" + device_.name + "' " + what);
    }

    PrinterDevice device_;
    bool hasOthers_;
    std::string pdfPath_;
    PageSettings page_;
    Font font_{.name = "Courier New"};
    std::unique_ptr<Paper> paper_;
    std::unique_ptr<QPainter> painter_; // while a document is begun; goes before the paper
    std::optional<PrintInk> ink_;
    double x_ = 0;
    double y_ = 0;
};

void showSettings(QPrinter& printer, const PrintDialog& dialog) {
    if (dialog.device.driver != "pdf")
        printer.setPrinterName(QString::fromStdString(dialog.device.name));
    else
        printer.setOutputFileName(QString::fromStdString(dialog.device.port));
    printer.setPageSize(layoutOf(dialog.page, {}).pageSize());
    printer.setPageOrientation(layoutOf(dialog.page, {}).orientation());
    printer.setCopyCount(std::max<int>(dialog.page.copies, 1));
    setInkAndSides(printer, dialog.page);
}

void readSettings(const QPrinter& printer, PrintDialog& dialog) {
    if (printer.outputFormat() == QPrinter::PdfFormat)
        dialog.device = {pdfDevice, "pdf", printer.outputFileName().toStdString()};
    else
        dialog.device = {printer.printerName().toStdString(), {}, {}};
    const QPageLayout layout = printer.pageLayout();
    dialog.page.orientation = layout.orientation() == QPageLayout::Landscape ? PageOrientation::Landscape
                                                                             : PageOrientation::Portrait;
    dialog.page.paperSize = std::int16_t(layout.pageSize().windowsId());
    dialog.page.copies = std::int16_t(std::clamp(printer.copyCount(), 1, 9999));
    dialog.page.colorMode = printer.colorMode() == QPrinter::GrayScale ? 1 : 2;
    dialog.page.duplex = printer.duplex() == QPrinter::DuplexLongSide    ? 3
                         : printer.duplex() == QPrinter::DuplexShortSide ? 2
                                                                         : 1;
}

bool QtPrinter::ask(QWidget* owner, PrintDialog& dialog) {
    QPrinter shown(QPrinter::HighResolution);
    showSettings(shown, dialog);
    QPrintDialog view(&shown, owner);
    view.setOption(QPrintDialog::PrintPageRange);
    view.setMinMax(dialog.minPage, dialog.maxPage);
    view.setFromTo(dialog.fromPage, dialog.toPage);
    const bool hasSelection = (dialog.flags & printflags::Selection) != 0;
    view.setOption(QPrintDialog::PrintSelection, hasSelection);
    view.setPrintRange(hasSelection ? QPrintDialog::Selection : QPrintDialog::AllPages);
    if (view.exec() != QDialog::Accepted)
        return false;
    readSettings(shown, dialog);
    if (dialog.device.driver == "pdf")
        pdfPath_ = dialog.device.port;
    dialog.flags &= ~(printflags::Selection | printflags::PageNumbers);
    if (view.printRange() == QPrintDialog::Selection)
        dialog.flags |= printflags::Selection;
    if (view.printRange() == QPrintDialog::PageRange) {
        dialog.flags |= printflags::PageNumbers;
        dialog.fromPage = view.fromPage();
        dialog.toPage = view.toPage();
    }
    return true;
}

} // namespace

std::unique_ptr<Printer> makePdfPrinter(const std::string& path) {
    return std::make_unique<QtPrinter>(PrinterDevice{pdfDevice, "pdf", path}, false);
}

std::unique_ptr<SystemPrinter> makeSystemPrinter() {
    const QPrinterInfo usual = QPrinterInfo::defaultPrinter();
    const PrinterDevice device = usual.isNull() ? PrinterDevice{pdfDevice, "pdf", "report.pdf"}
                                                : PrinterDevice{usual.printerName().toStdString(), {}, {}};
    return std::make_unique<QtPrinter>(device, true);
}

} // namespace genutil
