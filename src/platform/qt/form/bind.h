#pragma once

#include "hostif/controls.h"
#include "hostif/report_text.h"

class QAction;
class QCheckBox;
class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTabWidget;
class QWidget;

namespace genutil {

class GaugeBar;
class Grid;
class GridView;
class ReportView;

// bind(view, model): the view shows the model's state from now on and reports the user's acts to it. The
// view's object name becomes the control's name. A bound view must be a child of the form's window.
void bind(QLabel* view, Label& model);
void bind(QFrame* view, Panel& model);
void bind(QPushButton* view, Button& model);
void bind(QAction* view, MenuItem& model);
void bind(QLineEdit* view, TextBox& model);
void bind(QCheckBox* view, CheckBox& model);
void bind(QRadioButton* view, OptionButton& model);
void bind(QComboBox* view, ComboBox& model);
void bind(QTabWidget* view, Tabs& model); // pages that are missing are added empty
void bind(GaugeBar* view, FloodGauge& model);
void bind(GridView* view, Grid& model);
void bind(ReportView* view, ReportText& model);

// Keeps the view where the control's own place and size are. A height of 0 is the view's natural one.
void place(QWidget* view, Control& model);

// Both.
template<class View, class Model>
View* bindPlaced(View* view, Model& model) {
    bind(view, model);
    place(view, model);
    return view;
}

} // namespace genutil
