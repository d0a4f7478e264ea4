#pragma once

#include "host/help_texts.h"

#include <QDialog>

class QLabel;
class QListWidget;
class QPlainTextEdit;

namespace kestal {

/// The help topics: a list and the text of the chosen topic. F6 changes between the two, Escape closes.
class HelpWindow : public QDialog {
public:
    HelpWindow(const HelpTexts& texts, QWidget* parent);
    /// Chooses a topic; one that does not exist is said to have no help.
    void showTopic(int number);

private:
    QWidget* makePage();
    void showText(const QString& title, const QString& text);

    HelpTexts texts_;
    QListWidget* topics_;
    QLabel* title_;
    QPlainTextEdit* text_;
};

/// Opens the help window over the active window, or turns the open one to the topic.
void showHelpWindow(const HelpTexts& texts, int topic);

} // namespace kestal
