#include "platform/qt/dialogs.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QKeyEvent>
#include <QMessageBox>
#include <QScreen>
#include <QWindow>

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

// A question that is answered by Yes or No has no third way out: Escape and the close box do nothing. With
// one button, Escape presses it; where there is Cancel, Escape is that.
class MessageBox : public StackDialog<QMessageBox> {
public:
    using StackDialog<QMessageBox>::StackDialog;

    void reject() override {
        if (!isYesOrNo())
            QMessageBox::reject();
    }

protected:
    void closeEvent(QCloseEvent* event) override {
        if (isYesOrNo())
            event->ignore();
        else
            QMessageBox::closeEvent(event);
    }
    // The letter of a button answers at once. The toolkit would wait for a tenth of a second, in which Enter
    // gives another answer.
    void keyPressEvent(QKeyEvent* event) override {
        for (QAbstractButton* button : buttons())
            if (const QKeySequence letter = button->shortcut();
                !letter.isEmpty() && event->modifiers() == Qt::NoModifier && letter[0].key() == event->key())
                return button->click();
        if (!isYesOrNo() || !event->matches(QKeySequence::Cancel))
            QMessageBox::keyPressEvent(event);
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* const button = qobject_cast<QAbstractButton*>(watched);
        if (!button || event->type() != QEvent::Shortcut)
            return QMessageBox::eventFilter(watched, event);
        button->click();
        return true;
    }

private:
    bool isYesOrNo() const { return standardButtons() == (QMessageBox::Yes | QMessageBox::No); }
};

QString anyCase(const QString& pattern) {
    QString result;
    for (const QChar c : pattern)
        result += c.toLower() == c.toUpper() ? QString(c)
                                             : QStringLiteral("[%1%2]").arg(c.toLower()).arg(c.toUpper());
    return result;
}

} // namespace

Answer showMessage(const Message& message) {
    MessageBox box(nullptr, toQt(message.icon), QString::fromStdString(message.title),
        QString::fromStdString(message.text), toQt(message.buttons));
    box.setTextFormat(Qt::PlainText);
    box.setObjectName(QStringLiteral("message"));
    // A minimized question would look like a program that hangs.
    const bool hasWayOut = message.buttons != Buttons::YesNo;
    box.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       (hasWayOut ? Qt::WindowCloseButtonHint : Qt::WindowType()));
    for (QAbstractButton* button : box.buttons())
        button->installEventFilter(&box);
    for (const AnswerButton& each : answerButtons)
        if (each.answer == message.defaultAnswer && box.button(each.button))
            box.setDefaultButton(each.button);
    const int pressed = box.exec();
    for (const AnswerButton& each : answerButtons)
        if (each.button == pressed)
            return each.answer;
    // Only a box that ended with the application has no pressed button. What a question of Yes and No
    // proposes is what loses nothing.
    return message.buttons == Buttons::Ok      ? Answer::Ok
           : message.buttons == Buttons::YesNo ? message.defaultAnswer
                                               : Answer::Cancel;
}

void placeAbove(QWidget& dialog, const QWidget* owner) {
    const QWidget* const window = owner ? owner->window() : nullptr;
    if (!window || !window->windowHandle() || !dialog.windowHandle())
        return;
    dialog.windowHandle()->setTransientParent(window->windowHandle());
    const QRect screen = window->screen()->availableGeometry();
    QRect place = dialog.frameGeometry();
    place.moveCenter(window->frameGeometry().center());
    dialog.move(std::clamp(place.x(), screen.left(), std::max(screen.left(), screen.right() - place.width())),
        std::clamp(place.y(), screen.top(), std::max(screen.top(), screen.bottom() - place.height())));
}

bool mayReplaceFile(const QString& file) {
    return !QFileInfo::exists(file) ||
           showMessage({.text = "'" + file.toStdString() + "' exists already. Replace it?",
               .icon = Icon::Question,
               .buttons = Buttons::YesNo,
               .defaultAnswer = Answer::No}) == Answer::Yes;
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
    StackDialog<QFileDialog> box(owner);
    box.setObjectName(QStringLiteral("files"));
    box.setWindowTitle(!dialog.title.empty() ? QString::fromStdString(dialog.title)
                       : opens               ? QFileDialog::tr("Open")
                                             : QFileDialog::tr("Save As"));
    box.setAcceptMode(opens ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
    box.setFileMode(opens ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    box.setOption(QFileDialog::HideNameFilterDetails); // the descriptions name the patterns
    box.setOption(QFileDialog::DontConfirmOverwrite);  // its question could be closed unanswered
    const QStringList filters = toNameFilters(dialog.filter);
    if (!filters.isEmpty()) {
        box.setNameFilters(filters);
        box.selectNameFilter(filters[std::clamp<qsizetype>(dialog.filterIndex - 1, 0, filters.size() - 1)]);
    }
    if (!dialog.folder.empty())
        box.setDirectory(QString::fromStdString(dialog.folder));
    if (!dialog.fileName.empty())
        box.selectFile(QString::fromStdString(dialog.fileName));
    do {
        if (box.exec() != QDialog::Accepted || box.selectedFiles().isEmpty())
            return false;
    } while ((dialog.flags & dialogflags::OverwritePrompt) && !mayReplaceFile(box.selectedFiles().front()));
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
    StackDialog<QInputDialog> box(owner);
    box.setObjectName(QStringLiteral("prompt"));
    box.setWindowTitle(QString::fromStdString(prompt.title));
    box.setLabelText(QString::fromStdString(prompt.label));
    box.setTextValue(QString::fromStdString(prompt.text));
    if (box.exec() != QDialog::Accepted)
        return std::nullopt;
    return box.textValue().toStdString();
}

} // namespace genutil
