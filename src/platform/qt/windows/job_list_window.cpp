#include "platform/qt/windows/job_list_window.h"

#include "platform/qt/form/bind.h"
#include "platform/qt/form/gauge_bar.h"
#include "platform/qt/form/menu_bar.h"
#include "platform/qt/grid/grid_view.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSplitter>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <QToolTip>

namespace genutil {
namespace {

constexpr QSize leastSize(480, 260); // pixels of the window's contents
constexpr int buttonWidth = 300;     // of the button that names a job; less in a narrow window
constexpr int leastButtonWidth = 150;

// A button that keeps its width whatever its caption: a job's name may have hundreds of letters. A caption
// that is cut is the button's tool tip.
class CaptionButton : public QPushButton {
public:
    using QPushButton::QPushButton;

    QSize sizeHint() const override { return {buttonWidth, QPushButton::sizeHint().height()}; }
    QSize minimumSizeHint() const override { return {leastButtonWidth, sizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent*) override {
        QStyleOptionButton option = styled();
        option.text = shownCaption(option);
        QStylePainter(this).drawControl(QStyle::CE_PushButton, option);
    }
    bool event(QEvent* event) override {
        if (event->type() != QEvent::ToolTip)
            return QPushButton::event(event);
        const bool isCut = shownCaption(styled()) != text();
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(),
            isCut ? accessibleName().toHtmlEscaped() : toolTip(), this);
        return true;
    }

private:
    QStyleOptionButton styled() const {
        QStyleOptionButton option;
        initStyleOption(&option);
        return option;
    }
    QString shownCaption(const QStyleOptionButton& option) const {
        const int room = style()->subElementRect(QStyle::SE_PushButtonContents, &option, this).width();
        return fontMetrics().elidedText(option.text, Qt::ElideMiddle, room, Qt::TextShowMnemonic);
    }
};

QFrame* makeRow(QWidget* parent, Panel& model) {
    auto* frame = new QFrame(parent);
    bind(frame, model);
    auto* row = new QHBoxLayout(frame);
    row->setContentsMargins(6, 4, 6, 4);
    return frame;
}

template<class View, class Model>
View* add(QFrame* row, View* view, Model& model, int stretch = 0) {
    static_cast<QHBoxLayout*>(row->layout())->addWidget(view, stretch);
    bind(view, model);
    return view;
}

QFrame* makeFilter(QWidget* parent, frmJobList& form) {
    QFrame* row = makeRow(parent, form.pnlFilter);
    auto* label = add(row, new QLabel(row), form.lblFilter);
    auto* field = new QLineEdit(row);
    field->setAccessibleName(QStringLiteral("Filter"));
    field->setPlaceholderText(QStringLiteral("Words in any column, or surveyor:smith"));
    label->setBuddy(add(row, field, form.txtFilter, 1));
    add(row, new QPushButton(row), form.cmdClearFilter);
    return row;
}

QFrame* makeReading(QWidget* parent, frmJobList& form) {
    QFrame* row = makeRow(parent, form.pnlReading);
    add(row, new QLabel(row), form.lblReading, 1);
    auto* gauge = new GaugeBar(row);
    gauge->setAccessibleName(QStringLiteral("Jobs read"));
    add(row, gauge, form.gauReading, 1);
    add(row, new QPushButton(row), form.cmdStopReading);
    return row;
}

QLayout* makeButtons(QWidget* parent, frmJobList& form) {
    auto* row = new QHBoxLayout;
    row->setContentsMargins(6, 4, 6, 6);
    row->setSpacing(12);
    auto* change = new CaptionButton(parent);
    auto* count = new QLabel(parent);
    auto* exit = new QPushButton(parent);
    bind(static_cast<QPushButton*>(change), form.cmdChangeJob);
    bind(count, form.lblCount);
    bind(exit, form.cmdExit);
    auto* unread = new QPushButton(parent);
    bind(unread, form.cmdUnread);
    count->setAlignment(Qt::AlignCenter);
    count->setWordWrap(true);
    row->addWidget(change);
    row->addWidget(count, 1);
    row->addWidget(unread);
    row->addWidget(exit);
    return row;
}

// The keys of the menu's entries act while the grid, or what is in it, has the focus; the filter's in the
// whole window.
void takeKeys(QWidget* grid, QWidget* window, QMenu* menu, const QString& forWindow) {
    for (QAction* action : menu->actions()) {
        if (action->menu())
            takeKeys(grid, window, action->menu(), forWindow);
        if (action->shortcuts().isEmpty())
            continue;
        const bool wide = action->objectName() == forWindow;
        action->setShortcutContext(wide ? Qt::WindowShortcut : Qt::WidgetWithChildrenShortcut);
        (wide ? window : grid)->addAction(action);
    }
}

// Below the jobs, where the reasons have the window's width.
QFrame* makeUnread(FormWindow* window, frmJobList& form) {
    auto* frame = new QFrame(window);
    bind(frame, form.pnlUnread);
    auto* list = new GridView(frame);
    list->setAccessibleName(QStringLiteral("Files that could not be read"));
    bind(list, form.flxUnread);
    takeKeys(list, window, makePopUpMenu(window, form.mnuUnreadMenu), {});
    auto* row = new QVBoxLayout(frame);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(list);
    return frame;
}

} // namespace

JobListWindow::JobListWindow(const std::shared_ptr<frmJobList>& form) : FormWindow(form) {
    setMinimumSize(leastSize);
    auto* grid = new GridView(contents());
    grid->setAccessibleName(QStringLiteral("Jobs"));
    bind(grid, form->flxJobList);
    takeKeys(
        grid, this, makePopUpMenu(this, form->mnuRecordMenu), QString::fromStdString(form->mnuFilter.name()));

    auto* parts = new QSplitter(Qt::Vertical, contents());
    parts->setChildrenCollapsible(false);
    parts->addWidget(grid);
    parts->addWidget(makeUnread(this, *form));
    parts->setStretchFactor(0, 2);
    parts->setStretchFactor(1, 1);

    auto* column = new QVBoxLayout(contents());
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeReading(contents(), *form));
    column->addWidget(makeFilter(contents(), *form));
    column->addWidget(parts, 1);
    column->addLayout(makeButtons(contents(), *form));
    auto* help = new QFrame(contents());
    column->addWidget(help);
    bind(help, form->pnlHelp);
}

} // namespace genutil
