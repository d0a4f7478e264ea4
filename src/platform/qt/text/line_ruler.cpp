#include "platform/qt/text/line_ruler.h"

#include "text/character_width.h"
#include "text/control_mark.h"
#include "text/utf8.h"

#include <QFontInfo>
#include <QString>

#include <algorithm>
#include <cmath>
#include <limits>

namespace genutil {
namespace {

constexpr std::size_t markDistance = 4096; // bytes
constexpr std::size_t markedLines = 256;

// Whether the byte is one of those that text::advanceColumns() goes over in runs.
bool isInRun(char byte) {
    return byte >= 0x10;
}

} // namespace

LineRuler::LineRuler(const QFont& font)
    : metrics_(font), fixedPitch_(QFontInfo(font).fixedPitch()), lineHeight_(std::ceil(metrics_.height())),
      ascent_(std::round(metrics_.ascent())), columnWidth_(metrics_.horizontalAdvance(QLatin1Char('x'))),
      unit_(fixedPitch_ ? columnWidth_ : 1) {
    for (std::size_t i = 0; i < plainWidths_.size(); ++i)
        plainWidths_[i] =
            text::controlMark(char32_t(i)) ? columnWidth_ : metrics_.horizontalAdvance(QChar(char16_t(i)));
}

double LineRuler::characterWidth(char32_t character) {
    if (character < plainWidths_.size())
        return plainWidths_[character];
    const auto [entry, isNew] = widths_.try_emplace(character, 0);
    if (isNew && text::controlMark(character))
        entry->second = columnWidth_;
    else if (isNew && text::characterWidth(character) > 0)
        entry->second = metrics_.horizontalAdvance(QString::fromUcs4(&character, 1));
    return entry->second;
}

bool LineRuler::fillsItsColumns(char32_t character) {
    if (!fixedPitch_ || (character >= 0x20 && character < 0x7F))
        return true;
    const auto [entry, isNew] = fills_.try_emplace(character, false);
    if (isNew) {
        const double width = text::characterWidth(character) * columnWidth_;
        entry->second = std::abs(metrics_.horizontalAdvance(QString::fromUcs4(&character, 1)) - width) < 1e-3;
    }
    return entry->second;
}

void LineRuler::changed(const text::TextChange& change) {
    std::unordered_map<std::size_t, std::vector<Spot>> kept;
    for (auto& [line, marks] : marks_) {
        if (line == change.from.line)
            std::erase_if(marks, [&](const Spot& mark) { return mark.byte > change.from.byte; });
        if (line <= change.from.line)
            kept.emplace(line, std::move(marks));
        else if (line > change.oldEnd.line)
            kept.emplace(line - change.oldEnd.line + change.newEnd.line, std::move(marks));
    }
    marks_ = std::move(kept);
}

LineRuler::Spot LineRuler::step(std::string_view line, Spot from, std::size_t end, double x) {
    if (fixedPitch_) {
        const std::size_t columns = text::advanceColumns(line.substr(0, end), from.byte, std::size_t(from.x));
        return {from.byte, double(columns)};
    }
    Spot run = from;
    for (; run.byte < end && line[run.byte] >= 0x20; ++run.byte) {
        const double after = run.x + plainWidths_[static_cast<unsigned char>(line[run.byte])];
        if (after > x)
            break;
        run.x = after;
    }
    if (run.byte > from.byte)
        return run;
    if (line[from.byte] == '\t') {
        const double stop = double(text::tabStop) * columnWidth_;
        return {from.byte + 1, (std::floor(from.x / stop) + 1) * stop};
    }
    const auto character = text::decodeUtf8(line, from.byte);
    return {from.byte + character.length, from.x + characterWidth(character.codePoint)};
}

LineRuler::Spot LineRuler::walk(std::string_view line, std::size_t number, std::size_t byte, double x) {
    Spot spot;
    std::vector<Spot>* marks = nullptr;
    if (line.size() > markDistance) {
        if (marks_.size() >= markedLines && !marks_.contains(number))
            marks_.clear();
        marks = &marks_[number];
        const auto last =
            std::ranges::partition_point(*marks, [&](const Spot& m) { return m.byte <= byte && m.x <= x; });
        if (last != marks->begin())
            spot = *std::prev(last);
    }
    const std::size_t limit = std::min(byte, line.size());
    while (spot.byte < limit) {
        // A run ends at the next mark's place; a character that starts before it is taken whole.
        std::size_t end = std::min(limit, (spot.byte / markDistance + 1) * markDistance);
        for (int i = 0; i < 3 && end < line.size() && (line[end] & 0xC0) == 0x80; ++i)
            ++end;
        const Spot next = step(line, spot, end, x);
        if (next.x > x) {
            // Within a run of a fixed-pitch font every byte is a column.
            if (fixedPitch_ && isInRun(line[spot.byte])) {
                const double columns = std::floor(x - spot.x);
                spot = {spot.byte + std::size_t(columns), spot.x + columns};
            }
            return spot;
        }
        const bool passesMark = next.byte / markDistance != spot.byte / markDistance;
        spot = next;
        if (marks && passesMark && (marks->empty() || marks->back().byte < spot.byte))
            marks->push_back(spot);
    }
    return spot;
}

double LineRuler::xOf(std::string_view line, std::size_t number, std::size_t byte) {
    return walk(line, number, byte, std::numeric_limits<double>::infinity()).x * unit_;
}

LineRuler::Spot LineRuler::spotAt(std::string_view line, std::size_t number, double x) {
    const Spot spot = walk(line, number, line.size(), std::max(0.0, x) / unit_);
    return {spot.byte, spot.x * unit_};
}

} // namespace genutil
