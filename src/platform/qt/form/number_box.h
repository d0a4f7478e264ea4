#pragma once

#include <QLineEdit>

namespace genutil {

// A text box for a number: as wide as the longest number of the dialogs. Numbers stand at the right.
class NumberBox : public QLineEdit {
public:
    explicit NumberBox(QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    // Moves the number this many pixels away from the right end, or as far as it stays whole.
    void setFreeRight(int pixels);

    static constexpr const char* longest = "-123456.7890";
};

} // namespace genutil
