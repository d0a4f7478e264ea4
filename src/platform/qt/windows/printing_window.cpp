#include "platform/qt/windows/printing_window.h"

#include "platform/qt/form/bind.h"
#include "platform/qt/form/gauge_bar.h"

#include <QLabel>
#include <QPushButton>

namespace genutil {

PrintingWindow::PrintingWindow(const std::shared_ptr<frmPrinting>& form) : FormWindow(form, Qt::Dialog) {
    setFixed();
    for (Label* model : {&form->lblFile, &form->lblPage})
        bindPlaced(new QLabel(contents()), *model);
    bindPlaced(new GaugeBar(contents()), form->gauPages)->setAccessibleName(tr("Pages printed"));
    bindPlaced(new QPushButton(contents()), form->cmdCancel);
}

} // namespace genutil
