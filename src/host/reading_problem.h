#pragma once

#include <QString>

#include <optional>
#include <string>

namespace kestal {

/// A job file that could not be read while jobs were being listed.
struct ReadingProblem {
    QString file; ///< its name; "" where the report does not tell it
    QString reason;
};

/// What a report of an event error says of a job file, or nothing where it comes from anything but the
/// reading of jobs. Such reports come by the hundred: they are collected instead of being shown one by one.
std::optional<ReadingProblem> readingProblem(const std::string& description, const std::string& procedure);

} // namespace kestal
