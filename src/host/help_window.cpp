#include "host/help_window.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPointer>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>

namespace kestal {

HelpWindow::HelpWindow(const HelpTexts& texts, QWidget* parent)
    : QDialog(parent), texts_(texts), topics_(new QListWidget), title_(new QLabel),
      text_(new QPlainTextEdit) {
    setObjectName("frmHelp");
    setWindowTitle("Kestal help");
    setAttribute(Qt::WA_DeleteOnClose);

    topics_->setAccessibleName("Help topics");
    for (const auto& [number, topic] : texts_.topics()) {
        auto* item = new QListWidgetItem(topic.title, topics_);
        item->setData(Qt::UserRole, number);
    }
    auto* halves = new QSplitter;
    halves->setChildrenCollapsible(false);
    halves->addWidget(topics_);
    halves->addWidget(makePage());
    halves->setStretchFactor(0, 0);
    halves->setStretchFactor(1, 1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(halves, 1);
    layout->addWidget(buttons);
    resize(QSize(800, 520).boundedTo(screen()->availableSize()));
    halves->setSizes({width() * 3 / 10, width() * 7 / 10});

    connect(topics_, &QListWidget::currentItemChanged, this, [this](const QListWidgetItem* item) {
        if (const HelpTopic* topic = item ? texts_.find(item->data(Qt::UserRole).toInt()) : nullptr)
            showText(topic->title, topic->text);
    });
    connect(new QShortcut(Qt::Key_F6, this), &QShortcut::activated, this,
        [this] { (topics_->hasFocus() ? static_cast<QWidget*>(text_) : topics_)->setFocus(); });
    topics_->setFocus();
}

QWidget* HelpWindow::makePage() {
    QFont heading = title_->font();
    heading.setBold(true);
    heading.setPointSizeF(heading.pointSizeF() * 1.2);
    title_->setFont(heading);
    title_->setTextFormat(Qt::PlainText);
    title_->setWordWrap(true);
    text_->setReadOnly(true);
    text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text_->setAccessibleName("Help text");
    text_->setFrameShape(QFrame::NoFrame);
    text_->setTabChangesFocus(true);

    auto* page = new QWidget;
    auto* pageLayout = new QVBoxLayout(page);
    pageLayout->setContentsMargins(12, 0, 0, 0);
    pageLayout->addWidget(title_);
    pageLayout->addWidget(text_, 1);
    return page;
}

void HelpWindow::showTopic(int number) {
    for (int row = 0; row < topics_->count(); ++row)
        if (topics_->item(row)->data(Qt::UserRole).toInt() == number)
            return topics_->setCurrentRow(row);
    topics_->setCurrentRow(-1);
    showText("No help", topics_->count() == 0 ? "The help file of this installation could not be read."
                                              : "There is no help for this window.");
}

void HelpWindow::showText(const QString& title, const QString& text) {
    title_->setText(title);
    text_->setPlainText(text);
}

void showHelpWindow(const HelpTexts& texts, int topic) {
    static QPointer<HelpWindow> open;
    // A dialog that blocks other windows does not block its own children, so the help belongs to the active
    // window.
    QWidget* const owner =
        QApplication::activeModalWidget() ? QApplication::activeModalWidget() : QApplication::activeWindow();
    if (open && open != owner && open->parentWidget() != owner)
        delete open;
    if (!open)
        open = new HelpWindow(texts, owner);
    open->showTopic(topic);
    open->show();
    open->raise();
    open->activateWindow();
}

} // namespace kestal
