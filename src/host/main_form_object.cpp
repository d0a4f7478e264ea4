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

// A part of the window with one truth that can be read and put.
class SwitchObject : public AutomationObject {
public:
    using Read = std::function<bool()>;
    using Put = std::function<void(bool)>;
    SwitchObject(const char* className, const char* member, Read read, Put put)
        : AutomationObject(className) {
        property(
            member, [read = std::move(read)] { return Variant(read()); },
            [put = std::move(put)](const VARIANT& value) { put(truthOf(value)); });
    }
};

class MainFormObject : public AutomationObject {
public:
    MainFormObject(const std::shared_ptr<Host>& host, const Places& places)
        : AutomationObject("kestal.frmMain") {
        property("windowState", [=] { return Variant(static_cast<std::int16_t>(places().state)); });
        property("Top", [=] { return twips(places().window.top()); });
        property("Left", [=] { return twips(places().window.left()); });
        property("Width", [=] { return twips(places().window.width()); });
        property("Height", [=] { return twips(places().window.height()); });
        addPart("picPlot", places, false);
        addPart("picContainer", places, true);
        addMarks(host, places);
        addSwitch(
            "picScaleBar", "Visible", places, [host] { return host->marks.showsScaleBar(); },
            [host](bool on) { host->marks.showScaleBar(on); });
        addSwitch(
            "mnuHelpInstantHelp", "Checked", places, [host] { return host->instantHelpOn; },
            [host](bool on) { host->setInstantHelp(on); });
    }

private:
    void addMarks(const std::shared_ptr<Host>& host, const Places& places) {
        int index = 0;
        for (const ViewMark& each : viewMarks()) {
            const auto mark = static_cast<Mark>(index++);
            addSwitch(
                each.name, "Checked", places, [=] { return host->marks.isSet(mark); },
                [=](bool on) { host->marks.set(mark, on); });
        }
    }
    void addSwitch(const char* name, const char* member, const Places& places, const SwitchObject::Read& read,
        const SwitchObject::Put& put) {
        property(name, [=] {
            places(); // fails once the window is gone
            const auto part = Ref<IDispatch>::adopt(new SwitchObject(name, member, read, put));
            return Variant(part.get());
        });
    }
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

Ref<IDispatch> makeMainFormObject(std::shared_ptr<Host> host, QWidget& window, QWidget& plot) {
    return Ref<IDispatch>::adopt(new MainFormObject(std::move(host),
        [window = QPointer(&window), plot = QPointer(&plot)] { return placementOf(window, plot); }));
}

Ref<IDispatch> makeScreenFormObject(std::shared_ptr<Host> host) {
    return Ref<IDispatch>::adopt(new MainFormObject(std::move(host), [] {
        const QScreen* const screen = QGuiApplication::primaryScreen();
        Placement place;
        place.window = screen ? screen->availableGeometry() : QRect();
        place.plot = place.window.size();
        return place;
    }));
}

} // namespace kestal
