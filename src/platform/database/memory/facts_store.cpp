#include "platform/database/memory/facts_store.h"

#include "hostif/date.h"
#include "hostif/error.h"
#include "platform/database/sqlite_connection.h"
#include "text/little_endian.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace genutil::memory {
namespace {

constexpr std::int64_t applicationId = 0x6B67'6D31; // in the file's header: whose it is
constexpr std::int64_t formatVersion = 1;

constexpr std::size_t largestFacts = 64 * 1024; // a job with more is as quickly read from its own file
constexpr std::size_t aheadBytes = 1024 * 1024;
constexpr std::size_t pendingBytes = 4 * 1024 * 1024;
constexpr std::int64_t largestFile = 128 * 1024 * 1024;

// Differs for bytes that differ, but for a chance in 2^64: eight bytes at a time are multiplied in, by the
// constants of FNV-1a, and the high bits folded down.
class Mark {
public:
    void add(std::string_view bytes) {
        add(bytes.size());
        for (; bytes.size() >= sizeof(std::uint64_t); bytes.remove_prefix(sizeof(std::uint64_t)))
            add(text::numberAt<std::uint64_t>(bytes, 0));
        for (const char c : bytes)
            add(std::uint64_t{static_cast<unsigned char>(c)});
    }
    void add(std::uint64_t number) {
        mark_ = (mark_ ^ number) * 1099511628211u;
        mark_ ^= mark_ >> 32;
    }
    std::int64_t value() const { return static_cast<std::int64_t>(mark_); }

private:
    std::uint64_t mark_ = 14695981039346656037u;
};

// Fields that hold a date are given as texts in the order of the locale, which this text tells.
std::string localeText() {
    constexpr double lastDayOf1999 = 36'525;
    return shortMomentText(lastDayOf1999);
}

// Of a row that is whole, and whose values are those of the locale.
std::int64_t markOf(
    const std::string& locale, const std::string& path, const FileState& state, std::string_view facts) {
    Mark mark;
    mark.add(locale);
    mark.add(path);
    for (const std::uint64_t number :
        {state.size, state.number, std::uint64_t(state.written), std::uint64_t(state.changed)})
        mark.add(number);
    mark.add(facts);
    return mark.value();
}

// The folder of a path, with its separator.
std::string folderOf(const std::string& path) {
    return path.substr(0, path.rfind('/') + 1);
}

void removeFile(const std::string& path) {
    std::error_code ignored;
    for (const char* end : {"", "-journal"})
        std::filesystem::remove(path + end, ignored);
}

// There already, or made for this user alone.
const std::string& existing(const std::string& path) {
    const int number = ::open(path.c_str(), O_RDWR | O_CREAT | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (number >= 0)
        ::close(number);
    return path; // what is wrong is found when it is opened as a database
}

} // namespace

class FactsStore::File {
public:
    explicit File(const std::string& path) : connection_(existing(path), false, sqlite::Access::ReadWrite) {
        if (number("PRAGMA schema_version") == 0) {
            run("PRAGMA page_size = 16384"); // many rows of a kilobyte are written at once
            sqlite::Transaction making(connection_);
            run("CREATE TABLE IF NOT EXISTS seen (path BLOB PRIMARY KEY, size, number, written, changed, "
                "facts, mark) "
                "WITHOUT ROWID");
            run("PRAGMA application_id = " + std::to_string(applicationId));
            run("PRAGMA user_version = " + std::to_string(formatVersion));
            making.commit();
        }
        if (number("PRAGMA application_id") != applicationId ||
            number("PRAGMA user_version") != formatVersion)
            throw Error(errors::UnrecognisedDatabase);
        run("PRAGMA synchronous = NORMAL");
    }

    // Rows from the path on, until `take` has had enough.
    void rowsFrom(const std::string& path, const std::function<bool(Row)>& take) {
        if (!from_)
            from_.emplace(connection_, "SELECT path, size, number, written, changed, mark, facts FROM seen "
                                       "WHERE path >= ? ORDER BY path");
        struct Resetting {
            sqlite::Statement& statement;
            ~Resetting() { statement.reset(); }
        } resetting{*from_};
        const std::string locale = localeText();
        from_->bindBytes(0, path);
        for (bool goOn = true; goOn && from_->next();) {
            Row row{std::string(from_->bytes(0)), stateAt(1), std::string(from_->bytes(6))};
            if (from_->number(5) == markOf(locale, row.path, row.state, row.facts))
                goOn = take(std::move(row));
        }
    }

