// Any bytes may stand in the registry file: parsing must lose none of them and trust no line that breaks a
// rule.

#include <k_genutil.h>

#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::string joined;
    for (const k_genutil::RegistrySection& section : k_genutil::parseRegistry(text)) {
        joined += section.text;
        for (const auto& [key, value] : section.values)
            if (key.empty() || section.value(key) != value)
                std::abort();
        k_genutil::parseGuid(section.value("class"));
    }
    if (joined != text)
        std::abort();
    return 0;
}
