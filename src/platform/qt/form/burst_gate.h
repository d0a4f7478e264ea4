#pragma once

#include <chrono>

namespace genutil {

// Lets something through at most once in a screen refresh: a host that reports its progress a million times a
// second pays for the frames that the eye can see and for no more.
class BurstGate {
public:
    bool pass() {
        const auto now = std::chrono::steady_clock::now();
        if (now - last_ < frame)
            return false;
        last_ = now;
        return true;
    }

private:
    static constexpr std::chrono::microseconds frame{16667}; // 60 Hz
    std::chrono::steady_clock::time_point last_{};
};

} // namespace genutil
