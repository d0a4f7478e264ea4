#include "platform/system/system_files.h"

#include "platform/system/code_pages.h"
#include "platform/system/copy_file.h"
#include "platform/system/file_stamp.h"
#include "platform/system/open_file.h"
#include "platform/system/record_log_file.h"
#include "platform/system/save_file.h"
#include "platform/system/scratch_file.h"
#include "platform/system/wipe_file.h"

namespace genutil {
namespace {

class SystemFiles : public FileSystem {
public:
    void wipeFile(const std::string& path) override { genutil::wipeFile(path); }
    std::unique_ptr<text::ByteSource> openFile(const std::string& path) override {
        return genutil::openFile(path);
    }
    void saveFile(
        const std::string& path, const std::function<void(const text::ByteSink& sink)>& write) override {
        genutil::saveFile(path, write);
    }
    void copyFile(const std::string& from, const std::string& to) override { genutil::copyFile(from, to); }
    std::optional<FileStamp> stampOf(const std::string& path) override { return genutil::stampOf(path); }
    std::unique_ptr<ScratchFile> makeScratchFile(const std::string& name, std::string_view bytes) override {
        return genutil::makeScratchFile(name, bytes);
    }
    std::unique_ptr<RecordLog> makeLog(const std::string& about) override { return makeRecordLog(about); }
    std::optional<LeftLog> leftLog(const std::string& about) override { return leftRecordLog(about); }
    const text::CodePages& codePages() override { return codePages_; }

private:
    SystemCodePages codePages_;
};

} // namespace

std::unique_ptr<FileSystem> makeSystemFiles() {
    return std::make_unique<SystemFiles>();
}

} // namespace genutil
