#include "text/rtf_lists.h"

#include <algorithm>

namespace genutil::text::rtf {

namespace {

// Nothing for levels without number. Formats that are not told apart count in decimals.
std::optional<ListEntry::Kind> kindOf(int format) {
    switch (format) {
    case 1:
        return ListEntry::Kind::UpperRoman;
    case 2:
        return ListEntry::Kind::LowerRoman;
    case 3:
        return ListEntry::Kind::UpperLetter;
    case 4:
        return ListEntry::Kind::LowerLetter;
    case bulletFormat:
        return ListEntry::Kind::Bullet;
    case noNumberFormat:
        return std::nullopt;
    default:
        return ListEntry::Kind::Decimal;
    }
}

} // namespace

int numberFormatOf(ListEntry::Kind kind) {
    switch (kind) {
    case ListEntry::Kind::Bullet:
        return bulletFormat;
    case ListEntry::Kind::Decimal:
        return 0;
    case ListEntry::Kind::LowerLetter:
        return 4;
    case ListEntry::Kind::UpperLetter:
        return 3;
    case ListEntry::Kind::LowerRoman:
        return 2;
    case ListEntry::Kind::UpperRoman:
        return 1;
    }
    return bulletFormat;
}

void Lists::startList() {
    definitions_.emplace_back();
}

void Lists::startLevel() {
    if (!definitions_.empty())
        ++definitions_.back().levels;
}

void Lists::setLevelFormat(int format) {
    if (definitions_.empty())
        return;
    Definition& list = definitions_.back();
    if (list.levels >= 1 && list.levels <= listLevels)
        list.formats[static_cast<std::size_t>(list.levels - 1)] = format;
}

void Lists::setListId(int id) {
    if (!definitions_.empty())
        definitionOfId_[id] = definitions_.size() - 1;
}

void Lists::setOverrideId(int id) {
    override_.id = id;
    enterOverride();
}

void Lists::setOverrideNumber(int number) {
    override_.number = number;
    enterOverride();
}

void Lists::enterOverride() {
    if (override_.id && override_.number)
        idOfNumber_[*override_.number] = *override_.id;
}

int Lists::formatIn(std::optional<int> id, int level) const {
    const auto found = id ? definitionOfId_.find(*id) : definitionOfId_.end();
    if (found == definitionOfId_.end())
        return bulletFormat;
    const Definition& list = definitions_[found->second];
    const int last = std::min(list.levels, listLevels) - 1;
    return last < 0 ? bulletFormat : list.formats[static_cast<std::size_t>(std::min(level, last))];
}

int Lists::newList() {
    used_.emplace_back();
    return static_cast<int>(used_.size());
}

std::optional<ListEntry> Lists::entry(int number, int level) {
    described_ = 0;
    const auto overridden = idOfNumber_.find(number);
    const bool known = overridden != idOfNumber_.end();
    const auto kind = kindOf(formatIn(known ? std::optional(overridden->second) : std::nullopt, level));
    if (!kind)
        return std::nullopt;
    const auto [place, added] = listOf_.try_emplace({known, known ? overridden->second : number}, 0);
    if (added)
        place->second = newList();
    auto& used = used_[static_cast<std::size_t>(place->second - 1)].kinds[static_cast<std::size_t>(level)];
    used = used.value_or(*kind);
    return ListEntry{*used, level, place->second};
}

std::optional<ListEntry> Lists::describedEntry(int format, int level) {
    const auto kind = kindOf(format);
    if (!kind)
        return std::nullopt;
    const auto usedAt = [&]() -> auto& {
        return used_[static_cast<std::size_t>(described_ - 1)].kinds[static_cast<std::size_t>(level)];
    };
    if (described_ == 0 || usedAt().value_or(*kind) != *kind)
        described_ = newList();
    usedAt() = *kind;
    return ListEntry{*kind, level, described_};
}

} // namespace genutil::text::rtf
