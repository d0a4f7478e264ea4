#pragma once

#include <QString>
#include <QTextEdit>

namespace kestal {

class CurrentJob;

/// What the open job is, as a page: its texts are shown as they are, never as markup, and a very long one is
/// cut. A detail that the job does not have is a dash.
QString jobPage(const CurrentJob& job);

/// The page of the open job, or that none is open. Text can be selected and copied.
class JobPanel : public QTextEdit {
public:
    JobPanel();
    void showJob(const CurrentJob& job);
};

} // namespace kestal
