#include "host/services.h"
#include "host/text_rules.h"

namespace kestal {
namespace {

// Null gives "", and a text that is no number is left as it is.
std::string formatValue(const VARIANT& value, const std::string& format) {
    if (value.vt == VT_NULL)
        return {};
    double number = 0;
    try {
        number = numberOf(value);
    } catch (const ConversionError&) {
        if (value.vt == VT_BSTR)
            return textOf(value);
        throw;
    }
    return formatNumber(number, format, genutil::numberLocale());
}

class StrUtil : public AutomationObject {
public:
    StrUtil() : AutomationObject("k_genproc.strUtil") {
        method("NextField", &nextField);
        method("Swap", [](std::int16_t& a, std::int16_t& b) { std::swap(a, b); });
        method("FormatValue", [](const Variant& value, const std::string& format, const std::string&) {
            return formatValue(value, format);
        });
        method("AngleText", [](const std::string& degrees, std::int16_t decimals, const std::string& kind,
                                std::int16_t) { return angleText(degrees, decimals, kind); });
        method("CaptionText", &captionText);
        method("TransformValue", [](double value, std::int16_t code) { return transformValue(value, code); });
        method("EditorCommand", &editorCommand);
    }
};

} // namespace

Ref<IDispatch> makeStrUtil(const HostPtr&) {
    return Ref<IDispatch>::adopt(new StrUtil);
}

} // namespace kestal
