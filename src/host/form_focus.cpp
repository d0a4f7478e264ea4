#include "host/form_focus.h"

#include <algorithm>

namespace kestal {
namespace {

struct TabStop {
    int index;
    std::string name;
    LateBound control;
};

bool canTakeFocus(const LateBound& control) {
    return control.has("TabIndex") && int32Of(control.get("TabIndex")) >= 0 &&
           truthOf(control.get("Enabled")) && truthOf(control.get("Visible")) && control.has("SetFocus");
}

std::vector<TabStop> tabStopsOf(const LateBound& form) {
    const LateBound controls = form.child("Controls");
    const int count = int32Of(controls.get("Count"));
    std::vector<TabStop> stops;
    for (std::int32_t i = 0; i < count; ++i) {
        const Variant item = controls.call("Item", {Variant(i)});
        LateBound control(objectOf(item));
        if (canTakeFocus(control))
            stops.push_back({int32Of(control.get("TabIndex")), textOf(control.get("Name")), control});
    }
    std::ranges::stable_sort(stops, {}, &TabStop::index);
    return stops;
}

} // namespace

void moveFocus(const LateBound& form, int steps, bool stopAtEnds) {
    const std::vector<TabStop> stops = tabStopsOf(form);
    if (stops.empty())
        return;
    const LateBound active = form.child("ActiveControl");
    const std::string activeName = active.object() ? textOf(active.get("Name")) : "";
    const auto current = std::ranges::find(stops, activeName, &TabStop::name);
    const auto count = static_cast<std::ptrdiff_t>(stops.size());
    std::ptrdiff_t target = 0;
    if (current != stops.end()) {
        target = (current - stops.begin()) + steps;
        target =
            stopAtEnds ? std::clamp<std::ptrdiff_t>(target, 0, count - 1) : (target % count + count) % count;
    }
    stops[static_cast<std::size_t>(target)].control.call("SetFocus", {});
}

void selectAllText(const LateBound& control) {
    const Variant text = control.get("Text");
    control.put("SelStart", Variant(std::int32_t{0}));
    control.put("SelLength", Variant(static_cast<std::int32_t>(textOf(text).size())));
}

} // namespace kestal
