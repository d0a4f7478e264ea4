#include "fileview/edit_journal.h"
#include "support/viewer.h"

#include <gmock/gmock.h>

#include <random>

using namespace genutil;
using fake::type;
using fake::Viewer;
using fake::wholeText;
using testing::HasSubstr;
using testing::IsEmpty;
using text::TextDocument;

namespace {

std::string everything(const TextDocument& document) {
    return document.bytes(0, document.size());
}

// A user who edits, undoes, saves and chooses encodings, and a process that is killed at any moment.
class Typist {
public:
    Typist(fake::FakeFiles& files, unsigned seed) : files_(files), chance_(seed) {
        files.put("/a.log", "one\r\ntwo\nthree \xE4\r\r\nfour\n");
        open();
    }
    const TextDocument& document() const { return *document_; }

    void act() {
        switch (chance_() % 12) {
        case 0:
        case 1:
            return note(document_->undo());
        case 2:
            return note(document_->redo());
        case 3:
            document_->endUndoStep();
            return;
        case 4:
            if (chance_() % 3 == 0)
                save();
            return;
        case 5:
            if (chance_() % 4 == 0)
                changeEncoding();
            return;
        default:
            return edit();
        }
    }
    // As the next process finds the file.
    void dieAndReturn() {
        const std::string before = everything(*document_);
        files_.processIsKilled = true;
        journal_.reset();
        files_.processIsKilled = false;
        const bool wasEdited = files_.logs.contains("/a.log");
        open();
        ASSERT_EQ(journal_->findLeft(), wasEdited ? EditJournal::Left::Fitting : EditJournal::Left::Nothing);
        if (!wasEdited)
            return; // a chosen encoding alone is no change
        EXPECT_TRUE(journal_->restore(document_));
        ASSERT_EQ(everything(*document_), before);
    }

private:
    void open() {
        document_ = std::make_shared<TextDocument>(TextDocument::fromBytes(files_.bytesOf("/a.log")));
        journal_ = std::make_unique<EditJournal>(files_);
        journal_->follow("/a.log", files_.stampOf("/a.log"), document_);
        caret_ = {};
    }
    void note(const std::optional<text::TextChange>& change) {
        if (!change)
            return;
        caret_ = change->newEnd;
        journal_->noteEdit(*document_);
    }
    void edit() {
        static constexpr const char* typed[] = {"a", "b", "\n", "\r", "\xC3\xA4", "word ", "", "", "x\r\ny"};
        const auto place = [this] { return document_->positionAt(chance_() % (document_->size() + 1)); };
        text::TextRange range{caret_, caret_};
        if (chance_() % 3 == 0)
            range = {place(), place()};
        if (range.to < range.from)
            std::swap(range.from, range.to);
        const std::string text = typed[chance_() % std::size(typed)];
        const std::uint64_t size = document_->size();
        const auto change = document_->replace(range, text, TextDocument::Joining(chance_() % 4 != 0));
        if (!text.empty() || document_->size() != size)
            note(change);
    }
    void save() {
        std::string bytes;
        document_->write([&](std::string_view more) { bytes += more; });
        files_.put("/a.log", bytes);
        document_->markSaved();
        journal_->follow("/a.log", files_.stampOf("/a.log"), document_);
    }
    void changeEncoding() {
        const auto encoding = chance_() % 2 ? text::encodings::windows1252 : text::encodings::utf8;
        try {
            document_ =
                std::make_shared<TextDocument>(document_->reinterpreted(encoding, files_.codePages()));
            journal_->noteEncoding(document_);
        } catch (const text::UnencodableCharacter&) {
        }
    }

