#include "host/gauge_demo.h"

#include "host/late_bound.h"

#include <chrono>
#include <cmath>

namespace kestal {
namespace {

using Clock = std::chrono::steady_clock;

// Stands for the work of one step of an adjustment.
double computeUntil(Clock::time_point end) {
    double sum = 0;
    for (int i = 1; Clock::now() < end; ++i)
        sum += std::sin(i) / i;
    return sum;
}

} // namespace

void runGaugeDemo(
    const ComponentAccess& component, int seconds, const std::function<void(int percent)>& atPercent) {
    const auto gauge = component.create<k_genutil::_cProgress>(k_genutil::classes::cProgress.progId);
    k_genutil::Text title("Adjusting the network, please wait ..."), label("Observation: ");
    component.check(gauge->GaugeSetup(title.inOut(), label.inOut()), "Opening the gauge");

    constexpr int steps = 100;
    constexpr int lateBoundFrom = 50; // half of the calls go by name, as from a host without the interface
    const LateBound byName(gauge.get());
    const auto start = Clock::now();
    for (int percent = 0; percent <= steps; ++percent) {
        k_genutil::Text count(std::to_string(percent * 76 / steps));
        if (percent < lateBoundFrom)
            component.check(gauge->Gauge(count.inOut(), static_cast<short>(percent)), "Advancing the gauge");
        else
            byName.call("Gauge", {byReference(count.inOut()), Variant(static_cast<std::int16_t>(percent))});
        if (atPercent)
            atPercent(percent);
        computeUntil(start + std::chrono::milliseconds(1000LL * seconds * percent / steps));
    }
    component.check(gauge->GaugeRemove(), "Closing the gauge");
}

} // namespace kestal
