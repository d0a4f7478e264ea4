#pragma once

#include "host/reading_problem.h"

#include <QDialog>

#include <vector>

namespace kestal {

/// The job files that could not be read, one line each with the reason. Ctrl+C copies the chosen lines, all
/// where none is chosen.
class ProblemWindow : public QDialog {
public:
    ProblemWindow(const std::vector<ReadingProblem>& problems, QWidget* parent);
};

} // namespace kestal
