#include "platform/qt/windows/progress_window.h"

#include "platform/qt/form/bind.h"
#include "platform/qt/form/gauge_bar.h"

#include <QLabel>
#include <QPainter>
#include <QStyle>

namespace genutil {
namespace {

// Ends a line that has not room enough in an ellipsis.
class ElidedLabel : public QLabel {
public:
    using QLabel::QLabel;

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const QFontMetrics metrics = fontMetrics();
        const QStringList lines = text().split(QLatin1Char('\n'));
        int y = (height() - metrics.height() - metrics.lineSpacing() * int(lines.size() - 1)) / 2;
        for (const QString& line : lines) {
            const QRect row(0, y, width(), metrics.height());
            style()->drawItemText(&painter, row, Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                metrics.elidedText(line, Qt::ElideRight, width()), foregroundRole());
            y += metrics.lineSpacing();
        }
    }
};

} // namespace

// No close box: the host takes the gauge away when its computation ends.
ProgressWindow::ProgressWindow(const std::shared_ptr<frmProgress>& form)
    : FormWindow(form, Qt::Tool | Qt::CustomizeWindowHint | Qt::WindowTitleHint) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFixed();
    for (Label* model : {&form->lblProgress, &form->lbl0, &form->lbl100})
        bindPlaced(new QLabel(contents()), *model);
    for (Label* model : {&form->lblTitle, &form->lblValue})
        bindPlaced(new ElidedLabel(contents()), *model);
    bindPlaced(new GaugeBar(contents()), form->pnlGauge)
        ->setAccessibleName(QString::fromStdString(form->lblTitle.caption));
}

} // namespace genutil
