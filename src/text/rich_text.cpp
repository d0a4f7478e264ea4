#include "text/rich_text.h"

namespace genutil::text {

namespace {

void appendLine(std::string& words, const Paragraph& paragraph) {
    for (const Run& run : paragraph.runs)
        words += run.picture ? "\uFFFC" : run.text;
    words += '\n';
}

} // namespace

std::string plainText(const RichText& text) {
    std::string words;
    forEachParagraph(text, [&](const Paragraph& paragraph) { appendLine(words, paragraph); });
    if (!words.empty())
        words.pop_back();
    return words;
}

} // namespace genutil::text
