#include "fileview/viewer_status.h"

#include "text/ascii.h"
#include "text/character_width.h"
#include "text/size_text.h"

#include <algorithm>
#include <array>

namespace genutil {
namespace {

// What survey texts of the last decades were written in, by the names that a CodePages knows.
constexpr std::array offeredEncodings{"UTF-8", "UTF-16LE", "UTF-16BE", "windows-1252", "windows-1250",
    "windows-1251", "windows-1253", "windows-1254", "windows-1257", "ISO-8859-1", "ISO-8859-2", "ISO-8859-15",
    "KOI8-R", "IBM437", "IBM850", "Shift_JIS", "EUC-JP", "GB18030", "Big5", "EUC-KR"};

constexpr std::int32_t currentCode = 1; // marks the list's entry for the text's own encoding

std::size_t characterCount(std::string_view text) {
    return std::size_t(std::ranges::count_if(text, [](char unit) { return (unit & 0xC0) != 0x80; }));
}

std::string counted(std::size_t count, const char* thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

} // namespace

ViewerStatus::ViewerStatus(Form& form, ReportText& text)
    : pnlStatus(form, "pnlStatus"), lblPosition(form, "lblPosition", ""),
      lblSelection(form, "lblSelection", ""), cboEncoding(form, "cboEncoding"), lblSize(form, "lblSize", ""),
      text_(text) {
    cboEncoding.toolTip = "Encoding of the file; choose another one to read its bytes afresh";
}

void ViewerStatus::showSelection() {
    const text::TextDocument& document = *text_.document();
    const text::TextPosition caret = text_.caret();
    const std::size_t column = text::columnsOf(document.line(caret.line).substr(0, caret.byte));
    lblPosition.caption = "Line " + std::to_string(caret.line + 1) + ", column " + std::to_string(column + 1);
    const text::TextRange selected = text_.selection();
    if (selected.isEmpty()) {
        lblSelection.caption = "";
    } else if (selected.from.line == selected.to.line) {
        const std::string_view part = document.line(selected.from.line)
                                          .substr(selected.from.byte, selected.to.byte - selected.from.byte);
        lblSelection.caption = counted(characterCount(part), "character") + " selected";
    } else {
        // A selection that ends before a line's first character does not reach into that line.
        const std::size_t lines = selected.to.line - selected.from.line + (selected.to.byte > 0 ? 1 : 0);
        lblSelection.caption = counted(lines, "line") + " selected";
    }
}

void ViewerStatus::showText() {
    cboEncoding.visible = !text_.isRich();
    if (text_.isRich()) {
        lblSize.caption = fileSize ? "Rich text, " + text::sizeText(*fileSize) : "Rich text";
        return;
    }
    lblSize.caption = text::sizeText(fileSize.value_or(text_.document()->size()));
    const text::Encoding& encoding = text_.document()->encoding();
    std::vector<ListItem> items;
    for (const char* name : offeredEncodings)
        items.push_back({name});
    const auto isCurrent = [&](const ListItem& item) {
        return text::equalsIgnoringCase(item.text, encoding.name);
    };
    auto current = std::ranges::find_if(items, isCurrent);
    if (current == items.end())
        current = items.insert(items.end(), {encoding.name});
    const auto position = std::int16_t(current - items.begin());
    current->code = currentCode;
    if (encoding.mark)
        current->text += " (byte-order mark)";
    cboEncoding.items = items;
    cboEncoding.listIndex = position;
    showSelection();
}

std::optional<std::string> ViewerStatus::chosenEncoding() const {
    const auto chosen = cboEncoding.selectedItem();
    if (!chosen || chosen->code == currentCode)
        return std::nullopt;
    return chosen->text;
}

} // namespace genutil
