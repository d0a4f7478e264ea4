#pragma once

#include "platform/database/file_state.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace genutil::memory {

// Facts on disk, as encode() makes them, by the path of the job and the state of its file. A file that is
// damaged, or not ours, is thrown away; one that cannot be read or written costs nothing but the facts.
// Several programs may use one file at once.
class FactsStore {
public:
    // `file` gives the path of the file, in a folder that nobody else can write to; it is asked when the
    // store is first needed, and may throw Error.
    explicit FactsStore(std::function<std::string()> file);
    ~FactsStore();

    // Once for each path until rest(); quick for paths that are asked for in rising order.
    std::optional<std::string> find(const std::string& path, const FileState& state);
    // On disk with the next rest() at the latest.
    void put(const std::string& path, const FileState& state, std::string facts);
    // Nothing more will be asked for some time: what was put is on disk, what was read ahead given up.
    void rest();
    // Removes the file.
    void forget();

private:
    struct Row {
        std::string path;
        FileState state;
        std::string facts;
    };
    class File;

    // Opened on first use; null when that fails.
    File* file();
    void readAhead(const std::string& path);
    void flush();
    // Runs a step on the file; an error ends it, and what is wrong with the file with it.
    template<class Step>
    void attempt(Step&& step);

    std::function<std::string()> path_;
    std::unique_ptr<File> file_;
    bool isRemoved_ = false; // since the last rest(), a file that was damaged
    bool isUseless_ = false; // until rest() there is no file
    // Read ahead: all rows from one path on, up to another one or the last.
    std::vector<Row> ahead_;
    std::optional<std::string> aheadFrom_, aheadTo_;
    std::vector<Row> pending_;
    std::size_t pendingBytes_ = 0;
};

} // namespace genutil::memory
