#pragma once

#include "host/host.h"

#include <QDialog>

class QListWidget;

namespace kestal {

class HelpPage;

/// The help topics: a list and the page of the chosen topic, the manual's or, where it has none, the text of
/// instant help. F6 changes between the two, Escape closes.
class HelpWindow : public QDialog {
public:
    HelpWindow(const Host& host, QWidget* parent);
    /// Chooses a topic; one that does not exist is said to have no help.
    void showTopic(int number);

private:
    void showPage(int number, const HelpTopic* topic);

    HelpTexts texts_;
    QListWidget* topics_;
    HelpPage* page_;
};

/// Opens the help window over the active window, or turns the open one to the topic.
void showHelpWindow(const Host& host, int topic);

} // namespace kestal
