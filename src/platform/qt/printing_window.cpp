#include "platform/qt/printing_window.h"

#include "platform/qt/bind.h"
#include "platform/qt/gauge_bar.h"

#include <QLabel>
#include <QPushButton>

namespace genutil {

PrintingWindow::PrintingWindow(const std::shared_ptr<frmPrinting>& form) : FormWindow(form, Qt::Dialog) {
    setFixed();
    for (Label* model : {&form->lblFile, &form->lblPage}) {
        auto* label = new QLabel(contents());
        bind(label, *model);
        place(label, *model);
    }
    auto* gauge = new GaugeBar(contents());
    gauge->setAccessibleName(tr("Pages printed"));
    bind(gauge, form->gauPages);
    place(gauge, form->gauPages);
    auto* cancel = new QPushButton(contents());
    bind(cancel, form->cmdCancel);
    place(cancel, form->cmdCancel);
}

} // namespace genutil
