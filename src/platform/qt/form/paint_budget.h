#pragma once

#include <algorithm>
#include <chrono>

namespace genutil {

// How long a host that computes may be kept waiting for pictures of its progress: a tenth of the time that
// passes, with at most 100 ms in hand. A burst of some thousand counts is painted to its last one; only a
// flood that goes on is thinned.
class PaintBudget {
public:
    using Clock = std::chrono::steady_clock;

    bool allows() {
        const auto now = Clock::now();
        inHand_ = std::min<Clock::duration>(most, inHand_ + (now - last_) / share);
        last_ = now;
        return inHand_ > Clock::duration::zero();
    }
    // Counts what is painted while it lives.
    class Spending {
    public:
        explicit Spending(PaintBudget& budget) : budget_(budget) {}
        ~Spending() { budget_.inHand_ -= Clock::now() - begin_; }
        Spending(const Spending&) = delete;
        Spending& operator=(const Spending&) = delete;

    private:
        PaintBudget& budget_;
        Clock::time_point begin_ = Clock::now();
    };

private:
    static constexpr int share = 10;
    static constexpr std::chrono::milliseconds most{100};
    Clock::time_point last_ = Clock::now();
    Clock::duration inHand_ = most;
};

} // namespace genutil
