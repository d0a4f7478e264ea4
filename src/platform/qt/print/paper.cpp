#include "platform/qt/print/paper.h"

#include "hostif/error.h"

#include <QFileInfo>
#include <QPdfWriter>
#include <QSaveFile>
#include <QTemporaryDir>

#include <optional>

namespace genutil {
namespace {

// A PDF document in a file that is put into its place when it is whole.
class Document {
public:
    // `subject` begins the sentence that says what went wrong.
    explicit Document(QString subject) : subject_(std::move(subject)), writer_(&file_) {
        writer_.setResolution(Paper::dotsPerInch);
        writer_.setCreator(QStringLiteral("Kestal"));
    }
    QPdfWriter& writer() { return writer_; }
    QString path() const { return file_.fileName(); }
    void open(const QString& path) {
        file_.setFileName(path);
        if (!file_.open(QIODevice::WriteOnly))
            fail();
    }
    void finish() {
        if (!file_.commit())
            fail();
    }

private:
    [[noreturn]] void fail() {
        throw Error(errors::DeviceError, (subject_ + ": " + file_.errorString()).toStdString());
    }

    QString subject_;
    QSaveFile file_;
    QPdfWriter writer_;
};

class PdfPaper : public Paper {
public:
    explicit PdfPaper(const std::string& path)
        : path_(QString::fromStdString(path)), document_("The PDF file '" + path_ + "' cannot be written") {}
    QPagedPaintDevice& device() override { return document_.writer(); }
    void setTitle(const std::string& title) override {
        document_.writer().setTitle(QString::fromStdString(title));
    }
    void open() override {
        // The rename would put the file into the place of a device or a folder.
        const QFileInfo there(path_);
        if (there.exists() && !there.isFile())
            throw Error(
                errors::PathAccess, "'" + path_.toStdString() + "' is not written: only regular files are");
        document_.open(path_);
    }
    void finish() override { document_.finish(); }

private:
    QString path_;
    Document document_;
};

// The queue is given a document that is whole: a cancelled one leaves no job, and one for which there was no
// room is not printed by half.
class QueuePaper : public Paper {
public:
    QueuePaper(const std::string& printer, JobOptions options)
        : printer_(QString::fromStdString(printer)), options_(std::move(options)),
          document_("The document for the printer '" + printer_ + "' cannot be written") {}
    QPagedPaintDevice& device() override { return document_.writer(); }
    void setTitle(const std::string& title) override {
        // A queue refuses control characters.
        title_ = QString::fromStdString(title).removeIf([](QChar c) { return !c.isPrint(); });
        document_.writer().setTitle(title_);
    }
    void open() override {
        folder_.emplace();
        document_.open(folder_->filePath(QStringLiteral("document.pdf")));
    }
    void finish() override {
        document_.finish();
        sendToQueue(printer_, document_.path(), title_, options_);
    }

private:
    QString printer_;
    JobOptions options_;
    QString title_ = QStringLiteral("Kestal");
    std::optional<QTemporaryDir> folder_;
    Document document_; // goes before its folder
};

} // namespace

std::unique_ptr<Paper> makePdfPaper(const std::string& path) {
    return std::make_unique<PdfPaper>(path);
}

std::unique_ptr<Paper> makeQueuePaper(const std::string& printer, const JobOptions& options) {
    return std::make_unique<QueuePaper>(printer, options);
}

} // namespace genutil
