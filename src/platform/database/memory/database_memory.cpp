#include "platform/database/memory/database_memory.h"

#include "platform/database/memory/facts_store.h"
#include "platform/database/memory/remembered_database.h"

#include <exception>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

namespace genutil {
namespace {

// One name for a file of the current folder, too.
std::string fullPath(const std::string& path) {
    std::error_code unknown;
    const std::filesystem::path full = std::filesystem::absolute(path, unknown);
    return unknown ? path : full.string();
}

bool hasLog(const std::string& path) {
    std::error_code unknown;
    return std::filesystem::exists(path + "-wal", unknown) || unknown;
}

class Memory : public DatabaseMemory {
public:
    Memory(std::function<std::string()> file, std::function<OpenedDatabase(const std::string&)> openToRead,
        std::function<std::int64_t()> clock)
        : store_(std::make_shared<memory::FactsStore>(std::move(file))), openToRead_(std::move(openToRead)),
          clock_(std::move(clock)) {}
    ~Memory() override { store_->rest(); }

    std::shared_ptr<Database> OpenDatabase(const std::string& path, bool exclusive, bool readOnly) override {
        if (exclusive || !readOnly)
            return engine_->OpenDatabase(path, exclusive, readOnly);
        const std::int64_t lookedAt = clock_();
        const std::optional<FileState> state = fileState(path);
        const std::string name = fullPath(path);
        if (state)
            if (auto facts = factsOf(name, *state))
                return memory::makeRememberedDatabase(
                    std::move(*facts), [open = openToRead_, path] { return open(path).database; });
        OpenedDatabase opened = openToRead_(path);
        if (!state || !isSettled(*state, lookedAt))
            return opened.database;
        const auto keep = [store = std::weak_ptr(store_), path, name, before = *state](memory::Facts facts) {
            const auto held = store.lock();
            if (held && fileState(path) == before && !(facts.mayHaveLog && hasLog(path)))
                held->put(name, before, memory::encode(facts));
        };
        return memory::makeWatchedDatabase(std::move(opened.database), opened.mayHaveLog, keep);
    }

    void keep() override { store_->rest(); }
    void forget() override { store_->forget(); }

private:
    std::optional<memory::Facts> factsOf(const std::string& name, const FileState& state) {
        const std::optional<std::string> bytes = store_->find(name, state);
        std::optional<memory::Facts> facts = bytes ? memory::decode(*bytes) : std::nullopt;
        if (facts && facts->mayHaveLog && hasLog(name))
            return std::nullopt;
        return facts;
    }

    std::shared_ptr<memory::FactsStore> store_;
    std::function<OpenedDatabase(const std::string&)> openToRead_;
    std::function<std::int64_t()> clock_;
    std::unique_ptr<DatabaseEngine> engine_ = makeDatabaseEngine();
};

} // namespace

std::unique_ptr<DatabaseMemory> makeDatabaseMemory(std::function<std::string()> file,
    std::function<OpenedDatabase(const std::string& path)> openToRead, std::function<std::int64_t()> clock) {
    return std::make_unique<Memory>(std::move(file), std::move(openToRead), std::move(clock));
}

} // namespace genutil
