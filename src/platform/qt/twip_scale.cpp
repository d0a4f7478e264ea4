#include "platform/qt/twip_scale.h"

#include <QGuiApplication>
#include <QScreen>

namespace genutil {

TwipScale TwipScale::ofScreen() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return TwipScale(screen ? screen->logicalDotsPerInch() : 0);
}

} // namespace genutil
