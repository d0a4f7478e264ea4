#include "host/main_form_object.h"

#include <QGuiApplication>
#include <QPointer>
#include <QScreen>
#include <QWidget>

namespace kestal {
namespace {

enum WindowState : std::int16_t { Normal, Minimized, Maximized };

// In device-independent pixels.
struct Placement {
    WindowState state = Maximized;
    QRect window;
    QSize plot;
    int belowPlot = 0;
};
using Places = std::function<Placement()>;

Variant twips(int pixels) {
    constexpr double twipsPerInch = 1440;
    constexpr double usualResolution = 96;
    const QScreen* const screen = QGuiApplication::primaryScreen();
    return Variant(pixels * twipsPerInch / (screen ? screen->logicalDotsPerInch() : usualResolution));
}

class PartObject : public AutomationObject {
public:
    PartObject(const char* className, const Places& places, bool isContainer) : AutomationObject(className) {
        property("Height", [=] {
            const Placement place = places();
            return twips(isContainer ? place.belowPlot : place.plot.height());
        });
        property("Width", [=] { return twips(places().plot.width()); });
    }
};

class MainFormObject : public AutomationObject {
public:
    explicit MainFormObject(const Places& places) : AutomationObject("kestal.frmMain") {
        property("windowState", [=] { return Variant(static_cast<std::int16_t>(places().state)); });
        property("Top", [=] { return twips(places().window.top()); });
        property("Left", [=] { return twips(places().window.left()); });
        property("Width", [=] { return twips(places().window.width()); });
        property("Height", [=] { return twips(places().window.height()); });
        addPart("picPlot", places, false);
        addPart("picContainer", places, true);
    }

private:
    void addPart(const char* name, const Places& places, bool isContainer) {
        property(name, [=] {
            const auto part = Ref<IDispatch>::adopt(new PartObject(name, places, isContainer));
            return Variant(part.get());
        });
    }
};

Placement placementOf(const QWidget* window, const QWidget* plot) {
    if (!window || !plot)
        throw AutomationError(errors::ObjectNotSet, "The main window is closed");
    Placement place;
    place.state = window->isMinimized()                             ? Minimized
                  : window->isMaximized() || window->isFullScreen() ? Maximized
                                                                    : Normal;
    place.window = window->frameGeometry();
    place.plot = plot->size();
    place.belowPlot = place.window.bottom() - plot->mapToGlobal(plot->rect().bottomLeft()).y();
    return place;
}

} // namespace

Ref<IDispatch> makeMainFormObject(QWidget& window, QWidget& plot) {
    return Ref<IDispatch>::adopt(new MainFormObject(
        [window = QPointer(&window), plot = QPointer(&plot)] { return placementOf(window, plot); }));
}

Ref<IDispatch> makeScreenFormObject() {
    return Ref<IDispatch>::adopt(new MainFormObject([] {
        const QScreen* const screen = QGuiApplication::primaryScreen();
        Placement place;
        place.window = screen ? screen->availableGeometry() : QRect();
        place.plot = place.window.size();
        return place;
    }));
}

} // namespace kestal
