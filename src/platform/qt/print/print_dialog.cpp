#include "platform/qt/print/print_dialog.h"

#include "platform/qt/dialogs.h"
#include "platform/qt/form/scrolled_part.h"
#include "platform/qt/print/paper_abilities.h"

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTimer>
#include <QToolButton>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <system_error>

namespace genutil {
namespace {

constexpr int mostCopies = 9999;
constexpr int fileWidth = 32;   // characters of a path that are seen at least
constexpr int choiceWidth = 24; // of a choice

struct Choice {
    int number;
    QString title;
};

void offer(QComboBox& box, const std::vector<Choice>& choices, int current) {
    box.clear();
    for (const Choice& choice : choices)
        box.addItem(choice.title, choice.number);
    box.setCurrentIndex(std::max(box.findData(current), 0));
    box.setEnabled(choices.size() > 1);
}

class PrintWindow : public StackDialog<QDialog> {
public:
    PrintWindow(QWidget* owner, const std::vector<PrinterDevice>& installed, const PrintDialog& given);

    // What the user has made of what was given.
    PrintDialog chosen() const;

protected:
    void accept() override;

private:
    QGroupBox* makePrinterGroup();
    QGroupBox* makePaperGroup();
    QGroupBox* makePagesGroup();
    QComboBox* addChoice(QFormLayout& form, const QString& label, const char* name);
    const PrinterDevice& device() const { return installed_.at(std::size_t(printer_->currentIndex())); }
    // The settings as they are offered now; what is not offered stays as it is wanted.
    PageSettings shownPage() const;
    void showPrinter();
    void showEstimate();
    void browse();
    bool mayWriteFile();

    const std::vector<PrinterDevice>& installed_;
    PrintDialog given_;
    PageSettings wanted_;
    PrinterAbilities abilities_;
    QString replacedFile_; // that the user has agreed to

