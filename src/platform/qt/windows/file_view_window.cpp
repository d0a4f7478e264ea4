#include "platform/qt/windows/file_view_window.h"

#include "platform/qt/form/bind.h"
#include "platform/qt/form/report_view.h"
#include "platform/qt/tie.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QUrl>

namespace genutil {
namespace {

// One control after another in a bar of one or more rows.
class Bar {
public:
    Bar(QWidget* parent, Panel& model) : frame_(new QFrame(parent)), rows_(new QVBoxLayout(frame_)) {
        rows_->setContentsMargins(6, 3, 6, 3);
        rows_->setSpacing(3);
        beginRow();
        bind(frame_, model);
    }

    QFrame* frame() const { return frame_; }

    template<class View, class Model>
    View* add(Model& model, int stretch = 0) {
        auto* view = new View(frame_);
        row_->addWidget(view, stretch);
        bind(view, model);
        return view;
    }
    void addSpace() { row_->addStretch(1); }
    void beginRow() {
        row_ = new QHBoxLayout;
        rows_->addLayout(row_);
    }

private:
    QFrame* frame_;
    QVBoxLayout* rows_;
    QHBoxLayout* row_ = nullptr;
};

QFrame* makeButtons(QWidget* parent, frmFileView& form) {
    Bar bar(parent, form.pnlButtons);
    for (Button* model : {&form.cmdClose, &form.cmdSelect, &form.cmdEdit, &form.cmdPrint})
        bar.add<QPushButton>(*model);
    return bar.frame();
}

QFrame* makeNotice(QWidget* parent, ChangeNotice& notice) {
    Bar bar(parent, notice.pnlNotice);
    bar.frame()->setAutoFillBackground(true);
    bar.frame()->setBackgroundRole(QPalette::ToolTipBase);
    bar.frame()->setForegroundRole(QPalette::ToolTipText);
    bar.add<QLabel>(notice.lblNotice, 1)->setForegroundRole(QPalette::ToolTipText);
    bar.add<QPushButton>(notice.cmdReload);
    bar.add<QPushButton>(notice.cmdIgnore);
    return bar.frame();
}

QFrame* makeFindBar(QWidget* parent, FindBar& find) {
    Bar bar(parent, find.pnlFind);
    auto* label = bar.add<QLabel>(find.lblFind);
    auto* field = bar.add<QLineEdit>(find.txtFind, 2);
    label->setBuddy(field);
    field->setAccessibleName(QStringLiteral("Find"));
    field->setClearButtonEnabled(true);
    field->setMinimumWidth(100);
    bar.add<QPushButton>(find.cmdFindNext);
    bar.add<QPushButton>(find.cmdFindPrevious);
    bar.add<QPushButton>(find.cmdFindClose);
    // A second row, so that nothing is cut in a narrow window.
    bar.beginRow();
    bar.add<QCheckBox>(find.chkMatchCase);
    bar.add<QCheckBox>(find.chkWholeWord);
    bar.add<QLabel>(find.lblFindResult, 1)->setContentsMargins(12, 0, 0, 0);
    return bar.frame();
}

QFrame* makeStatusBar(QWidget* parent, ViewerStatus& status) {
    Bar bar(parent, status.pnlStatus);
    bar.add<QLabel>(status.lblPosition);
    bar.add<QLabel>(status.lblSelection)->setContentsMargins(18, 0, 0, 0);
    bar.addSpace();
    bar.add<QComboBox>(status.cboEncoding)->setAccessibleName(QStringLiteral("Encoding"));
    bar.add<QLabel>(status.lblSize)->setContentsMargins(12, 0, 0, 0);
    return bar.frame();
}

// The file that is being dragged, if it is one that a viewer can open.
QString draggedFile(const QMimeData* data) {
    if (!data->hasUrls() || data->urls().size() != 1)
        return {};
    const QString file = data->urls().front().toLocalFile();
    return QFileInfo(file).isFile() ? file : QString();
}

} // namespace

FileViewWindow::FileViewWindow(const std::shared_ptr<frmFileView>& form) : FormWindow(form) {
    addMenuBar();
    setAcceptDrops(true);

    auto* text = new ReportView(contents());
    text->setAccessibleName(QStringLiteral("Report text"));
    bind(text, form->rtbViewText);
    text->zoomed.connect([this](int steps) {
        if (const auto shown = viewer())
            shown->userZoom(steps);
    });
    for (const MenuItem* item : {&form->mnu_Find, &form->mnu_GoToLine, &form->mnu_WrapLines})
        if (auto* action = findChild<QAction*>(QString::fromStdString(item->name())))
            text->addToContextMenus(action);

    auto* column = new QVBoxLayout(contents());
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeNotice(contents(), form->notice));
    column->addWidget(text, 1);
    column->addWidget(makeButtons(contents(), *form));
    column->addWidget(makeFindBar(contents(), form->findBar));
    column->addWidget(makeStatusBar(contents(), form->status));
    auto* help = new QFrame(contents());
    column->addWidget(help);
    bind(help, form->pnlHelp);
}

std::shared_ptr<frmFileView> FileViewWindow::viewer() const {
    return std::static_pointer_cast<frmFileView>(form());
}

void FileViewWindow::dragEnterEvent(QDragEnterEvent* event) {
    const auto shown = viewer();
    if (shown && shown->mnu_OpenFile.enabled && !draggedFile(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void FileViewWindow::dropEvent(QDropEvent* event) {
    const QString file = draggedFile(event->mimeData());
    const auto shown = viewer();
    if (!shown || file.isEmpty())
        return;
    event->acceptProposedAction();
    // The program that is dragged from waits until this returns, and the viewer may ask a question first.
    QMetaObject::invokeMethod(
        this,
        [this, file] {
            const auto stillShown = viewer();
            if (stillShown && stillShown->hearsUser())
                report(*stillShown, [&] { stillShown->userDropFile(file.toStdString()); });
        },
        Qt::QueuedConnection);
}

} // namespace genutil
