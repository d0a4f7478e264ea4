#pragma once

#include "hostif/desktop.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <string>

class QWidget;

namespace genutil {

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
