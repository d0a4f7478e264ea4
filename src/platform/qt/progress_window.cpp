#include "platform/qt/progress_window.h"

#include "platform/qt/bind.h"
#include "platform/qt/gauge_bar.h"

#include <QLabel>

namespace genutil {

// No close box: the host takes the gauge away when its computation ends.
ProgressWindow::ProgressWindow(const std::shared_ptr<frmProgress>& form)
    : FormWindow(form, Qt::Tool | Qt::CustomizeWindowHint | Qt::WindowTitleHint) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFixed();
    for (Label* model : {&form->lblTitle, &form->lblProgress, &form->lblValue, &form->lbl0, &form->lbl100}) {
        auto* label = new QLabel(contents());
        bind(label, *model);
        place(label, *model);
    }
    auto* gauge = new GaugeBar(contents());
    gauge->setAccessibleName(QString::fromStdString(form->lblTitle.caption));
    bind(gauge, form->pnlGauge);
    place(gauge, form->pnlGauge);
}

} // namespace genutil
