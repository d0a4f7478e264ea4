#include "host/report_kinds.h"

#include <QRegularExpression>

#include <array>

namespace kestal {
namespace {

// The first pattern that fits counts.
constexpr std::array kinds{
    ReportKind{"history.txt", 23, "Development history"},
    ReportKind{"*.log", 25, "Processing log"},
    ReportKind{"*.inv", 29, "Inverse report"},
    ReportKind{"*.rep", 22, "Point list"},
    ReportKind{"*.int", 22, "Point list"},
    ReportKind{"*.en*", 22, "Point export"},
    ReportKind{"*.ne*", 22, "Point export"},
    ReportKind{"*.ll*", 22, "Point export"},
    ReportKind{"*.xyz", 22, "Point export"},
    ReportKind{"*.sdr", 1, "Survey data"},
    ReportKind{"*.sum", 1, "Traverse summary"},
    ReportKind{"*.&*", 1, "Extract"},
    ReportKind{"*.rtf", 1, "Rich text"},
    ReportKind{"*", 1, "File"},
};

bool fits(const ReportKind& kind, const QString& fileName) {
    return QRegularExpression::fromWildcard(QString(kind.pattern), Qt::CaseInsensitive)
        .match(fileName)
        .hasMatch();
}

} // namespace

const ReportKind& reportKindOf(const QString& fileName) {
    for (const ReportKind& kind : kinds)
        if (fits(kind, fileName))
            return kind;
    return kinds.back();
}

} // namespace kestal
