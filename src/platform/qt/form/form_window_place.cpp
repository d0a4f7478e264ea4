// Where a window lies and how large it is: what the form says, fitted to the screens that there are.

#include "platform/qt/form/form_window.h"
#include "platform/qt/form/scrolled_part.h"

#include <QGuiApplication>
#include <QMenuBar>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace genutil {

QSize FormWindow::naturalSize() const {
    return contents_->sizeHint().expandedTo({200, 100});
}

int FormWindow::menuHeight(int width) const {
    return menuBar_ ? menuBar_->heightForWidth(width) : 0;
}

// Where the window may lie without its frame: on its screen, or over several if it has been put there.
QRect FormWindow::room() const {
    const QScreen* const shown = screen();
    if (!shown)
        return {0, 0, QWIDGETSIZE_MAX, QWIDGETSIZE_MAX};
    const bool isPlaced = form_ && (form_->left != 0 || form_->top != 0);
    const QRect bounds = isPlaced ? shown->availableVirtualGeometry() : shown->availableGeometry();
    return bounds.marginsRemoved(settled_ ? windowHandle()->frameMargins() : usualFrame);
}

QSize FormWindow::wantedContents() const {
    const WindowChrome& chrome = form_->chrome();
    const auto length = [this](double nominal, double taken, int natural) {
        return nominal > 0 ? std::max(1, scale_.pixels(nominal - taken)) : natural;
    };
    const QSize natural = naturalSize();
    const QSize wanted(length(form_->width, chrome.width, natural.width()),
        length(form_->height, chrome.height, natural.height()));
    const QSize most = room().size() - QSize(0, menuHeight(wanted.width()));
    return fixed_ ? fitted(*this, wanted, most) : wanted.boundedTo(most);
}

void FormWindow::applySize() {
    const QSize contents = wantedContents();
    const QSize size(contents.width(), contents.height() + menuHeight(contents.width()));
    if (fixed_)
        setFixedSize(size);
    else
        resize(size);
}

// None where no screen would show enough of the title bar to take hold of it, or where the form leaves it
// open. What is larger than the room there is begins at its edge.
std::optional<QPoint> FormWindow::wantedPlace() const {
    QPoint place(scale_.pixels(form_->left), scale_.pixels(form_->top));
    constexpr int reach = 40; // pixels
    const QRect titleBar(place, QSize(width(), reach));
    const bool isReachable = std::ranges::any_of(QGuiApplication::screens(), [&](const QScreen* screen) {
        const QRect seen = screen->availableGeometry().intersected(titleBar);
        return seen.width() >= reach && seen.height() >= reach / 2;
    });
    if (place.isNull() || !isReachable)
        return std::nullopt;
    const QRect bounds = screen()->availableVirtualGeometry();
    if (scale_.pixels(form_->width) > bounds.width())
        place.setX(bounds.left());
    if (scale_.pixels(form_->height) > bounds.height())
        place.setY(bounds.top());
    return place;
}

void FormWindow::applyPlace() {
    const auto place = wantedPlace();
    if (!place)
        centre();
    else if (pos() != *place)
        move(*place);
}

// The frame is known once the window is on the screen.
void FormWindow::settle() {
    if (std::exchange(settled_, true) || !form_ || form_->windowState != WindowState::Normal)
        return;
    const QMargins more = windowHandle()->frameMargins() - usualFrame;
    if (more.left() + more.right() > 0 || more.top() + more.bottom() > 0) {
        applySize();
        applyPlace();
    }
}

void FormWindow::centre() {
    if (const QScreen* shown = screen())
        move(shown->availableGeometry().center() - QRect(QPoint(), frameGeometry().size()).center());
}

} // namespace genutil
