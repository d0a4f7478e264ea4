#include "platform/qt/windows/print_preview_window.h"

#include "platform/qt/form/bind.h"
#include "platform/qt/print/printed_page_view.h"
#include "platform/qt/twip_scale.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace genutil {
namespace {

constexpr int leastHeight = 200; // pixels

} // namespace

PrintPreviewWindow::PrintPreviewWindow(const std::shared_ptr<frmPrintPreview>& form) : FormWindow(form) {
    for (Button* model : {&form->cmdFirst, &form->cmdPrevious, &form->cmdNext, &form->cmdLast,
             &form->cmdPrint, &form->cmdClose})
        bindPlaced(new QPushButton(contents()), *model)->setAutoDefault(false);
    bindPlaced(new QLineEdit(contents()), form->txtPage)->setAccessibleName(QStringLiteral("Page"));
    bindPlaced(new QLabel(contents()), form->lblPages);
    bindPlaced(new QLabel(contents()), form->lblCutOff)->setWordWrap(true);
    auto* zoomLabel = bindPlaced(new QLabel(contents()), form->lblZoom);
    zoomLabel->setBuddy(bindPlaced(new QComboBox(contents()), form->cboZoom));
    place(new PrintedPageView(form->pagShown, contents()), form->pagShown);
    setMinimumSize(TwipScale::ofScreen().pixelsHolding(form->leastRoom()), leastHeight);
}

} // namespace genutil
