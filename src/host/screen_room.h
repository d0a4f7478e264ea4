#pragma once

#include <QScreen>
#include <QWidget>

namespace kestal {

/// What a window begins with: as much of the wanted size as its screen has room for, the frame of a window
/// manager taken off.
inline QSize startSize(const QWidget& window, QSize wanted) {
    constexpr QMargins usualFrame(4, 32, 4, 4); // pixels
    return wanted.boundedTo(window.screen()->availableGeometry().marginsRemoved(usualFrame).size());
}

} // namespace kestal
