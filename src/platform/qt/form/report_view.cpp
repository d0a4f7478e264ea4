#include "platform/qt/form/report_view.h"

#include "platform/qt/rich/rich_text_view.h"
#include "platform/qt/text/text_view.h"

namespace genutil {

ReportView::ReportView(QWidget* parent)
    : QStackedWidget(parent), plain_(new TextView(this)), rich_(new RichTextView(this)) {
    addWidget(plain_);
    addWidget(rich_);
    for (QAbstractScrollArea* view : views())
        view->setFrameShape(QFrame::NoFrame);
    setFocusProxy(plain_);
    setFocusPolicy(Qt::StrongFocus);
    plain_->zoomRequested.connect([this](int steps) { zoomed(steps); });
    rich_->zoomRequested.connect([this](int steps) { zoomed(steps); });
}

std::array<QAbstractScrollArea*, 2> ReportView::views() const {
    return {plain_, rich_};
}

void ReportView::setModel(ReportText* model) {
    // Let go of first: the last of a rich text's edits is handed over then.
    plain_->setModel(model);
    rich_->setModel(model);
    model_ = model;
    following_ = model ? model->changed.connectScoped([this](Aspect aspect) {
        if (aspect == Aspect::Text)
            showKind();
    })
                       : Connection();
    if (model)
        showKind();
}

void ReportView::showKind() {
    QWidget* const view = model_->isRich() ? static_cast<QWidget*>(rich_) : plain_;
    const bool hadFocus = currentWidget()->hasFocus();
    setFocusProxy(view);
    setCurrentWidget(view);
    if (hadFocus)
        view->setFocus();
}

void ReportView::addToContextMenus(QAction* action) {
    for (QAbstractScrollArea* view : views())
        view->addAction(action);
}

} // namespace genutil