    void add(const std::vector<Row>& rows) {
        sqlite::Transaction adding(connection_);
        if (size() > largestFile)
            leaveOnly(folderOf(rows.front().path));
        if (size() <= largestFile) {
            const std::string locale = localeText();
            sqlite::Statement insert(connection_, "INSERT OR REPLACE INTO seen VALUES (?, ?, ?, ?, ?, ?, ?)");
            for (const Row& row : rows) {
                insert.bindBytes(0, row.path);
                int parameter = 1;
                for (const auto each : {std::int64_t(row.state.size), std::int64_t(row.state.number),
                         row.state.written, row.state.changed})
                    insert.bind(parameter++, each);
                insert.bindBytes(parameter++, row.facts);
                insert.bind(parameter, markOf(locale, row.path, row.state, row.facts));
                insert.next();
                insert.reset();
            }
        }
        adding.commit();
    }

private:
    void run(const std::string& sql) { sqlite::Statement(connection_, sql).next(); }
    std::int64_t number(const std::string& sql) {
        sqlite::Statement statement(connection_, sql);
        return statement.next() ? statement.number(0) : 0;
    }
    std::int64_t size() {
        return (number("PRAGMA page_count") - number("PRAGMA freelist_count")) * number("PRAGMA page_size");
    }
    FileState stateAt(int column) const {
        return {.size = std::uint64_t(from_->number(column)),
            .number = std::uint64_t(from_->number(column + 1)),
            .written = from_->number(column + 2),
            .changed = from_->number(column + 3)};
    }
    void leaveOnly(const std::string& folder) {
        sqlite::Statement others(connection_, "DELETE FROM seen WHERE substr(path, 1, ?) <> ?");
        others.bind(0, std::int64_t(folder.size()));
        others.bindBytes(1, folder);
        others.next();
    }

    sqlite::Connection connection_;
    std::optional<sqlite::Statement> from_;
};

FactsStore::FactsStore(std::function<std::string()> file) : path_(std::move(file)) {}

FactsStore::~FactsStore() = default;

template<class Step>
void FactsStore::attempt(Step&& step) {
    if (isUseless_)
        return;
    try {
        if (!file_)
            file_ = std::make_unique<File>(path_());
        step(*file_);
    } catch (const Error& error) {
        if (error.number() == errors::DatabaseLocked)
            return; // the next step may find it free
        file_.reset();
        isUseless_ = error.number() != errors::UnrecognisedDatabase || std::exchange(isRemoved_, true);
        if (!isUseless_)
            removeFile(path_());
    }
}

std::optional<std::string> FactsStore::find(const std::string& path, const FileState& state) {
    if (!aheadFrom_ || path < *aheadFrom_ || (aheadTo_ && path > *aheadTo_))
        readAhead(path);
    const auto row = std::ranges::lower_bound(ahead_, path, {}, &Row::path);
    if (row == ahead_.end() || row->path != path || row->state != state)
        return std::nullopt;
    return std::move(row->facts);
}

void FactsStore::readAhead(const std::string& path) {
    ahead_.clear();
    aheadFrom_ = path;
    aheadTo_.reset();
    attempt([&](File& file) {
        std::size_t bytes = 0;
        file.rowsFrom(path, [&](Row row) {
            bytes += row.path.size() + row.facts.size() + sizeof row;
            ahead_.push_back(std::move(row));
            if (bytes < aheadBytes)
                return true;
            aheadTo_ = ahead_.back().path;
            return false;
        });
    });
}

void FactsStore::put(const std::string& path, const FileState& state, std::string facts) {
    if (facts.size() > largestFacts)
        return;
    pendingBytes_ += path.size() + facts.size() + sizeof(Row);
    pending_.push_back({path, state, std::move(facts)});
    if (pendingBytes_ > pendingBytes)
        flush();
}

void FactsStore::flush() {
    if (!pending_.empty())
        attempt([this](File& file) { file.add(pending_); });
    pending_.clear();
    pendingBytes_ = 0;
}

void FactsStore::rest() {
    flush();
    ahead_.clear();
    aheadFrom_.reset();
    isUseless_ = isRemoved_ = false;
}

void FactsStore::forget() {
    file_.reset();
    pending_.clear();
    rest();
    try {
        removeFile(path_());
    } catch (const Error&) {
    } // there is no place for such a file, hence none
}

} // namespace genutil::memory
