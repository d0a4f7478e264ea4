#include "platform/qt/form/number_box.h"

#include <QStyleOptionFrame>

#include <algorithm>

namespace genutil {
namespace {

// The toolkit's box keeps 2 pixels free on either side of the text, and the caret needs its own.
constexpr int frameAndCaret = 2 * 2 + 2;

} // namespace

NumberBox::NumberBox(QWidget* parent) : QLineEdit(parent) {
    setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize NumberBox::sizeHint() const {
    ensurePolished();
    const QSize room(fontMetrics().horizontalAdvance(QLatin1String(longest)) + frameAndCaret, 0);
    QStyleOptionFrame option;
    initStyleOption(&option);
    return {style()->sizeFromContents(QStyle::CT_LineEdit, &option, room, this).width(),
        QLineEdit::sizeHint().height()};
}

void NumberBox::setFreeRight(int pixels) {
    QStyleOptionFrame option;
    initStyleOption(&option);
    const int room =
        style()->subElementRect(QStyle::SE_LineEditContents, &option, this).width() - frameAndCaret;
    const int spare = room - fontMetrics().horizontalAdvance(text());
    setTextMargins(0, 0, std::clamp(pixels, 0, std::max(spare, 0)), 0);
}

} // namespace genutil
