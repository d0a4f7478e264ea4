#pragma once

#include <QScrollArea>

namespace genutil {

// Leaves the wheel to what stands below the box unless the box has the focus: a wheel that scrolls past must
// not change a value.
void guardWheel(QWidget* box);

// The part of a dialog that gives way on a small screen: as large as what it holds, or as the room that there
// is; then it scrolls, and what gets the focus comes into view. The buttons stand below it.
class ScrolledPart : public QScrollArea {
public:
    explicit ScrolledPart(QWidget* parent);
    ~ScrolledPart() override;

    // What it holds; empty at first.
    QWidget* contents() const { return widget(); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

private:
    void follow(QWidget* focused);
};

// What a window manager's frame takes, before it has said so.
inline constexpr QMargins usualFrame(4, 32, 4, 4); // pixels

// The size of a dialog on a screen that has so much room for it: what it wants, or less, with a scroll bar
// beside what is cut.
QSize fitted(const QWidget& dialog, QSize wanted, QSize room);

} // namespace genutil
