#pragma once

#include "hostif/desktop.h"
#include "hostif/error.h"

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace genutil::fake {

// Files in memory, by their whole path. Every operation is logged as "openFile /jobs/a.log" and can be told
// to fail under that key, or under "openFile" for every path; "read <path>" fails after half of the file was
// read.
struct FakeFiles : FileSystem {
    struct File {
        std::string bytes;
        FileStamp stamp;
    };
    std::map<std::string, File> files;
    std::vector<std::string> wiped; // paths, whether there was such a file or not
    std::vector<std::string> log;
    std::map<std::string, Error> failures;
    std::function<void()> whileReading; // what other programs do while a file is read; once

    // As another program does: the file's stamp changes.
    void put(const std::string& path, const std::string& bytes) {
        const bool isNew = !files.contains(path);
        File& file = files[path];
        file.bytes = bytes;
        file.stamp = {.device = 1,
            .file = isNew ? files.size() : file.stamp.file,
            .size = bytes.size(),
            .written = ++clock_};
    }
    // What the file holds; "" for none.
    std::string bytesOf(const std::string& path) const {
        const auto found = files.find(path);
        return found == files.end() ? std::string() : found->second.bytes;
    }

    void wipeFile(const std::string& path) override {
        start("wipeFile", path);
        wiped.push_back(path);
        files.erase(path);
    }
    std::unique_ptr<text::ByteSource> openFile(const std::string& path) override {
        start("openFile", path);
        return std::make_unique<Source>(*this, path, existing(path).bytes);
    }
    void saveFile(
        const std::string& path, const std::function<void(const text::ByteSink& sink)>& write) override {
        std::string bytes;
        write([&](std::string_view more) { bytes += more; });
        start("saveFile", path);
        put(path, bytes);
    }
    void copyFile(const std::string& from, const std::string& to) override {
        start("copyFile", from);
        const std::string bytes = existing(from).bytes;
        if (from != to)
            saveFile(to, [&](const text::ByteSink& sink) { sink(bytes); });
    }
    std::optional<FileStamp> stampOf(const std::string& path) override {
        const auto found = files.find(path);
        return found == files.end() ? std::nullopt : std::optional(found->second.stamp);
    }
    std::unique_ptr<ScratchFile> makeScratchFile(const std::string& name, std::string_view bytes) override {
        start("makeScratchFile", name);
        struct Scratch : ScratchFile {
            FakeFiles& all;
            std::string place;
            std::string why;
            Scratch(FakeFiles& files, std::string path, std::string reason)
                : all(files), place(std::move(path)), why(std::move(reason)) {}
            ~Scratch() override { all.files.erase(place); }
            const std::string& path() const override { return place; }
            const std::string& whyElsewhere() const override { return why; }
        };
        const bool isTaken = files.contains(name);
        auto scratch = std::make_unique<Scratch>(
            *this, isTaken ? "/private/scratch" : name, isTaken ? "'" + name + "' exists already" : "");
        put(scratch->place, std::string(bytes));
        return scratch;
    }
    // Logs by the path that they are about; one whose process is killed stays.
    struct Log : RecordLog {
        FakeFiles& all;
        std::string about;
        Log(FakeFiles& files, std::string path) : all(files), about(std::move(path)) {}
        ~Log() override {
            if (!all.processIsKilled)
                all.logs.erase(about);
        }
        void append(std::string_view record) override {
            all.failWhenAsked("append", about);
            all.logs[about].emplace_back(record);
        }
    };
    std::map<std::string, std::vector<std::string>> logs;
    bool processIsKilled = false;
    std::unique_ptr<RecordLog> makeLog(const std::string& about) override {
        logs[about].clear();
        return std::make_unique<Log>(*this, about);
    }
    std::optional<LeftLog> leftLog(const std::string& about) override {
        const auto found = logs.find(about);
        if (found == logs.end())
            return std::nullopt;
        return LeftLog{found->second, std::make_unique<Log>(*this, about)};
    }

    const text::CodePages& codePages() override { return text::basicCodePages(); }

    void failWhenAsked(const std::string& operation, const std::string& path) const {
        for (const std::string& key : {operation, operation + ' ' + path}) {
            if (const auto found = failures.find(key); found != failures.end())
                throw found->second;
        }
    }

private:
    class Source : public text::ByteSource {
    public:
        Source(FakeFiles& files, std::string path, std::string bytes)
            : files_(files), path_(std::move(path)), bytes_(std::move(bytes)) {}
        std::uint64_t expectedSize() const override { return bytes_.size(); }
        std::size_t read(std::span<char> into) override {
            if (const auto act = std::exchange(files_.whileReading, nullptr))
                act();
            if (at_ >= bytes_.size() / 2)
                files_.failWhenAsked("read", path_);
            const std::size_t end = at_ < bytes_.size() / 2 ? bytes_.size() / 2 : bytes_.size();
            const std::size_t count = std::min(into.size(), end - at_);
            std::copy_n(bytes_.begin() + std::ptrdiff_t(at_), count, into.begin());
            at_ += count;
            return count;
        }

    private:
        FakeFiles& files_;
        std::string path_;
        std::string bytes_;
        std::size_t at_ = 0;
    };

    void start(const std::string& operation, const std::string& path) {
        log.push_back(operation + ' ' + path);
        failWhenAsked(operation, path);
    }
    const File& existing(const std::string& path) const {
        const auto found = files.find(path);
        if (found == files.end())
            throw Error(errors::FileNotFound, "Cannot find '" + path + "'");
        return found->second;
    }

    std::int64_t clock_ = 0;
};

} // namespace genutil::fake
