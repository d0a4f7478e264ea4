#pragma once

#include <QString>
#include <QStringList>

#include <map>

namespace kestal {

/// A help topic. Paragraphs of its text are separated by empty lines; an item of a list has a line of its
/// own.
struct HelpTopic {
    QString title;
    QString text;
};

/// The help topics by number, from one UTF-8 file:
///
///     # a comment
///     [1800] Title
///     lines of text up to the next bracket or the end; an empty line ends a paragraph,
///     and a line that begins with "- " begins an item of a list
///
/// A line that breaks these rules (a bracket without a number or title, a number given twice, text before the
/// first topic) is skipped together with the text that depends on it, and named in `faults`.
class HelpTexts {
public:
    HelpTexts() = default;
    static HelpTexts parse(const QString& content);
    /// A file that cannot be read gives no topics and one fault.
    static HelpTexts load(const QString& path);

    const std::map<int, HelpTopic>& topics() const { return topics_; }
    /// Null for an unknown number.
    const HelpTopic* find(int number) const;
    const QStringList& faults() const { return faults_; }

private:
    std::map<int, HelpTopic> topics_;
    QStringList faults_;
};

} // namespace kestal
