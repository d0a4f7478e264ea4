#pragma once

#include "hostif/control.h"
#include "hostif/record_log.h"
#include "text/byte_stream.h"
#include "text/encoding.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace genutil {

class MenuItem;
class Printer;
struct PrintDialog;

enum class Pointer { Default, Hourglass };

enum class Icon { None, Information, Question, Exclamation, Critical };

enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel };

enum class Answer { Ok, Cancel, Yes, No };

// The title of every message box of the component.
inline constexpr const char* messageTitle = "Kestal utilities";

struct Message {
    std::string text;
    Icon icon = Icon::None;
    Buttons buttons = Buttons::Ok;
    Answer defaultAnswer = Answer::Ok;
    std::string title = messageTitle;
};

// The screen in twips; pixels are the device-independent ones that windows are laid out in.
struct Screen {
    double width = 0;
    double height = 0;
    double twipsPerPixel = 15;
};

// An Open or Save dialog. The filter is "description|patterns|" pieces one after another.
struct FileDialog {
    std::string title;
    std::string filter;
    int filterIndex = 1;
    std::int32_t flags = 0;
    std::string folder;
    std::string fileName; // proposed, then chosen
};

namespace dialogflags {
inline constexpr std::int32_t OverwritePrompt = 2;
inline constexpr std::int32_t HideReadOnly = 4;
inline constexpr std::int32_t KeepFolder = 8;
} // namespace dialogflags

class Clipboard {
public:
    virtual ~Clipboard() = default;
    virtual void clear() = 0;
    virtual void setText(const std::string& text) = 0;
    virtual std::string text() = 0;
};

// A question whose answer is one line of text.
struct TextPrompt {
    std::string title;
    std::string label; // with its access key: "&Line:"
    std::string text;  // proposed, all of it selected
};

// Watches a file until it is destroyed.
class FileWatch {
public:
    virtual ~FileWatch() = default;
};

// The user's desktop: everything that puts something on the screen or asks the user. Called on the
// user-interface thread only.
class Desktop {
public:
    virtual ~Desktop() = default;

    virtual Screen screen() = 0;
    virtual Pointer pointer() = 0;
    virtual void setPointer(Pointer pointer) = 0;

    // The width of one line of text in twips.
    virtual double textWidth(const Font& font, const std::string& text) = 0;
    // Whether every character of the font is equally wide.
    virtual bool isFixedPitch(const Font& font) = 0;

    // Shows the form. Modal: returns when the form has been hidden or has closed. Modeless: returns at once;
    // the desktop keeps the form alive until it closes.
    virtual void show(const std::shared_ptr<Form>& form, bool modal) = 0;
    // Shows the form and returns at once, while every other window waits as for a modal one: for a form whose
    // set-up takes long. show(form, true) then goes on with the same window.
    virtual void showEarly(const std::shared_ptr<Form>& form) = 0;
    virtual void hide(Form& form) = 0;
    // The form has unloaded: takes its window away.
    virtual void close(Form& form) = 0;
    virtual void bringToFront(Form& form) = 0;
    // Paints the control now, without waiting for pending events. A desktop may leave out a painting that the
    // eye could not see because the control was painted less than one screen refresh ago.
    virtual void repaint(Control& control) = 0;
    virtual void doEvents() = 0;

    // Shows the entries of a pop-up menu at the pointer and returns when it has gone; the chosen one has been
    // told by then.
    virtual void popUpMenu(MenuItem& menu) = 0;

    virtual Answer ask(const Message& message) = 0;
    // False when the user cancelled; the dialog is then as it was.
    virtual bool showOpen(Form& owner, FileDialog& dialog) = 0;
    virtual bool showSave(Form& owner, FileDialog& dialog) = 0;
    // Nothing when the user cancelled.
    virtual std::optional<std::string> askText(Form& owner, const TextPrompt& prompt) = 0;
    // Calls `changed`, on the user-interface thread, some time after the file of this name was written to,
    // replaced, removed or made; several changes in a row may be one call.
    virtual std::unique_ptr<FileWatch> watchFile(const std::string& path, std::function<void()> changed) = 0;
    virtual Clipboard& clipboard() = 0;