    QComboBox* printer_ = nullptr;
    QLabel* place_ = nullptr;
    QLineEdit* file_ = nullptr;
    QToolButton* browse_ = nullptr;
    QComboBox* size_ = nullptr;
    QComboBox* orientation_ = nullptr;
    QComboBox* source_ = nullptr;
    QComboBox* sides_ = nullptr;
    QComboBox* color_ = nullptr;
    QComboBox* quality_ = nullptr;
    QRadioButton* all_ = nullptr;
    QRadioButton* range_ = nullptr;
    QRadioButton* selection_ = nullptr;
    QSpinBox* from_ = nullptr;
    QSpinBox* to_ = nullptr;
    QSpinBox* copies_ = nullptr;
    QLabel* estimate_ = nullptr;
    QTimer estimating_; // the dialog is there first, and takes a burst of choices together
};

PrintWindow::PrintWindow(
    QWidget* owner, const std::vector<PrinterDevice>& installed, const PrintDialog& given)
    : StackDialog(owner), installed_(installed), given_(given), wanted_(given.page) {
    setObjectName("print");
    setWindowTitle(tr("Print"));
    auto* const window = new QVBoxLayout(this);
    auto* const part = new ScrolledPart(this);
    window->addWidget(part, 1);
    auto* const column = new QVBoxLayout(part->contents());
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(makePrinterGroup());
    auto* const row = new QHBoxLayout;
    row->addWidget(makePaperGroup(), 1);
    row->addWidget(makePagesGroup());
    column->addLayout(row);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(tr("Print"));
    connect(buttons, &QDialogButtonBox::accepted, this, &PrintWindow::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &PrintWindow::reject);
    window->addWidget(buttons);

    const auto current = std::ranges::find(installed_, given.device.name, &PrinterDevice::name);
    // In place of a printer that is gone, no other one is printed on unasked: the PDF file, which is the
    // last.
    printer_->setCurrentIndex(
        int(current == installed_.end() ? installed_.size() - 1 : std::size_t(current - installed_.begin())));
    showPrinter();
    resize(fitted(*this, sizeHint(),
        (owner ? owner : this)->screen()->availableGeometry().marginsRemoved(usualFrame).size()));
    connect(printer_, &QComboBox::currentIndexChanged, this, [this] {
        wanted_ = shownPage();
        showPrinter();
    });
    estimating_.setSingleShot(true);
    estimating_.callOnTimeout(this, &PrintWindow::showEstimate);
    for (const QComboBox* const choice : {printer_, size_, orientation_, source_, sides_, quality_})
        connect(choice, &QComboBox::currentIndexChanged, this, [this] { estimating_.start(); });
    if (given_.estimate)
        estimating_.start();
}

QGroupBox* PrintWindow::makePrinterGroup() {
    auto* const group = new QGroupBox(tr("Printer"), this);
    auto* const form = new QFormLayout(group);
    printer_ = addChoice(*form, tr("&Name:"), "printer");
    for (const PrinterDevice& device : installed_)
        printer_->addItem(QString::fromStdString(device.name));
    place_ = new QLabel(group);
    place_->setTextFormat(Qt::PlainText);
    place_->setWordWrap(true);
    form->addRow(tr("Type:"), place_);
    auto* const row = new QHBoxLayout;
    file_ = new QLineEdit(group);
    file_->setObjectName("file");
    file_->setMinimumWidth(fileWidth * fontMetrics().averageCharWidth());
    row->addWidget(file_);
    browse_ = new QToolButton(group);
    browse_->setText("...");
    browse_->setAccessibleName(tr("Choose the file"));
    browse_->setFocusPolicy(Qt::TabFocus);
    row->addWidget(browse_);
    form->addRow(tr("&File:"), row);
    static_cast<QLabel*>(form->labelForField(row))->setBuddy(file_);
    connect(browse_, &QToolButton::clicked, this, &PrintWindow::browse);
    return group;
}

QGroupBox* PrintWindow::makePaperGroup() {
    auto* const group = new QGroupBox(tr("Paper"), this);
    auto* const form = new QFormLayout(group);
    size_ = addChoice(*form, tr("Si&ze:"), "size");
    orientation_ = addChoice(*form, tr("&Orientation:"), "orientation");
    source_ = addChoice(*form, tr("So&urce:"), "source");
    sides_ = addChoice(*form, tr("&Sides:"), "sides");
    color_ = addChoice(*form, tr("Co&lour:"), "color");
    quality_ = addChoice(*form, tr("&Quality:"), "quality");
    return group;
}

QGroupBox* PrintWindow::makePagesGroup() {
    auto* const group = new QGroupBox(tr("Pages"), this);
    auto* const form = new QFormLayout(group);
    all_ = new QRadioButton(tr("&All"), group);
    form->addRow(all_);
    auto* const row = new QHBoxLayout;
    range_ = new QRadioButton(tr("Pa&ges from"), group);
    row->addWidget(range_);
    const auto pageBox = [&](const char* name, int page, const QString& says) {
        auto* const box = new QSpinBox(group);
        box->setObjectName(name);
        box->setRange(given_.minPage, given_.maxPage);
        box->setValue(page);
        box->setAccessibleName(says);
        guardWheel(box);
        row->addWidget(box);
        connect(box, &QSpinBox::valueChanged, range_, [this] { range_->setChecked(true); });
        return box;
    };
    from_ = pageBox("from", given_.fromPage, tr("First page"));
    auto* const between = new QLabel(tr("&to"), group);
    row->addWidget(between);
    to_ = pageBox("to", given_.toPage, tr("Last page"));
    between->setBuddy(to_);
    row->addStretch();
    form->addRow(row);
    selection_ = new QRadioButton(tr("S&election"), group);
    form->addRow(selection_);
    const bool hasSelection = (given_.flags & printflags::Selection) != 0;
    selection_->setEnabled(hasSelection);
    (hasSelection ? selection_ : all_)->setChecked(true);
    copies_ = new QSpinBox(group);
    copies_->setObjectName("copies");
    copies_->setRange(1, mostCopies);
    copies_->setValue(given_.page.copies);
    guardWheel(copies_);
    copies_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    form->addRow(tr("&Copies:"), copies_);
    estimate_ = new QLabel(group);
    estimate_->setObjectName("estimate");
    estimate_->setTextFormat(Qt::PlainText);
    estimate_->setWordWrap(true);
    // Whatever it will say, the dialog keeps its size.
    estimate_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    estimate_->setFixedHeight(5 * fontMetrics().lineSpacing());
    estimate_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    form->addRow(estimate_);
    return group;
}

QComboBox* PrintWindow::addChoice(QFormLayout& form, const QString& label, const char* name) {
    auto* const box = new QComboBox(form.parentWidget());
    box->setObjectName(name);
    // Names of printers and papers have no longest one.
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(choiceWidth);
    guardWheel(box);
    form.addRow(label, box);
    return box;
}

void PrintWindow::showPrinter() {
    abilities_ = abilitiesOf(device());
    const PageSettings page = abilities_.possible(wanted_);
    place_->setText(
        isPdf(device())
            ? tr("A file instead of a printer")
            : QString::fromStdString(device().driver + (device().port.empty() ? "" : ", ") + device().port));
    file_->setEnabled(isPdf(device()));
    browse_->setEnabled(isPdf(device()));
    file_->setText(
        isPdf(device()) ? QFileInfo(QString::fromStdString(device().port)).absoluteFilePath() : QString());
    file_->setCursorPosition(0);

    std::vector<Choice> sizes;
    for (const PaperSize& paper : abilities_.sizes)
        sizes.push_back({paper.number, paper.size.name()});
    offer(*size_, sizes, page.paperSize);
    offer(*orientation_, {{1, tr("Portrait")}, {2, tr("Landscape")}}, int(page.orientation));

    const Choice usual{0, tr("As the printer is set")};
    std::vector<Choice> sources{usual};
    for (const PaperSource& source : abilities_.sources)
        sources.push_back({source.number, source.choice.title});
    offer(*source_, sources, page.paperBin);
    std::vector<Choice> sides{usual};
    if (abilities_.hasDuplex)
        sides.insert(sides.end(), {{1, tr("One side")}, {3, tr("Both sides, turned over the long edge")},
                                      {2, tr("Both sides, turned over the short edge")}});
    offer(*sides_, sides, page.duplex);
    std::vector<Choice> colors{usual};
    if (abilities_.hasColor)
        colors.insert(colors.end(), {{1, tr("Black and white")}, {2, tr("Colour")}});
    offer(*color_, colors, page.colorMode);
    std::vector<Choice> qualities{usual};
    if (abilities_.isPaper)
        qualities.insert(
            qualities.end(), {{-1, tr("Draft")}, {-2, tr("Low")}, {-3, tr("Medium")}, {-4, tr("High")}});
    for (const PrintResolution& resolution : abilities_.resolutions)
        qualities.push_back({resolution.dots, tr("%1 dots per inch").arg(resolution.dots)});
    offer(*quality_, qualities, page.quality);
}

PageSettings PrintWindow::shownPage() const {
    const auto read = [](const QComboBox& box, std::int16_t wanted) {
        return box.isEnabled() ? std::int16_t(box.currentData().toInt()) : wanted;
    };
    PageSettings page = wanted_;
    page.orientation = PageOrientation(read(*orientation_, 1));
    page.paperSize = read(*size_, page.paperSize);
    page.paperBin = read(*source_, page.paperBin);
    page.duplex = read(*sides_, page.duplex);
    page.colorMode = read(*color_, page.colorMode);
    page.quality = read(*quality_, page.quality);
    page.copies = std::int16_t(copies_->value());
    return page;
}

void PrintWindow::showEstimate() {
    if (!given_.estimate)
        return;
    setCursor(Qt::WaitCursor);
    const auto pages = given_.estimate(device(), abilities_.possible(shownPage()));
    unsetCursor();
    if (!pages)
        return estimate_->clear();
    const QString count = pages->pageCount == 1 ? tr("The report has 1 page.")
                                                : tr("The report has %1 pages.").arg(pages->pageCount);
    estimate_->setText(
        pages->cutOff.empty() ? count : count + "\n" + QString::fromStdString(pages->cutOff) + ".");
}

void PrintWindow::browse() {
    FileDialog files;
    files.filter = "PDF document (*.pdf)|*.pdf|";
    files.filterIndex = 1;
    files.flags = dialogflags::OverwritePrompt;
    files.fileName = file_->text().toStdString();
    if (!showFileDialog(this, files, FileDialogKind::Save))
        return;
    replacedFile_ = QString::fromStdString(files.fileName);
    file_->setText(replacedFile_);
}

bool PrintWindow::mayWriteFile() {
    const QFileInfo file(file_->text());
    const auto refuse = [&](const char* why) {
        showMessage({.text = "'" + file_->text().toStdString() + "' " + why, .icon = Icon::Exclamation});
        file_->setFocus();
        return false;
    };
    if (file_->text().trimmed().isEmpty() || file.isDir())
        return refuse("is not the name of a file.");
    if (!file.dir().exists())
        return refuse("would be in a folder that does not exist.");
    std::error_code none;
    if (std::filesystem::equivalent(file_->text().toStdString(), given_.document, none))
        return refuse("is the report itself.");
    return file.absoluteFilePath() == replacedFile_ || mayReplaceFile(file_->text());
}

void PrintWindow::accept() {
    if (!isPdf(device()) || mayWriteFile())
        QDialog::accept();
}

PrintDialog PrintWindow::chosen() const {
    PrintDialog dialog = given_;
    dialog.device = device();
    if (isPdf(dialog.device))
        dialog.device.port = QFileInfo(file_->text()).absoluteFilePath().toStdString();
    dialog.page = abilities_.possible(shownPage());
    dialog.flags &= ~(printflags::Selection | printflags::PageNumbers);
    if (selection_->isChecked())
        dialog.flags |= printflags::Selection;
    if (range_->isChecked()) {
        dialog.flags |= printflags::PageNumbers;
        dialog.fromPage = from_->value();
        dialog.toPage = to_->value();
    }
    return dialog;
}

} // namespace

bool askForPrinter(QWidget* owner, const std::vector<PrinterDevice>& installed, PrintDialog& dialog) {
    PrintWindow window(owner, installed, dialog);
    if (window.exec() != QDialog::Accepted)
        return false;
    dialog = window.chosen();
    return true;
}

} // namespace genutil
