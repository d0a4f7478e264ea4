#include "platform/qt/print_preview_window.h"

#include "platform/qt/bind.h"
#include "platform/qt/printed_page_view.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace genutil {

PrintPreviewWindow::PrintPreviewWindow(const std::shared_ptr<frmPrintPreview>& form) : FormWindow(form) {
    const auto add = [this](auto* view, auto& model) {
        bind(view, model);
        place(view, model);
        return view;
    };
    for (Button* model : {&form->cmdFirst, &form->cmdPrevious, &form->cmdNext, &form->cmdLast,
             &form->cmdPrint, &form->cmdClose})
        add(new QPushButton(contents()), *model)->setAutoDefault(false);
    add(new QLineEdit(contents()), form->txtPage)->setAccessibleName(QStringLiteral("Page"));
    add(new QLabel(contents()), form->lblPages);
    auto* zoomLabel = add(new QLabel(contents()), form->lblZoom);
    zoomLabel->setBuddy(add(new QComboBox(contents()), form->cboZoom));
    place(new PrintedPageView(form->pagShown, contents()), form->pagShown);
}

} // namespace genutil
