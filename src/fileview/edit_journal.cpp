#include "fileview/edit_journal.h"

#include "hostif/error.h"
#include "text/little_endian.h"

#include <utility>

namespace genutil {
namespace {

using text::EditRecord;
using Done = text::TextDocument::Done;

// The first record of a journal: which state of the file it begins with, in four numbers, and the encoding
// that it was read in.
constexpr std::size_t stampSize = 4 * sizeof(std::uint64_t);

std::string headOf(const FileStamp& state, const std::string& encoding) {
    std::string head;
    for (const std::uint64_t number : {state.device, state.file, state.size, std::uint64_t(state.written)})
        text::appendNumber(head, number);
    return head += encoding;
}

} // namespace

void EditJournal::follow(const std::string& path, const std::optional<FileStamp>& state,
    std::shared_ptr<const text::TextDocument> document) {
    forget();
    path_ = path;
    state_ = state;
    document_ = std::move(document);
    base_ = top_ = document_->undoDepth();
    hasSameSteps_ = true;
    encoding_ = document_->encoding().name;
}

void EditJournal::forget() {
    log_.reset();
    left_.reset();
    document_.reset();
    state_.reset();
}

void EditJournal::put(const EditRecord& record) {
    try {
        if (!log_) {
            log_ = files_.makeLog(path_);
            log_->append(headOf(*state_, encoding_));
        }
        log_->append(encodeRecord(record));
    } catch (const Error& error) {
        forget();
        throw Error(error.number(),
            "Changes to " + path_ +
                " will be lost if the program is ended before they are saved: " + error.description());
    }
}

EditRecord EditJournal::recordOf(const text::TextDocument& document) {
    const Done& done = document.lastDone();
    const std::size_t depth = document.undoDepth();
    if (done.kind == Done::Kind::Edit)
        top_ = depth;
    else if (hasSameSteps_ && done.kind == Done::Kind::Undo && depth >= base_)
        return {.kind = EditRecord::Kind::Undo};
    else if (hasSameSteps_ && done.kind == Done::Kind::Redo && depth <= top_)
        return {.kind = EditRecord::Kind::Redo};
    else
        hasSameSteps_ = false;
    return {.joined = done.joined,
        .offset = done.offset,
        .removed = done.removed,
        .inserted = document.bytes(done.offset, done.inserted)};
}

void EditJournal::noteEdit(const text::TextDocument& document) {
    if (state_ && &document == document_.get())
        put(recordOf(document));
}

void EditJournal::noteEncoding(std::shared_ptr<const text::TextDocument> document) {
    if (!state_)
        return;
    document_ = std::move(document);
    base_ = top_ = document_->undoDepth();
    hasSameSteps_ = true;
    if (log_)
        put({.kind = EditRecord::Kind::Encoding, .inserted = document_->encoding().name});
    else
        encoding_ = document_->encoding().name;
}

EditJournal::Left EditJournal::findLeft() {
    if (!state_)
        return Left::Nothing;
    left_ = files_.leftLog(path_);
    if (!left_ || left_->records.size() < 2) {
        left_.reset(); // nothing had been typed
        return Left::Nothing;
    }
    const std::string& head = left_->records.front();
    return head.size() >= stampSize && head.starts_with(headOf(*state_, "")) ? Left::Fitting : Left::Outdated;
}

bool EditJournal::restore(const std::shared_ptr<text::TextDocument>& document) {
    const text::CodePages& pages = files_.codePages();
    LeftLog left = std::exchange(left_, std::nullopt).value();
    document_ = document;
    base_ = top_ = 0;
    hasSameSteps_ = true;
    encoding_ = left.records.front().substr(stampSize);
    bool isWhole = encoding_ == document->encoding().name ||
                   repeat(*document, {.kind = EditRecord::Kind::Encoding, .inserted = encoding_}, pages);
    std::vector<EditRecord> repeated;
    for (std::size_t i = 1; isWhole && i < left.records.size(); ++i) {
        const auto record = text::decodeRecord(left.records[i]);
        isWhole = record && repeat(*document, *record, pages);
        if (!isWhole)
            break;
        if (record->kind == EditRecord::Kind::Splice || record->kind == EditRecord::Kind::Encoding)
            top_ = document->undoDepth();
        repeated.push_back(*record);
    }
    if (isWhole) {
        log_ = std::move(left.log);
        return true;
    }
    // One goes on from what could be repeated.
    for (const EditRecord& record : repeated)
        put(record);
    return false;
}

} // namespace genutil
