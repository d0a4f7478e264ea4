#include "host/help_window.h"

#include "host/help_page.h"
#include "host/screen_room.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QListWidget>
#include <QPointer>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>

namespace kestal {

HelpWindow::HelpWindow(const Host& host, QWidget* parent)
    : QDialog(parent), texts_(host.help), topics_(new QListWidget),
      page_(new HelpPage(host.paths.helpPage("manual.html"))) {
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
    halves->addWidget(page_);
    halves->setStretchFactor(0, 0);
    halves->setStretchFactor(1, 1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(halves, 1);
    layout->addWidget(buttons);
    resize(startSize(*this, {800, 520}));
    halves->setSizes({width() * 3 / 10, width() * 7 / 10});

    connect(topics_, &QListWidget::currentItemChanged, this, [this](const QListWidgetItem* item) {
        if (const int number = item ? item->data(Qt::UserRole).toInt() : 0;
            const auto* topic = texts_.find(number))
            showPage(number, topic);
    });
    connect(new QShortcut(Qt::Key_F6, this), &QShortcut::activated, this,
        [this] { (topics_->hasFocus() ? static_cast<QWidget*>(page_) : topics_)->setFocus(); });
    topics_->setFocus();
}

void HelpWindow::showTopic(int number) {
    for (int row = 0; row < topics_->count(); ++row)
        if (topics_->item(row)->data(Qt::UserRole).toInt() == number)
            return topics_->setCurrentRow(row);
    topics_->setCurrentRow(-1);
    showPage(number, nullptr);
}

void HelpWindow::showPage(int number, const HelpTopic* topic) {
    if (page_->hasTopic(number))
        page_->showTopic(number);
    else if (topic)
        page_->showText(topic->title, topic->text);
    else
        page_->showText("No help", topics_->count() == 0
                                       ? "The help file of this installation could not be read."
                                       : "There is no help for this window.");
}

void showHelpWindow(const Host& host, int topic) {
    static QPointer<HelpWindow> open;
    // A dialog that blocks other windows does not block its own children, so the help belongs to the active
    // window.
    QWidget* const owner =
        QApplication::activeModalWidget() ? QApplication::activeModalWidget() : QApplication::activeWindow();
    if (open && open != owner && open->parentWidget() != owner)
        delete open;
    if (!open)
        open = new HelpWindow(host, owner);
    open->showTopic(topic);
    open->show();
    open->raise();
    open->activateWindow();
}

} // namespace kestal
