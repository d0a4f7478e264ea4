#pragma once

#include <unistd.h>

namespace genutil::fake {

// For the superuser every file can be read and written. While this lives, the process acts as a user who owns
// none.
class AnotherUser {
public:
    AnotherUser() : isSet_(::geteuid() == 0 && ::seteuid(nobody) == 0) {}
    ~AnotherUser() {
        if (isSet_ && ::seteuid(0) != 0)
            ::_exit(1);
    }
    // False for an ordinary user, who stays himself.
    bool isSet() const { return isSet_; }
    AnotherUser(const AnotherUser&) = delete;
    AnotherUser& operator=(const AnotherUser&) = delete;

private:
    static constexpr uid_t nobody = 65534;
    bool isSet_;
};

} // namespace genutil::fake
