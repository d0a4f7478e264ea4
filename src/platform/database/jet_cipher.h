#pragma once

#include <cstdint>
#include <string>

namespace genutil::jet {

// Deciphers, or enciphers, a page of an enciphered file in place: RC4 with the four bytes of `key`, lowest
// first. Every page has a key of its own: that of the file, XOR the number of the page. The first page is not
// enciphered so.
void applyCipher(std::string& page, std::uint32_t key);

} // namespace genutil::jet
