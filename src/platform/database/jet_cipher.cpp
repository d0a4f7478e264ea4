#include "platform/database/jet_cipher.h"

#include <array>
#include <numeric>
#include <utility>

namespace genutil::jet {

void applyCipher(std::string& page, std::uint32_t key) {
    std::array<std::uint8_t, 256> state;
    std::iota(state.begin(), state.end(), std::uint8_t{0});
    for (std::size_t i = 0, j = 0; i < state.size(); ++i) {
        j = (j + state[i] + (key >> i % 4 * 8)) & 0xFF;
        std::swap(state[i], state[j]);
    }
    std::size_t i = 0, j = 0;
    for (char& byte : page) {
        i = (i + 1) & 0xFF;
        j = (j + state[i]) & 0xFF;
        std::swap(state[i], state[j]);
        byte = static_cast<char>(byte ^ state[(state[i] + state[j]) & 0xFF]);
    }
}

} // namespace genutil::jet