    // The current printer, which stays chosen while the desktop lives; null when the system has none.
    virtual Printer* printer() = 0;
    // A printer that writes this PDF file; null where the desktop has none.
    virtual std::unique_ptr<Printer> pdfPrinter(const std::string& path) = 0;
    // False when the user cancelled; the dialog is then as it was.
    virtual bool showPrint(Form& owner, PrintDialog& dialog) = 0;
    // Now, in the user's time, in days since 30 December 1899.
    virtual double localTime() = 0;
};

// Sets a pointer for a scope and puts the earlier one back.
class PointerScope {
public:
    PointerScope(Desktop& desktop, Pointer pointer) : desktop_(desktop), earlier_(desktop.pointer()) {
        desktop_.setPointer(pointer);
    }
    ~PointerScope() { desktop_.setPointer(earlier_); }
    PointerScope(const PointerScope&) = delete;
    PointerScope& operator=(const PointerScope&) = delete;

private:
    Desktop& desktop_;
    Pointer earlier_;
};

// Which state of a file a name stands for; equal stamps mean that nothing has been written in between.
struct FileStamp {
    std::uint64_t device = 0;
    std::uint64_t file = 0;
    std::uint64_t size = 0;   // bytes
    std::int64_t written = 0; // nanoseconds since 1970
    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

// A file for the time being; it goes with this object.
class ScratchFile {
public:
    virtual ~ScratchFile() = default;
    virtual const std::string& path() const = 0;
    // Why the file is not where it was asked for; "" when it is there.
    virtual const std::string& whyElsewhere() const = 0;
};

// Files and their character sets, where the standard library alone does not serve. Paths are UTF-8. Errors
// are Error with a number of the product's and a description that names the file and the rule.
class FileSystem {
public:
    virtual ~FileSystem() = default;
    // Overwrites, truncates and removes a regular file. Refuses anything else, symbolic links included.
    // Throws Error with the reason; the file is then as much of its old self as the failed step left.
    virtual void wipeFile(const std::string& path) = 0;

    // Opens a regular file, or a link to one, for reading. Never waits for a pipe or device: anything else is
    // refused with FileNotFound, PathNotFound, PermissionDenied or PathAccess.
    virtual std::unique_ptr<text::ByteSource> openFile(const std::string& path) = 0;

    // Makes the bytes that `write` hands to its sink the contents of the file, which is made when there is
    // none. Whatever fails, and wherever the process or the machine stops, the file holds all of its old
    // bytes or all of its new ones. Keeps mode, owner and further names, and follows symbolic links. What
    // `write` throws passes through, and the file stays as it was.
    virtual void saveFile(
        const std::string& path, const std::function<void(const text::ByteSink& sink)>& write) = 0;
    // Makes `to` hold what `from` holds, with the same promises. Two names of the same file are left alone.
    virtual void copyFile(const std::string& from, const std::string& to) = 0;

    // Nothing when there is no such regular file.
    virtual std::optional<FileStamp> stampOf(const std::string& path) = 0;
    // Makes a file of this name in the current folder, for this user alone, with these contents. Never
    // touches what stands there already, be it a link: where the name is taken, or the folder takes no files,
    // the file is one of a new name in a folder that nobody else writes to.
    virtual std::unique_ptr<ScratchFile> makeScratchFile(const std::string& name, std::string_view bytes) = 0;
    // A new log about the file of this name, which need not exist.
    virtual std::unique_ptr<RecordLog> makeLog(const std::string& about) = 0;
    // The latest one that an ended process has left.
    virtual std::optional<LeftLog> leftLog(const std::string& about) = 0;
    virtual const text::CodePages& codePages() = 0;
};

} // namespace genutil
