#pragma once

#include "host/component_access.h"

#include <functional>

namespace kestal {

/// Lets the component's gauge follow a computation of so many seconds. `atPercent`, if given, is called after
/// each step of the gauge, the first one at 0.
void runGaugeDemo(
    const ComponentAccess& component, int seconds, const std::function<void(int percent)>& atPercent = {});

} // namespace kestal
