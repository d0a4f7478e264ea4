#include "joblist/job_text.h"

#include "hostif/error.h"
#include "hostif/value.h"
#include "joblist/job_cells.h"
#include "text/ascii.h"
#include "text/character_width.h"
#include "text/size_text.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <numeric>
#include <optional>

namespace genutil {
namespace {

constexpr std::size_t widestTableColumn = 40; // characters; a description can be a book

// How a column is written.
struct Heading {
    const char* title;
    ColumnAlignment alignment;
    ColumnContent content;
};

constexpr Heading fileHeadings[] = {{"Size", ColumnAlignment::Right, ColumnContent::Number},
    {"Modified", ColumnAlignment::Left, ColumnContent::Text}};

Heading columnOf(std::int32_t column) {
    if (column >= jobcolumn::FileSize)
        return fileHeadings[column - jobcolumn::FileSize];
    const JobColumn& ofJob = jobColumns()[std::size_t(column) - 1];
    return {ofJob.title, ofJob.alignment, ofJob.content};
}

// The texts of cells in one of the ways of writing them.
struct CellTexts {
    DateStyle dates = DateStyle::User;
    bool forReading = false;

    std::string operator()(const ListedJob& job, std::int32_t column) const {
        if (column < jobcolumn::FileSize)
            return column == jobcolumn::CreateDate && dates == DateStyle::Iso ? isoDateText(*job.row)
                                                                              : fullText(*job.row, column);
        if (!job.file)
            return {};
        if (column == jobcolumn::FileSize)
            return forReading ? text::sizeText(job.file->size) : std::to_string(job.file->size);
        return forReading ? localMoment(job.file->changed) : isoMoment(job.file->changed);
    }
};

// The number in a column of numbers; nothing for a text.
std::optional<double> numberIn(std::int32_t column, const std::string& text) {
    return columnOf(column).content == ColumnContent::Number && !text.starts_with('+') ? wholeNumber(text)
                                                                                       : std::nullopt;
}

// ---- tab- and comma-separated

std::string separatedCell(std::int32_t column, std::string text, char separator) {
    // A spreadsheet takes what begins like this for a formula; the apostrophe says that it is a text.
    if (!text.empty() && std::string_view("=+-@\t\r").find(text[0]) != std::string_view::npos &&
        !numberIn(column, text))
        text.insert(0, 1, '\'');
    if (text.find_first_of(std::string{separator, '"', '\r', '\n'}) == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (const char c : text)
        quoted.append(c == '"' ? 2 : 1, c);
    return quoted + '"';
}

template<class CellOf>
void writeLine(std::string& out, const std::vector<std::int32_t>& columns, char separator, CellOf cellOf) {
    for (const std::int32_t column : columns) {
        if (column != columns.front())
            out += separator;
        out += separatedCell(column, cellOf(column), separator);
    }
    out += '\n';
}

std::string writeSeparated(const std::vector<ListedJob>& jobs, const std::vector<std::int32_t>& columns,
    char separator, const CellTexts& textOf) {
    std::string out;
    writeLine(out, columns, separator, [](std::int32_t column) { return columnOf(column).title; });
    for (const ListedJob& job : jobs)
        writeLine(out, columns, separator, [&](std::int32_t column) { return textOf(job, column); });
    return out;
}

// ---- JSON

void appendJsonText(std::string& out, std::string_view text) {
    constexpr std::string_view hex = "0123456789abcdef";
    out += '"';
    for (std::size_t at = 0; at < text.size();) {
        const text::DecodedCharacter next = text::decodeUtf8(text, at);
        at += next.length;
        if (next.codePoint == U'"' || next.codePoint == U'\\')
            out.append(1, '\\').append(1, static_cast<char>(next.codePoint));
        else if (next.codePoint < U' ')
            out.append("\\u00").append(1, hex[next.codePoint >> 4]).append(1, hex[next.codePoint & 15]);
        else
            text::appendUtf8(out, next.codePoint);
    }
    out += '"';
}

// With a point and without a plus sign.
std::string jsonNumber(double number) {
    std::array<char, 32> digits;
    const auto [end, fault] = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    return fault == std::errc() ? std::string(digits.data(), end) : "null";
}

std::string writeJson(
    const std::vector<ListedJob>& jobs, const std::vector<std::int32_t>& columns, const CellTexts& textOf) {
    std::string out = "[";
    for (const ListedJob& job : jobs) {
        out += &job == &jobs.front() ? "\n  {" : ",\n  {";
        for (const std::int32_t column : columns) {
            out += column == columns.front() ? "" : ", ";
            appendJsonText(out, columnOf(column).title);
            out += ": ";
            const std::string text = textOf(job, column);
            if (const auto number = numberIn(column, text))
                out += jsonNumber(*number);
            else
                appendJsonText(out, text);
        }
        out += '}';
    }
    return out + (jobs.empty() ? "]\n" : "\n]\n");
}

// ---- table

// The text on one line, with nothing in it that would move a terminal's cursor, and no wider than a column.
std::string tableCell(const std::string& text) {
    std::string cell;
    std::size_t width = 0;
    for (std::size_t at = 0; at < text.size();) {
        const text::DecodedCharacter next = text::decodeUtf8(text, at);
        at += next.length;
        const bool isBlank = next.codePoint == U'\t' || next.codePoint == U'\n' || next.codePoint == U'\r';
        const char32_t shown = isBlank                                    ? U' '
                               : text::isInvisibleControl(next.codePoint) ? text::replacementCharacter
                                                                          : next.codePoint;
        width += std::size_t(text::characterWidth(shown));
        if (width > widestTableColumn)
            return cell + "…";
        text::appendUtf8(cell, shown);
    }
    return cell;
}

std::string padded(const std::string& cell, std::size_t width, ColumnAlignment alignment) {
    const std::size_t missing = width - std::min(width, text::columnsOf(cell));
    const std::size_t left = alignment == ColumnAlignment::Left    ? 0
                             : alignment == ColumnAlignment::Right ? missing
                                                                   : missing / 2;
    return std::string(left, ' ') + cell + std::string(missing - left, ' ');
}

std::string writeTable(
    const std::vector<ListedJob>& jobs, const std::vector<std::int32_t>& columns, const CellTexts& textOf) {
    std::vector<std::vector<std::string>> lines(jobs.size() + 1);
    std::vector<std::size_t> widths;
    for (const std::int32_t column : columns) {
        lines[0].push_back(columnOf(column).title);
        for (std::size_t i = 0; i < jobs.size(); ++i)
            lines[i + 1].push_back(tableCell(textOf(jobs[i], column)));
        std::size_t widest = 0;
        for (const auto& line : lines)
            widest = std::max(widest, text::columnsOf(line.back()));
        widths.push_back(widest);
    }
    std::string out;
    for (const auto& line : lines) {
        std::string text;
        for (std::size_t i = 0; i < columns.size(); ++i)
            text.append(i == 0 ? "" : "  ")
                .append(padded(line[i], widths[i], columnOf(columns[i]).alignment));
        out.append(text, 0, text.find_last_not_of(' ') + 1).append(1, '\n');
    }
    return out;
}

} // namespace

JobFormat jobFormatNamed(std::string_view name) {
    if (name == "table")
        return JobFormat::Table;
    if (name == "tsv")
        return JobFormat::TabSeparated;
    if (name == "csv")
        return JobFormat::CommaSeparated;
    if (name == "json")
        return JobFormat::Json;
    throw Error(errors::InvalidCall,
        "There is no format '" + std::string(name) + "': it must be table, tsv, csv or json");
}

std::string writeJobs(JobFormat format, const std::vector<ListedJob>& jobs,
    const std::vector<std::int32_t>& columns, DateStyle dates) {
    const CellTexts textOf{dates, format == JobFormat::Table};
    switch (format) {
    case JobFormat::TabSeparated:
        return writeSeparated(jobs, columns, '\t', textOf);
    case JobFormat::CommaSeparated:
        return writeSeparated(jobs, columns, ',', textOf);
    case JobFormat::Json:
        return writeJson(jobs, columns, textOf);
    default:
        return writeTable(jobs, columns, textOf);
    }
}

std::vector<std::int32_t> jobColumnNumbers(bool all, bool ofFiles) {
    std::vector<std::int32_t> columns(jobColumnCount);
    std::iota(columns.begin(), columns.end(), 1);
    if (!all)
        std::erase_if(columns,
            [](std::int32_t column) { return jobColumns()[std::size_t(column) - 1].use != ColumnUse::Main; });
    if (ofFiles)
        columns.insert(columns.end(), {jobcolumn::FileSize, jobcolumn::FileChanged});
    return columns;
}

std::int32_t jobColumnNamed(std::string_view title) {
    std::string titles;
    for (const std::int32_t column : jobColumnNumbers(true, true)) {
        if (text::equalsIgnoringCase(columnOf(column).title, title))
            return column;
        titles.append(titles.empty() ? "" : ", ").append(columnOf(column).title);
    }
    throw Error(
        errors::InvalidCall, "There is no column '" + std::string(title) + "': it must be one of " + titles);
}

} // namespace genutil
