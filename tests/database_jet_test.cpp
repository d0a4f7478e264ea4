// Jet files of other makers: what table designers change, every type of field, and an independent reader.

#include "hostif/date.h"
#include "hostif/error.h"
#include "platform/database/jet_row.h"
#include "platform/database/memory/database_memory.h"
#include "support/file_folder.h"
#include "support/read_database.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace genutil {
namespace {

namespace fs = std::filesystem;

const fs::path jobs = fs::path(GENUTIL_SAMPLES) / "jobs";

std::string contentsOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

// Changes the definitions of tables as a table designer does. Knows of a Jet file no more than where the
// entries of fields stand in pages that hold a definition; a definition is expected to fit into its page.
class Designer {
public:
    explicit Designer(const fs::path& path) : bytes_(contentsOf(path)), jet3_(bytes_[0x14] == 0) {}

    const std::string& bytes() const { return bytes_; }

    // Drags every table's columns into the reverse order: their positions change, not the numbers that they
    // were made with.
    Designer& reverseColumns() {
        eachField([this](std::size_t entry, std::size_t number, std::size_t count, const std::string&) {
            bytes_[entry + (jet3_ ? 5 : 9)] = static_cast<char>(count - 1 - number);
        });
        return *this;
    }
    // Takes the columns that have not the fields' numbers as they are, and calls one by another name of equal
    // length.
    Designer& rename(const std::string& from, const std::string& to) {
        eachField([&](std::size_t, std::size_t, std::size_t, const std::string& name) {
            if (name == from)
                bytes_.replace(nameAt_, stored(from).size(), stored(to));
        });
        return *this;
    }
    // Gives a fixed field another type, with so many decimals, and its place in the record the bytes that
    // belong to it.
    Designer& retype(
        const std::string& field, char kind, const std::string& from, const std::string& to, char scale = 0) {
        eachField([&](std::size_t entry, std::size_t, std::size_t, const std::string& name) {
            if (name == field) {
                bytes_[entry] = kind;
                bytes_[entry + 12] = scale;
                bytes_[entry + 23] = static_cast<char>(to.size());
                bytes_[entry + 15] = static_cast<char>(bytes_[entry + 15] | 1);
            }
        });
        const std::size_t place = bytes_.find(from);
        EXPECT_NE(place, std::string::npos);
        bytes_.replace(place, to.size(), to);
        return *this;
    }

private:
    template<class See>
    void eachField(const See& see) {
        const std::size_t page = jet3_ ? 2048 : 4096;
        for (std::size_t at = page; at < bytes_.size(); at += page) {
            if (bytes_[at] != 2)
                continue;
            const std::size_t count = byte(at + (jet3_ ? 25 : 45)), indexes = byte(at + (jet3_ ? 31 : 51));
            const std::size_t size = jet3_ ? 18 : 25;
            const std::size_t entries = at + (jet3_ ? 43 + indexes * 8 : 63 + indexes * 12);
            std::size_t name = entries + count * size;
            for (std::size_t i = 0; i < count && name < at + page; ++i) {
                const std::size_t length = byte(name);
                nameAt_ = name + (jet3_ ? 1 : 2);
                std::string text = bytes_.substr(nameAt_, length);
                std::erase(text, '\0');
                see(entries + i * size, i, count, text);
                name = nameAt_ + length;
            }
        }
    }
    std::size_t byte(std::size_t at) const { return static_cast<unsigned char>(bytes_[at]); }
    std::string stored(const std::string& name) const {
        std::string text;
        for (const char c : name)
            text += jet3_ ? std::string(1, c) : std::string{c, '\0'};
        return text;
    }

