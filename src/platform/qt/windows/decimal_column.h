#pragma once

#include <QObject>

#include <vector>

namespace genutil {

class NumberBox;
class TextBox;

// Number boxes that stand below each other: keeps their numbers aligned on the decimal point. The box that
// the user types in is left alone until the user leaves it.
class DecimalColumn : public QObject {
public:
    using QObject::QObject;

    // A box that is bound to its model; it belongs to the column as long as it exists.
    void add(NumberBox* box, TextBox& model);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void align();

    std::vector<NumberBox*> boxes_;
};

} // namespace genutil
