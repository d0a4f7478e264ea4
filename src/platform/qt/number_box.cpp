#include "platform/qt/number_box.h"

#include <QStyleOptionFrame>

namespace genutil {

NumberBox::NumberBox(QWidget* parent) : QLineEdit(parent) {
    setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize NumberBox::sizeHint() const {
    ensurePolished();
    // The toolkit's box keeps 2 pixels free on either side of the text, and the caret needs its own.
    constexpr int free = 2 * 2 + 2;
    const QMargins own = textMargins();
    const QSize room(
        fontMetrics().horizontalAdvance(QLatin1String(longest)) + own.left() + own.right() + free, 0);
    QStyleOptionFrame option;
    initStyleOption(&option);
    return {style()->sizeFromContents(QStyle::CT_LineEdit, &option, room, this).width(),
        QLineEdit::sizeHint().height()};
}

} // namespace genutil