    std::string bytes_;
    bool jet3_;
    std::size_t nameAt_ = 0;
};

template<class T>
std::string bytesOf(T value) {
    std::string bytes(sizeof value, '\0');
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

TEST(JetTables, KeepTheirValuesWhenColumnsAreMovedOrRenamedInADesigner) {
    const fake::FileFolder folder;
    const auto engine = makeDatabaseEngine();
    int values = 0;
    for (const char* file :
        {"Smith Farm.mdb", "HIGHWAY_17.mdb", "AddedColumn.mdb", "Jet3 Plane.mdb", "Jet3 Many.mdb"}) {
        const std::string path = folder.make(
            "job.mdb", Designer(jobs / file).reverseColumns().rename("Surveyor", "Measurer").bytes());
        const auto before = engine->OpenDatabase((jobs / file).string(), false, true);
        const auto after = engine->OpenDatabase(path, false, true);
        for (std::int16_t i = 0; i < before->tableCount(); ++i) {
            const auto expected = before->OpenRecordset(before->tableName(i));
            const auto found = after->OpenRecordset(before->tableName(i));
            for (; !expected->EOF_(); expected->MoveNext(), found->MoveNext())
                for (const std::string& name : test::jobFields()) {
                    Value value;
                    try {
                        value = expected->field(name);
                    } catch (const Error&) {
                        continue; // of another table
                    }
                    EXPECT_EQ(found->field(name == "Surveyor" ? "Measurer" : name), value)
                        << file << ' ' << name;
                    ++values;
                }
        }
    }
    EXPECT_GT(values, 5'000);
}

// A record of format 3 with texts of these lengths, as its engine writes one: starts of one byte, and before
// them a jump for each 256 bytes of the record, of which the last names no field where only what follows the
// fields passes 256 bytes.
std::string recordOfTexts(const std::vector<std::size_t>& lengths) {
    std::string record(1, char(lengths.size()));
    std::vector<std::size_t> starts;
    for (const std::size_t length : lengths) {
        starts.push_back(record.size());
        record.append(length, char('a' + starts.size()));
    }
    starts.push_back(record.size());
    const std::size_t rest = starts.size() + 1 + (lengths.size() + 7) / 8;
    std::size_t jumps = 0;
    while ((record.size() + rest + jumps - 1) / 256 > jumps)
        ++jumps;
    for (std::size_t i = starts.size(); i-- > 0;)
        record += char(starts[i]);
    for (std::size_t jump = jumps; jump > 0; --jump) {
        const auto from = std::ranges::lower_bound(starts, jump * 256);
        record += char(from == starts.end() ? 0 : from - starts.begin());
    }
    record += char(lengths.size());
    return record.append((lengths.size() + 7) / 8, '\xFF');
}

TEST(JetTables, OfFormat3FindFieldsOfRecordsOfEveryLength) {
    jet::File file(DatabaseFile((jobs / "Jet3 Plane.mdb").string()));
    for (std::size_t first = 0; first <= 255; first += 5)
        for (std::size_t last = 0; last <= 255; ++last) {
            const std::vector<std::size_t> lengths{first, 0, 200, last, 3};
            const std::string record = recordOfTexts(lengths);
            jet::Table table;
            table.hasVariableColumns = true;
            for (std::size_t i = 0; i < lengths.size(); ++i) {
                jet::Column column;
                column.kind = jet::Kind::Text;
                column.number = column.variable = i;
                ASSERT_EQ(
                    jet::fieldOf(file, table, column, record), Value(std::string(lengths[i], char('b' + i))))
                    << first << ' ' << last << ' ' << i;
            }
        }
}

TEST(JetTables, GiveFieldsOfEveryTypeOrNameTheType) {
    const std::string place = bytesOf(1000.125); // where MinimumX of the job stands
    std::string decimal(17, '\0');
    decimal[0] = '\x80'; // negative
    decimal.replace(13, 4, bytesOf(std::uint32_t{123'456'789}));
    struct Case {
        char kind;
        std::string bytes;
        Value value;
        char scale = 0;
    };
    const std::string guid("\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0A\x0B\x0C\x0D\x0E\x0F\x10", 16);
    const Case cases[] = {
        {2, bytesOf(std::uint8_t{250}), std::uint8_t{250}},
        {3, bytesOf(std::int16_t{-2}), std::int16_t{-2}},
        {4, bytesOf(std::int32_t{-70'000}), std::int32_t{-70'000}},
        {5, bytesOf(std::int64_t{-1'234'567'891}), -123'456.7891},
        {6, bytesOf(0.5f), 0.5f},
        {7, bytesOf(0.1), 0.1},
        {8, bytesOf(43'536.0), "12/03/2019"},
        {8, bytesOf(43'536.378819444), "12/03/2019 09:05:30"},
        {8, bytesOf(-1.25), "29/12/1899 06:00:00"},
        {8, bytesOf(1e9), 1e9},                       // of no calendar
        {10, "ABCD    ", "\u4241\u4443\u2020\u2020"}, // of fixed width, in units of two bytes
        {15, guid, "{04030201-0605-0807-090A-0B0C0D0E0F10}"},
        {16, decimal, -123'456.789, 3},
    };
    const fake::FileFolder folder;
    const auto engine = makeDatabaseEngine();
    const auto read = [&](char kind, const std::string& bytes, char scale) {
        const std::string path = folder.make("job.mdb",
            Designer(jobs / "Smith Farm.mdb").retype("MinimumX", kind, place, bytes, scale).bytes());
        return engine->OpenDatabase(path, false, true)->OpenRecordset("JobDetails")->field("MinimumX");
    };
    for (const Case& each : cases)
        EXPECT_EQ(read(each.kind, each.bytes, each.scale), each.value) << int(each.kind);
    for (const auto& [kind, name] :
        {std::pair{'\x09', "Binary"}, {'\x0B', "OLE Object"}, {'\x12', "Complex"}, {'\x63', "number 99"}})
        try {
            read(kind, "", 0);
            ADD_FAILURE() << name;
        } catch (const Error& error) {
            EXPECT_EQ(error.number(), errors::TypeMismatch);
            EXPECT_NE(error.description().find("'MinimumX'"), std::string::npos) << error.description();
            EXPECT_NE(error.description().find(name), std::string::npos) << error.description();
        }
}

TEST(JetTables, GiveDatesInTheOrderOfTheLocaleAlsoWhereTheyAreKept) {
    const fake::FileFolder folder;
    const auto date = [&] {
        return makeDatabaseMemory(
            [&] { return folder / "kept"; }, openToReadDatabase, [] { return now() + 3'600'000'000'000; })
            ->OpenDatabase(folder / "job.mdb", false, true)
            ->OpenRecordset("JobDetails")
            ->field("MinimumX");
    };
    folder.make("job.mdb", Designer(jobs / "Smith Farm.mdb")
                               .retype("MinimumX", 8, bytesOf(1000.125), bytesOf(43'536.0))
                               .bytes());
    EXPECT_EQ(date(), "12/03/2019");
    DateLocale american;
    american.order = DateLocale::Order::MonthDayYear;
    setDateLocale(american);
    EXPECT_EQ(date(), "03/12/2019");
    setDateLocale({});
    EXPECT_EQ(date(), "12/03/2019");
}

// The records of a table as the mdb tools export them; the first holds the names of the fields. A cell is
// Null, or what stands between the commas, and whether that was in quotes.
struct Cell {
    std::string text;
    bool isQuoted = false;
};
std::vector<std::vector<Cell>> exported(const std::string& file, const std::string& table) {
    const auto quoted = [](std::string word) {
        for (std::size_t i = 0; (i = word.find('\'', i)) != std::string::npos; i += 4)
            word.replace(i, 1, "'\\''");
        return '\'' + word + '\'';
    };
    const std::string command =
        "MDB_JET3_CHARSET=CP1252 mdb-export -0 '<>' -b strip -D %d/%m/%Y -T '%d/%m/%Y %H:%M:%S' " +
        quoted(file) + ' ' + quoted(table);
    std::string output;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
    for (char buffer[65536]; const std::size_t got = std::fread(buffer, 1, sizeof buffer, pipe.get());)
        output.append(buffer, got);
    std::vector<std::vector<Cell>> records;
    bool isOpen = false, isNew = true;
    for (std::size_t i = 0; i < output.size(); ++i) {
        if (std::exchange(isNew, false))
            records.emplace_back(1);
        Cell& cell = records.back().back();
        const char c = output[i];
        if (isOpen && c == '"' && output.substr(i + 1, 1) == "\"")
            cell.text += output[++i];
        else if (c == '"') {
            isOpen = !isOpen;
            cell.isQuoted = true;
        } else if (!isOpen && c == ',')
            records.back().emplace_back();
        else if (!isOpen && c == '\n')
            isNew = true;
        else
            cell.text += c;
    }
    return records;
}

// They write each half of a character beyond U+FFFF as a question mark.
std::string beyondPlaneZero(const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (static_cast<unsigned char>(text[i]) < 0xF0)
            result += text[i];
        else {
            result += "??";
            i += 3;
        }
    return result;
}

// Where the mdb tools are known to be wrong; everything else must be the same.
bool isSame(const Value& ours, const Cell& theirs) {
    const std::string text = ours.isNull() ? "" : ours.toText();
    if (!theirs.isQuoted && theirs.text == "<>")
        return text.empty(); // they do not tell an empty text from Null
    if (ours.isNull() || theirs.isQuoted)
        return !ours.isNull() && (beyondPlaneZero(text) == theirs.text || text + " 00:00:00" == theirs.text);
    if (std::holds_alternative<bool>(ours.storage()))
        return theirs.text == (ours.toBool() ? "1" : "0");
    // They write 16 digits of a double, which may round the largest one up beyond all doubles.
    const double number = std::strtod(theirs.text.c_str(), nullptr), wanted = ours.toDouble();
    const double precision = std::holds_alternative<float>(ours.storage()) ? 1e-6 : 1e-15;
    return number == wanted || std::abs(number - wanted) <= precision * std::abs(wanted) ||
           (std::isinf(number) && std::abs(wanted) == std::numeric_limits<double>::max());
}

// K_GENUTIL_DATABASES: a folder with more databases to compare.
TEST(JetTables, HoldWhatAnIndependentReaderFinds) {
    const auto engine = makeDatabaseEngine();
    int values = 0;
    const auto compare = [&](const fs::path& file) {
        std::shared_ptr<Database> database;
        try {
            database = engine->OpenDatabase(file.string(), false, true);
        } catch (const Error&) {
            return; // refused: other tests say for what
        }
        for (std::int16_t i = 0; i < database->tableCount(); ++i) {
            const std::string table = database->tableName(i);
            SCOPED_TRACE(file.filename().string() + ' ' + table);
            const auto theirs = exported(file.string(), table);
            ASSERT_FALSE(theirs.empty());
            const auto ours = database->OpenRecordset(table);
            EXPECT_EQ(database->tableRecordCount(i), static_cast<std::int32_t>(theirs.size() - 1));
            for (std::size_t row = 1; row < theirs.size() && !ours->EOF_(); ++row, ours->MoveNext())
                for (std::size_t field = 0; field < theirs[row].size(); ++field, ++values) {
                    const std::string name = theirs[0][field].text;
                    try {
                        const Value value = ours->field(name);
                        EXPECT_TRUE(isSame(value, theirs[row][field]))
                            << name << " in record " << row << ": "
                            << (value.isNull() ? "Null" : value.toText()) << " is not "
                            << theirs[row][field].text;
                    } catch (const Error& error) {
                        ADD_FAILURE() << name << " in record " << row << ": " << error.description();
                    }
                }
            EXPECT_TRUE(ours->EOF_());
        }
    };
    const char* const more = std::getenv("K_GENUTIL_DATABASES");
    for (const fs::path& folder : {jobs, fs::path(more ? more : "")})
        if (!folder.empty())
            for (const auto& entry : fs::directory_iterator(folder))
                if (contentsOf(entry.path()).starts_with(std::string("\0\1\0\0Standard Jet DB", 19)))
                    compare(entry.path());
    EXPECT_GT(values, 15'000);
}

} // namespace
} // namespace genutil
