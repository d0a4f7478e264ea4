#include "platform/qt/fonts.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace genutil {
namespace {

struct Substitute {
    const char* name;
    const char* family;
    QFont::StyleHint hint;
    bool always = false; // also where the named font is installed
};

constexpr std::array substitutes{
    Substitute{"Courier New", "Liberation Mono", QFont::Monospace},
    Substitute{"Arial", "Liberation Sans", QFont::SansSerif},
    Substitute{"MS Sans Serif", "Liberation Sans", QFont::SansSerif},
    // Its signs are real characters in our texts, under which a font of this kind does not find them.
    Substitute{"Symbol", "Liberation Serif", QFont::Serif, true},
};

} // namespace

QFont toQFont(const Font& font) {
    QFont result;
    const QString name = QString::fromStdString(font.name);
    const auto known = std::ranges::find_if(substitutes,
        [&](const Substitute& s) { return name.compare(QLatin1String(s.name), Qt::CaseInsensitive) == 0; });
    if (known == substitutes.end()) {
        result.setFamilies({name});
    } else {
        const QString family = QLatin1String(known->family);
        result.setFamilies(known->always ? QStringList{family} : QStringList{name, family});
        result.setStyleHint(known->hint);
    }
    if (font.size > 0)
        result.setPointSizeF(font.size);
    result.setBold(font.bold);
    // Pairs of letters do not move together: a text is as wide as its characters, in every view and
    // measurement.
    result.setKerning(false);
    return result;
}

} // namespace genutil
