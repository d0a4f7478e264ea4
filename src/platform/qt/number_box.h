#pragma once

#include <QLineEdit>

namespace genutil {

// A text box for a number: as wide as the longest number of the dialogs, so that the numbers of boxes that
// stand below each other are aligned at the right and, with equal decimals, at the point.
class NumberBox : public QLineEdit {
public:
    explicit NumberBox(QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    static constexpr const char* longest = "-123456.7890";
};

} // namespace genutil