    fake::FakeFiles& files_;
    std::mt19937 chance_;
    std::shared_ptr<TextDocument> document_;
    std::unique_ptr<EditJournal> journal_;
    text::TextPosition caret_;
};

TEST(EditJournal, WhateverHasBeenDoneIsThereAgainAfterTheProcessWasKilled) {
    for (unsigned seed = 0; seed < 60 && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        fake::FakeFiles files;
        Typist typist(files, seed);
        for (int round = 0; round < 8; ++round) {
            for (unsigned i = 0; i < 5 + seed; ++i)
                typist.act();
            typist.dieAndReturn();
        }
    }
}

// Undoing what has brought a CR and an LF together is noted as this, once the text has been saved.
TEST(EditJournal, ARepeatedEditMayPartALineEndAndMustLieInTheText) {
    TextDocument document = TextDocument::fromBytes("one\r\ntwo");
    const auto repeats = [&](const text::EditRecord& record) {
        return repeat(document, record, text::basicCodePages());
    };
    EXPECT_TRUE(repeats({.offset = 4, .inserted = "X"}));
    EXPECT_EQ(everything(document), "one\rX\ntwo");
    EXPECT_EQ(document.lineCount(), 3u);
    EXPECT_TRUE(repeats({.kind = text::EditRecord::Kind::Undo}));
    EXPECT_EQ(document.lineCount(), 2u);
    EXPECT_FALSE(repeats({.offset = 9, .inserted = "X"}));
    EXPECT_FALSE(repeats({.offset = 8, .removed = ~std::uint64_t{0}}));
    EXPECT_FALSE(repeats({.kind = text::EditRecord::Kind::Encoding, .inserted = "none such"}));
    EXPECT_EQ(everything(document), "one\r\ntwo");
}

struct Unsaved : Viewer {
    const std::string path = file("a.log", "one\ntwo\n");

    // A viewer that is killed with its process.
    void typeAndDie(const std::string& text) {
        frmFileView& form = view(25, path);
        type(form, text);
        files.processIsKilled = true;
        form.journal.forget();
        files.processIsKilled = false;
        desktop.answers = {Answer::No};
        form.unload();
        desktop.messages.clear();
    }
};

TEST_F(Unsaved, ChangesAreOfferedWhenTheFileIsOpenedAgainUntilTheyAreSaved) {
    typeAndDie("zero ");
    frmFileView& form = view(25, path);
    ASSERT_EQ(desktop.messages.size(), 1u);
    EXPECT_EQ(desktop.messages[0].text,
        "Changes to " + path + " were not saved when the program ended.\nRestore them ?");
    EXPECT_EQ(wholeText(form), "zero one\ntwo\n");
    EXPECT_TRUE(form.isModified() && form.mnu_Save.enabled);
    EXPECT_EQ(files.logs.size(), 1u) << "still not saved";
    form.rtbViewText.userUndo();
    EXPECT_EQ(wholeText(form), "one\ntwo\n");
    form.rtbViewText.userRedo();
    form.mnu_Save.userChoose();
    EXPECT_THAT(files.logs, IsEmpty());
    EXPECT_EQ(files.bytesOf(path), "zero one\ntwo\n");
}

TEST_F(Unsaved, ChangesAreDroppedByNoAndToldOfWhereTheFileIsAnother) {
    typeAndDie("zero ");
    desktop.answers = {Answer::No};
    EXPECT_EQ(wholeText(view(25, path)), "one\ntwo\n");
    EXPECT_THAT(files.logs, IsEmpty());

    typeAndDie("zero ");
    files.put(path, "another\n");
    frmFileView& form = view(25, path);
    EXPECT_EQ(wholeText(form), "another\n");
    ASSERT_EQ(desktop.messages.size(), 1u);
    EXPECT_THAT(desktop.messages[0].text, HasSubstr("the file has been changed since"));
    EXPECT_FALSE(form.isModified());
    EXPECT_THAT(files.logs, IsEmpty());
}

TEST_F(Unsaved, NothingIsKeptOfAWipedReportNorOfOneThatIsClosed) {
    prog->put(program::WipeAfterView, true);
    frmFileView& wiped = view(25, path);
    type(wiped, "secret ");
    EXPECT_THAT(files.logs, IsEmpty());
    desktop.answers = {Answer::No, Answer::No, Answer::No};
    wiped.unload();

    file("a.log", "one\n");
    prog->put(program::WipeAfterView, false);
    frmFileView& form = view(25, path);
    type(form, "zero ");
    EXPECT_EQ(files.logs.size(), 1u);
    form.unload();
    EXPECT_THAT(files.logs, IsEmpty());
}

TEST_F(Unsaved, AJournalThatCannotBeWrittenIsToldOfOnceAndTheTypingGoesOn) {
    frmFileView& form = view(25, path);
    files.failures.insert({"append", Error(errors::DiskFull, "no room")});
    type(form, "b");
    type(form, "a");
    EXPECT_EQ(wholeText(form), "abone\ntwo\n");
    EXPECT_EQ(std::ranges::count_if(
                  host.log, [](const std::string& call) { return call.starts_with("ReportEventError"); }),
        1);
}

} // namespace
