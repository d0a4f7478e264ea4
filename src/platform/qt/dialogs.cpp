#include "platform/qt/dialogs.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>

#include <algorithm>
#include <array>

namespace genutil {
namespace {

QMessageBox::Icon toQt(Icon icon) {
    switch (icon) {
    case Icon::Information:
        return QMessageBox::Information;
    case Icon::Question:
        return QMessageBox::Question;
    case Icon::Exclamation:
        return QMessageBox::Warning;
    case Icon::Critical:
        return QMessageBox::Critical;
    case Icon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

struct AnswerButton {
    Answer answer;
    QMessageBox::StandardButton button;
};

constexpr std::array answerButtons{
    AnswerButton{Answer::Ok, QMessageBox::Ok},
    AnswerButton{Answer::Cancel, QMessageBox::Cancel},
    AnswerButton{Answer::Yes, QMessageBox::Yes},
    AnswerButton{Answer::No, QMessageBox::No},
};

QMessageBox::StandardButtons toQt(Buttons buttons) {
    switch (buttons) {
    case Buttons::OkCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    case Buttons::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case Buttons::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case Buttons::Ok:
        break;
    }
    return QMessageBox::Ok;
}

QString anyCase(const QString& pattern) {
    QString result;
    for (const QChar c : pattern)
        result += c.toLower() == c.toUpper() ? QString(c)
                                             : QStringLiteral("[%1%2]").arg(c.toLower()).arg(c.toUpper());
    return result;
}

} // namespace

Answer showMessage(const Message& message) {
    QMessageBox box(toQt(message.icon), QString::fromStdString(message.title),
        QString::fromStdString(message.text), toQt(message.buttons), QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    box.setObjectName(QStringLiteral("message"));
    for (const AnswerButton& each : answerButtons)
        if (each.answer == message.defaultAnswer && box.button(each.button))
            box.setDefaultButton(each.button);
    const int pressed = box.exec();
    for (const AnswerButton& each : answerButtons)
        if (each.button == pressed)
            return each.answer;
    // Only a box that the application took away has no pressed button.
    return message.buttons == Buttons::Ok      ? Answer::Ok
           : message.buttons == Buttons::YesNo ? Answer::No
                                               : Answer::Cancel;
}

QStringList toNameFilters(const std::string& filter) {
    const QStringList pieces = QString::fromStdString(filter).split(QLatin1Char('|'));
    QStringList filters;
    for (qsizetype i = 0; i + 1 < pieces.size(); i += 2) {
        QStringList patterns;
        for (const QString& pattern : pieces[i + 1].split(QLatin1Char(';'), Qt::SkipEmptyParts))
            // Names without a dot are files too.
            patterns << (pattern.trimmed() == QLatin1String("*.*") ? QStringLiteral("*")
                                                                   : anyCase(pattern.trimmed()));
        filters << pieces[i].trimmed() + QStringLiteral(" (") + patterns.join(QLatin1Char(' ')) +
                       QLatin1Char(')');
    }
    return filters;
}

bool showFileDialog(QWidget* owner, FileDialog& dialog, FileDialogKind kind) {
    const bool opens = kind == FileDialogKind::Open;
    QFileDialog box(owner ? owner : QApplication::activeWindow());
    box.setObjectName(QStringLiteral("files"));
    box.setWindowTitle(!dialog.title.empty() ? QString::fromStdString(dialog.title)
                       : opens               ? QFileDialog::tr("Open")
                                             : QFileDialog::tr("Save As"));
    box.setAcceptMode(opens ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
    box.setFileMode(opens ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    box.setOption(QFileDialog::HideNameFilterDetails); // the descriptions name the patterns
    box.setOption(QFileDialog::DontConfirmOverwrite, !(dialog.flags & dialogflags::OverwritePrompt));
    const QStringList filters = toNameFilters(dialog.filter);
    if (!filters.isEmpty()) {
        box.setNameFilters(filters);
        box.selectNameFilter(filters[std::clamp<qsizetype>(dialog.filterIndex - 1, 0, filters.size() - 1)]);
    }
    if (!dialog.folder.empty())
        box.setDirectory(QString::fromStdString(dialog.folder));
    if (!dialog.fileName.empty())
        box.selectFile(QString::fromStdString(dialog.fileName));
    if (box.exec() != QDialog::Accepted || box.selectedFiles().isEmpty())
        return false;
    const QFileInfo chosen(box.selectedFiles().front());
    dialog.fileName = chosen.absoluteFilePath().toStdString();
    dialog.folder = chosen.absolutePath().toStdString();
    // The toolkit's own dialog names the filter without its patterns, another with them.
    const QString selected = box.selectedNameFilter();
    const auto filter = std::ranges::find_if(filters, [&](const QString& each) {
        return each == selected || each.startsWith(selected + QLatin1String(" ("));
    });
    if (filter != filters.end())
        dialog.filterIndex = int(filter - filters.begin()) + 1;
    return true;
}

std::optional<std::string> showTextPrompt(QWidget* owner, const TextPrompt& prompt) {
    QInputDialog box(owner ? owner : QApplication::activeWindow());
    box.setObjectName(QStringLiteral("prompt"));
    box.setWindowTitle(QString::fromStdString(prompt.title));
    box.setLabelText(QString::fromStdString(prompt.label));
    box.setTextValue(QString::fromStdString(prompt.text));
    if (box.exec() != QDialog::Accepted)
        return std::nullopt;
    return box.textValue().toStdString();
}

} // namespace genutil
