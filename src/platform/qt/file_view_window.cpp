#include "platform/qt/file_view_window.h"

#include "platform/qt/bind.h"
#include "platform/qt/text_view.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>

namespace genutil {

FileViewWindow::FileViewWindow(const std::shared_ptr<frmFileView>& form) : FormWindow(form) {
    addMenuBar();

    auto* text = new TextView(contents());
    text->setFrameShape(QFrame::NoFrame);
    auto* buttons = new QFrame(contents());
    auto* row = new QHBoxLayout(buttons);
    for (Button* model : {&form->cmdClose, &form->cmdSelect, &form->cmdEdit, &form->cmdPrint}) {
        auto* button = new QPushButton(buttons);
        row->addWidget(button);
        bind(button, *model);
    }
    auto* help = new QFrame(contents());

    auto* column = new QVBoxLayout(contents());
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(text, 1);
    column->addWidget(buttons);
    column->addWidget(help);
    bind(text, form->rtbViewText);
    bind(buttons, form->pnlButtons);
    bind(help, form->pnlHelp);
}

} // namespace genutil
