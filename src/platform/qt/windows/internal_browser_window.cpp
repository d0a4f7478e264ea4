#include "platform/qt/windows/internal_browser_window.h"

#include "platform/qt/form/bind.h"
#include "platform/qt/form/menu_bar.h"
#include "platform/qt/tie.h"
#include "platform/qt/web_module.h"
#include "platform/web/page_view.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

namespace genutil {
namespace {

void bindPage(PageView* view, WebView& model) {
    view->setObjectName(QString::fromStdString(model.name()));
    view->setAccessibleName(QStringLiteral("Page"));
    auto* tie = new Tie(view, model, [view, &model](Aspect aspect) {
        if (aspect == Aspect::Value)
            view->setZoom(model.zoom);
    });
    tie->keep(model.navigating.connectScoped([view](const std::string& page) { view->open(page); }));
    tie->keep(model.commanded.connectScoped([view](PageCommand command) { view->command(command); }));
    tie->keep(model.searching.connectScoped([view](const std::string& text, bool backwards) {
        view->search(QString::fromStdString(text), backwards);
    }));
    tie->keep(
        view->navigateComplete.connectScoped([&model] { report(model, [&] { model.navigateComplete(); }); }));
    tie->keep(view->refused.connectScoped(
        [&model](const QString& reason) { report(model, [&] { model.refused(reason.toStdString()); }); }));
    tie->keep(view->found.connectScoped(
        [&model](int place, int count) { report(model, [&] { model.found(place, count); }); }));
    tie->keep(view->stateChanged.connectScoped(
        [&model](const PageState& state) { report(model, [&] { model.stateChanged(state); }); }));
    tie->keep(view->menuWanted.connectScoped([&model] { report(model, [&] { model.menuWanted(); }); }));
    tie->keep(view->zoomWanted.connectScoped(
        [&model](int steps) { report(model, [&] { model.zoomWanted(steps); }); }));
    tie->keep(view->focused.connectScoped([&model] { report(model, [&] { model.setFocus(); }); }));
    view->setZoom(model.zoom);
    view->open(model.address());
}

} // namespace

InternalBrowserWindow::InternalBrowserWindow(const std::shared_ptr<frmInternal_Browser>& form)
    : FormWindow(form) {
    auto* page = makePageView(contents());
    bindPage(page, form->webHistory_viewer);
    place(page, form->webHistory_viewer);
    auto* label = bindPlaced(new QLabel(contents()), form->lblFind);
    auto* field = bindPlaced(new QLineEdit(contents()), form->txtFind);
    field->setAccessibleName(QStringLiteral("Find"));
    label->setBuddy(field);
    for (Button* model : {&form->cmdFindNext, &form->cmdFindPrevious})
        bindPlaced(new QPushButton(contents()), *model)->setAutoDefault(false);
    bindPlaced(new QLabel(contents()), form->lblStatus);
    bindPlaced(new QPushButton(contents()), form->cmdClose);
    for (QAction* action : makePopUpMenu(this, form->mnuPage)->actions())
        if (!action->isSeparator())
            addAction(action);
}

} // namespace genutil
