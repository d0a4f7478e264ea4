#pragma once

#include <QString>

#include <cstdint>

namespace kestal {

/// How a report is shown, chosen by its file name.
struct ReportKind {
    const char* pattern; ///< file name pattern, compared without regard to case
    std::int16_t viewMode;
    const char* label;
};

/// The kind of a file; one that no pattern fits is a plain file.
const ReportKind& reportKindOf(const QString& fileName);

} // namespace kestal
