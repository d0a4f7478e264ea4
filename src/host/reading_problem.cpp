#include "host/reading_problem.h"

#include <QFileInfo>
#include <QRegularExpression>

namespace kestal {
namespace {

// What stands between the two, where the text has both around it.
std::optional<QString> between(const QString& text, const char* before, const char* after) {
    const qsizetype first = static_cast<qsizetype>(std::char_traits<char>::length(before));
    const qsizetype last = static_cast<qsizetype>(std::char_traits<char>::length(after));
    if (text.size() < first + last || !text.startsWith(before) || !text.endsWith(after))
        return std::nullopt;
    return text.mid(first, text.size() - first - last);
}

// The database engine begins with the path, in quotes, of the file that it speaks of; the path may have
// quotes of its own. Where it ends, or -1.
qsizetype pathEnd(const QString& description) {
    if (!description.startsWith('\''))
        return -1;
    static const QRegularExpression after("'[ :]");
    const qsizetype first = description.indexOf(after, 1);
    for (qsizetype end = first; end > 0; end = description.indexOf(after, end + 1))
        if (QFileInfo(description.mid(1, end - 1)).isFile())
            return end;
    return first;
}

} // namespace

std::optional<ReadingProblem> readingProblem(const std::string& description, const std::string& procedure) {
    const QString source = QString::fromStdString(procedure);
    const QString reading = "(Form) Joblist::Sub CompileListOfJobs";
    if (!source.startsWith(reading))
        return std::nullopt;
    ReadingProblem problem{{}, QString::fromStdString(description)};
    if (const qsizetype end = pathEnd(problem.reason); end > 0) {
        problem.file = QFileInfo(problem.reason.mid(1, end - 1)).fileName();
        problem.reason.replace(0, end + 1, "The file");
    }
    const QString place = source.mid(reading.size());
    for (const auto& name : {between(place, " (Job '", "')"), between(place, " reading '", "'")})
        if (name)
            problem.file = *name;
    return problem;
}

} // namespace kestal
