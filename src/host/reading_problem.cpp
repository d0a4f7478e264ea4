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

// The places of the quotes around a path.
struct Quoted {
    qsizetype begin = -1, end = -1;
};

// The path that the text speaks of; the path may have quotes of its own. `file` is the file's name where it
// is known.
Quoted pathIn(const QString& text, const QString& file) {
    static const QRegularExpression after("'([ :]|$)");
    for (qsizetype begin = text.indexOf('\''); begin >= 0; begin = text.indexOf('\'', begin + 1)) {
        const qsizetype first = text.indexOf(after, begin + 1);
        for (qsizetype end = first; end > 0; end = text.indexOf(after, end + 1)) {
            const QString path = text.mid(begin + 1, end - begin - 1);
            const bool isNamed = !file.isEmpty() && path.endsWith('/' + file);
            if (isNamed || (path.contains('/') && QFileInfo(path).isFile()))
                return {begin, end};
        }
        // The file has gone meanwhile.
        if (begin == 0 && first > 0 && text.left(first).contains('/'))
            return {begin, first};
    }
    return {};
}

} // namespace

std::optional<ReadingProblem> readingProblem(const std::string& description, const std::string& procedure) {
    const QString source = QString::fromStdString(procedure);
    const QString reading = "(Form) Joblist::Sub CompileListOfJobs";
    if (!source.startsWith(reading))
        return std::nullopt;
    ReadingProblem problem{{}, QString::fromStdString(description)};
    const QString place = source.mid(reading.size());
    for (const auto& name : {between(place, " (Job '", "')"), between(place, " reading '", "'")})
        if (name)
            problem.file = *name;
    const auto [begin, end] = pathIn(problem.reason, problem.file);
    if (begin < 0)
        return problem;
    const QString name = QFileInfo(problem.reason.mid(begin + 1, end - begin - 1)).fileName();
    if (problem.file.isEmpty())
        problem.file = name;
    if (begin > 0)
        problem.reason.replace(begin + 1, end - begin - 1, name);
    else if (problem.reason.mid(end + 1, 2) == ": ")
        problem.reason.remove(0, end + 3);
    else
        problem.reason.replace(0, end + 1, "The file");
    return problem;
}

} // namespace kestal
