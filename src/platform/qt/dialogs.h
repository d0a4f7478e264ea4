#pragma once

#include "hostif/desktop.h"

#include <QApplication>
#include <QPointer>
#include <QShowEvent>
#include <QStringList>
#include <QWidget>

#include <optional>
#include <string>

namespace genutil {

// Puts a dialog that is about to appear above the window and onto its middle; null: the screen's.
void placeAbove(QWidget& dialog, const QWidget* owner);

// A dialog that stands on the stack. It stays above its owner and has no parent: a window that is deleted
// meanwhile would take its child along. Without an owner, the active window is it.
template<class Dialog>
class StackDialog : public Dialog {
public:
    template<class... Args>
    explicit StackDialog(QWidget* owner, Args&&... args)
        : Dialog(std::forward<Args>(args)...), owner_(owner ? owner : QApplication::activeWindow()) {}

protected:
    void showEvent(QShowEvent* event) override {
        Dialog::showEvent(event);
        if (!event->spontaneous())
            placeAbove(*this, owner_);
    }

private:
    QPointer<QWidget> owner_;
};

// Whether a file that is there already may be replaced; asks the user. True where there is none.
bool mayReplaceFile(const QString& file);

Answer showMessage(const Message& message);

enum class FileDialogKind { Open, Save };

// False when the user cancelled; `dialog` is then as it was. A name is chosen with its full path.
bool showFileDialog(QWidget* owner, FileDialog& dialog, FileDialogKind kind);

// Nothing when the user cancelled.
std::optional<std::string> showTextPrompt(QWidget* owner, const TextPrompt& prompt);

// "Log (*.LOG)|*.log|All files|*.*|" as the toolkit's filters, which match names in upper and lower case
// alike.
QStringList toNameFilters(const std::string& filter);

} // namespace genutil
