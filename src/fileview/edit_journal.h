#pragma once

#include "hostif/desktop.h"
#include "text/edit_record.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace genutil {

// What the user has typed into a report and not yet saved, on the disk at every moment: when the process is
// killed, the next viewer of the file offers it. It is written edit by edit; the report is not copied.
class EditJournal {
public:
    explicit EditJournal(FileSystem& files) : files_(files) {}

    // The text is that of the file in this state from now on: what was noted is settled.
    void follow(const std::string& path, const std::optional<FileStamp>& state,
        std::shared_ptr<const text::TextDocument> document);
    // Nothing of what is edited is noted any more.
    void forget();

    // The user has edited the text. One that nobody has asked to follow is passed over. Throws what making
    // or writing the file met, once; then forgets.
    void noteEdit(const text::TextDocument& document);
    // The bytes of the followed text were read afresh as another encoding's: this is the text now.
    void noteEncoding(std::shared_ptr<const text::TextDocument> document);

    // What an ended process has left unsaved of the followed file.
    enum class Left { Nothing, Fitting, Outdated };
    Left findLeft();
    // Repeats what was found on the text, which becomes another one where another encoding had been chosen,
    // and goes on from there. False when not all of it could be repeated.
    bool restore(const std::shared_ptr<text::TextDocument>& document);
    // What was found is not wanted.
    void dropLeft() { left_.reset(); }

private:
    text::EditRecord recordOf(const text::TextDocument& document);
    void put(const text::EditRecord& record);

    FileSystem& files_;
    std::string path_;
    std::optional<FileStamp> state_;
    std::shared_ptr<const text::TextDocument> document_;
    std::unique_ptr<RecordLog> log_;
    std::optional<LeftLog> left_;
    std::string encoding_; // of the text before its first edit
    // Undo steps below the first, and above the second, are none that the journal holds. Undoing or redoing
    // one is noted by its bytes, and so is each from then on: whoever repeats that has other steps.
    std::size_t base_ = 0;
    std::size_t top_ = 0;
    bool hasSameSteps_ = true;
};

} // namespace genutil
