#include "host/help_texts.h"

#include <QFile>
#include <QRegularExpression>

namespace kestal {
namespace {

// Lines of a paragraph flow together.
void appendLine(QString& text, const QString& line) {
    const bool startsItem = line.startsWith("- ");
    if (line.isEmpty()) {
        if (!text.isEmpty() && !text.endsWith("\n\n"))
            text += text.endsWith('\n') ? "\n" : "\n\n";
    } else {
        if (!text.isEmpty() && !text.endsWith('\n'))
            text += startsItem ? '\n' : ' ';
        text += startsItem ? QString(QChar(0x2022)) + line.mid(1) : line;
    }
}

} // namespace

HelpTexts HelpTexts::parse(const QString& content) {
    static const QRegularExpression header("^\\[([0-9]{1,9})\\]\\s*(\\S.*)$");
    HelpTexts texts;
    HelpTopic* current = nullptr;
    bool skipping = false; // the text below a header that was refused
    int number = 0;
    const auto fault = [&](const QString& rule) {
        texts.faults_ += QString("line %1: %2").arg(number).arg(rule);
    };
    for (const QString& raw : content.split('\n')) {
        const QString line = raw.trimmed();
        ++number;
        if (line.startsWith('#'))
            continue;
        if (line.startsWith('[')) {
            current = nullptr;
            skipping = true;
            const auto match = header.match(line);
            if (!match.hasMatch())
                fault("a topic must begin with [number] and a title");
            else if (const auto [place, added] =
                         texts.topics_.insert({match.captured(1).toInt(), {match.captured(2), {}}});
                     !added)
                fault(QString("topic %1 must not be given twice").arg(match.captured(1)));
            else
                current = &place->second;
        } else if (current) {
            appendLine(current->text, line);
        } else if (!line.isEmpty() && !skipping) {
            fault("text must stand below a topic");
        }
    }
    for (auto& [key, topic] : texts.topics_)
        topic.text = topic.text.trimmed();
    return texts;
}

HelpTexts HelpTexts::load(const QString& path) {
    QFile file(path);
    if (file.open(QIODevice::ReadOnly))
        return parse(QString::fromUtf8(file.readAll()));
    HelpTexts none;
    none.faults_ += QString("the help file %1 cannot be read: %2").arg(path, file.errorString());
    return none;
}

const HelpTopic* HelpTexts::find(int number) const {
    const auto found = topics_.find(number);
    return found == topics_.end() ? nullptr : &found->second;
}

} // namespace kestal
