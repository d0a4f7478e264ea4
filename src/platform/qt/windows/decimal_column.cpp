#include "platform/qt/windows/decimal_column.h"

#include "hostif/controls.h"
#include "platform/qt/form/number_box.h"
#include "platform/qt/tie.h"

#include <QEvent>
#include <QLocale>

#include <algorithm>

namespace genutil {
namespace {

// The part of the text that stands right of its last whole digit: the point and the decimals.
QString fraction(const QString& text) {
    qsizetype point = text.lastIndexOf(QLocale().decimalPoint());
    if (point < 0)
        point = text.lastIndexOf(QLatin1Char('.'));
    return point < 0 ? QString() : text.mid(point).trimmed();
}

} // namespace

void DecimalColumn::add(NumberBox* box, TextBox& model) {
    boxes_.push_back(box);
    box->installEventFilter(this);
    new Tie(box, model, [this, box](Aspect aspect) {
        if (aspect == Aspect::Text && !box->hasFocus())
            align();
    });
    connect(box, &QObject::destroyed, this, [this, box] { std::erase(boxes_, box); });
    align();
}

bool DecimalColumn::eventFilter(QObject*, QEvent* event) {
    const auto type = event->type();
    if (type == QEvent::FontChange || type == QEvent::StyleChange || type == QEvent::Resize)
        align();
    else if (type == QEvent::FocusOut) // the box tells its form first, which writes the number anew
        QMetaObject::invokeMethod(this, &DecimalColumn::align, Qt::QueuedConnection);
    return false;
}

void DecimalColumn::align() {
    int widest = 0;
    for (const NumberBox* box : boxes_)
        widest = std::max(widest, box->fontMetrics().horizontalAdvance(fraction(box->text())));
    for (NumberBox* box : boxes_)
        if (!box->hasFocus())
            box->setFreeRight(widest - box->fontMetrics().horizontalAdvance(fraction(box->text())));
}

} // namespace genutil
