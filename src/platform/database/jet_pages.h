#pragma once

#include "platform/database/database_file.h"
#include "platform/database/jet_format.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>

namespace genutil::jet {

using Page = std::shared_ptr<const std::string>;

// The pages of one Jet file, of which those read last are kept: definitions and maps are needed again and
// again. Not for several threads.
class Pages {
public:
    // Throws Error UnrecognisedDatabase for a file that is not Jet's or not of whole pages.
    explicit Pages(DatabaseFile file);

    const std::string& path() const { return file_.path(); }
    Version version() const { return version_; }
    const Layout& layout() const { return version_ == Version::Jet3 ? layout3 : layout4; }
    std::uint32_t count() const { return count_; }
    // Throws Damage for a page that the file does not have, or not any more; the first one is never asked
    // for.
    Page at(std::uint32_t number);

private:
    struct KeptPage {
        std::uint32_t number = 0;
        Page bytes;
    };

    std::string read(std::uint32_t number);

    DatabaseFile file_;
    Version version_ = Version::Jet4;
    std::uint32_t count_ = 0;
    std::array<KeptPage, 8> kept_;
    std::size_t oldest_ = 0;
    std::uint32_t key_ = 0; // 0: not enciphered
};

} // namespace genutil::jet
