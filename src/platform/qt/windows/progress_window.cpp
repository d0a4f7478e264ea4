#include "platform/qt/windows/progress_window.h"

#include "platform/qt/form/bind.h"
#include "platform/qt/form/gauge_bar.h"

#include <QLabel>

namespace genutil {

// No close box: the host takes the gauge away when its computation ends.
ProgressWindow::ProgressWindow(const std::shared_ptr<frmProgress>& form)
    : FormWindow(form, Qt::Tool | Qt::CustomizeWindowHint | Qt::WindowTitleHint) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFixed();
    for (Label* model : {&form->lblTitle, &form->lblProgress, &form->lblValue, &form->lbl0, &form->lbl100})
        bindPlaced(new QLabel(contents()), *model);
    bindPlaced(new GaugeBar(contents()), form->pnlGauge)
        ->setAccessibleName(QString::fromStdString(form->lblTitle.caption));
}

} // namespace genutil
