#pragma once

#include <utility>

#include <unistd.h>

namespace genutil {

// Owns an open file; closed when it goes.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() {
        if (isOpen())
            ::close(number_);
    }
    int number() const { return number_; }
    bool isOpen() const { return number_ >= 0; }

private:
    int number_;
};

} // namespace genutil
