#include "platform/qt/print/qt_printer.h"

#include "hostif/error.h"
#include "platform/qt/fonts.h"
#include "platform/qt/print/paper.h"
#include "platform/qt/print/paper_abilities.h"
#include "platform/qt/print/print_dialog.h"
#include "platform/qt/print/print_ink.h"

#include <QImage>
#include <QPagedPaintDevice>
#include <QPageLayout>
#include <QPainter>
#include <QPrinterInfo>

#include <algorithm>
#include <list>
#include <utility>

namespace genutil {
namespace {

constexpr double twipsPerInch = 1440;
constexpr double twipsPerPoint = 20;
constexpr double twipsPerDot = twipsPerInch / Paper::dotsPerInch;
constexpr double inchesPerMetre = 1 / 0.0254;

PrinterDevice deviceOf(const QPrinterInfo& info) {
    return {
        info.printerName().toStdString(), info.makeAndModel().toStdString(), info.location().toStdString()};
}

class QtPrinter : public SystemPrinter {
public:
    QtPrinter(PrinterDevice device, std::string pdfPath, bool hasOthers)
        : pdfPath_(std::move(pdfPath)), hasOthers_(hasOthers) {
        choose(device);
    }

    std::vector<PrinterDevice> installed() override {
        std::vector<PrinterDevice> all;
        if (hasOthers_ && schedulerAnswers())
            for (const QPrinterInfo& info : QPrinterInfo::availablePrinters())
                all.push_back(deviceOf(info));
        all.push_back({pdfDevice, "pdf", pdfPath_});
        return all;
    }
    PrinterDevice device() const override { return device_; }
    void choose(const PrinterDevice& device) override {
        device_ = device;
        if (isPdf(device))
            pdfPath_ = device.port;
        abilities_ = abilitiesOf(device);
        setPage(page_);
    }
    PageSettings page() const override { return page_; }
    void setPage(const PageSettings& settings) override {
        page_ = abilities_.possible(settings);
        renewPaper();
    }
    double scaleWidth() const override { return paper_->device().width() * twipsPerDot; }
    double scaleHeight() const override { return paper_->device().height() * twipsPerDot; }
    double sheetWidth() const override { return sheet().width() * twipsPerPoint; }
    double sheetHeight() const override { return sheet().height() * twipsPerPoint; }
    double physicalOffsetX() const override { return offset().left(); }
    double physicalOffsetY() const override { return offset().top(); }
    double twipsPerPixelX() const override { return twipsPerDot; }
    double twipsPerPixelY() const override { return twipsPerDot; }

    Font font() const override { return font_; }
    void setFont(const Font& font) override {
        if (font == font_)
            return;
        font_ = font;
        takeInk();
    }
    double textWidth(const std::string& text) const override { return ink_->width(text) * twipsPerDot; }
    double textHeight(const std::string&) const override { return ink_->lineHeight() * twipsPerDot; }
    double currentX() const override { return x_; }
    double currentY() const override { return y_; }
    void setCurrent(double x, double y) override {
        x_ = x;
        y_ = y;
    }

    void setTitle(const std::string& title) override {
        title_ = title;
        paper_->setTitle(title);
    }
    void printLine(const PrintedLine& line) override {
        begin();
        const QPointF at(x_ / twipsPerDot, y_ / twipsPerDot);
        ink_->paint(*painter_, at, paper_->device().width(), line);
        setCurrent(0, y_ + textHeight({}));
    }
    void newPage() override {
        begin();
        if (!paper_->device().newPage())
            fail("does not accept another page");
        setCurrent(0, 0);
    }
    void endDocument() override {
        if (!painter_)
            return;
        const bool ended = painter_->end();
        painter_.reset();
        const std::unique_ptr<Paper> printed = std::move(paper_);
        renewPaper();
        if (!ended)
            fail("has not accepted the document");
        printed->finish();
    }
    void cancelDocument() override {
        if (!painter_)
            return;
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
        image.setDotsPerMeterX(qRound(Paper::dotsPerInch * inchesPerMetre));
        image.setDotsPerMeterY(image.dotsPerMeterX());
        // Gone before the image is.
        const std::unique_ptr<QPainter, std::function<void(QPainter*)>> scope(
            (painter_ = std::make_unique<QPainter>(&image)).get(), [this](QPainter*) { painter_.reset(); });
        painter_->setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
        painter_->scale(width / (sheetWidth() / twipsPerDot), height / (sheetHeight() / twipsPerDot));
        painter_->translate(offset().left(), offset().top());
        print();
        return picture;
    }

    bool ask(QWidget* owner, PrintDialog& dialog) override {
        std::vector<PrinterDevice> offered = installed();
        offered.back().port = dialog.document + ".pdf"; // the PDF file is the last one
        if (!askForPrinter(owner, offered, dialog))
            return false;
        if (isPdf(dialog.device))
            pdfPath_ = dialog.device.port;
        return true;
    }

private:
    QMargins offset() const { return paper_->device().pageLayout().marginsPixels(Paper::dotsPerInch); }
    QSizeF sheet() const { return paper_->device().pageLayout().fullRect(QPageLayout::Point).size(); }

    void renewPaper() {
        paper_ = isPdf(device_) ? makePdfPaper(device_.port)
                                : makeQueuePaper(device_.name, abilities_.jobOptions(page_));
        paper_->device().setPageLayout(abilities_.layoutOf(page_));
        paper_->setTitle(title_);
        inks_.clear();
        takeInk();
    }
    // A page goes from one font to another and back: what was looked up in them is kept.
    void takeInk() {
        auto known = std::ranges::find(inks_, font_, &Ink::first);
        if (known == inks_.end())
            known = inks_.emplace(known, font_, PrintInk(toQFont(font_), &paper_->device()));
        ink_ = &known->second;
    }
    void begin() {
        if (painter_)
            return;
        paper_->open();
        painter_ = std::make_unique<QPainter>();
        if (painter_->begin(&paper_->device()))
            return;
        painter_.reset();
        fail("cannot be opened");
    }
    [[noreturn]] void fail(const char* what) const {
        throw Error(errors::DeviceError, "The printer '" + device_.name + "' " + what);
    }

    using Ink = std::pair<Font, PrintInk>;

    PrinterDevice device_;
    std::string pdfPath_; // of the PDF file, as it was chosen last
    bool hasOthers_;
    PrinterAbilities abilities_;
    PageSettings page_;
    std::string title_ = "Kestal";
    Font font_{.name = "Courier New"};
    std::unique_ptr<Paper> paper_;
    std::unique_ptr<QPainter> painter_; // while a document is begun; goes before the paper
    std::list<Ink> inks_;               // of this paper
    PrintInk* ink_ = nullptr;
    double x_ = 0;
    double y_ = 0;
};

} // namespace

std::unique_ptr<Printer> makePdfPrinter(const std::string& path) {
    return std::make_unique<QtPrinter>(PrinterDevice{pdfDevice, "pdf", path}, path, false);
}

std::unique_ptr<SystemPrinter> makeSystemPrinter() {
    const QPrinterInfo usual = schedulerAnswers() ? QPrinterInfo::defaultPrinter() : QPrinterInfo();
    const PrinterDevice device = usual.isNull() ? PrinterDevice{pdfDevice, "pdf", ""} : deviceOf(usual);
    return std::make_unique<QtPrinter>(device, "", true);
}

} // namespace genutil
