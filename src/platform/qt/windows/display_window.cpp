#include "platform/qt/windows/display_window.h"

#include "platform/qt/form/bind.h"
#include "platform/qt/form/button_row.h"
#include "platform/qt/form/group_box.h"
#include "platform/qt/windows/line_sample_view.h"

#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>

namespace genutil {
namespace {

constexpr int margin = 10, gap = 8, rowGap = 3, indent = 20; // pixels
enum Column { Box, Sample, Text };

// The colours of lines are meant for the dark ground of a plot.
void makeDark(QFrame* picture) {
    QPalette dark;
    dark.setColor(QPalette::Window, Qt::black);
    picture->setPalette(dark);
    picture->setAutoFillBackground(true);
    picture->setFrameStyle(QFrame::Panel | QFrame::Sunken);
}

class Builder {
public:
    Builder(frmDisplay& form, QWidget* contents) : form_(form), contents_(contents) {}

    QGroupBox* frame(DisplayFrame frame) {
        auto* const box = new QGroupBox(contents_);
        bind(box, form_.frameOf(frame));
        auto* const grid = new QGridLayout(box);
        grid->setContentsMargins(margin, 6, margin, 8);
        grid->setVerticalSpacing(rowGap);
        int row = 0;
        for (std::size_t i = 0; i < form_.boxes.size(); ++i) {
            const DisplayBox& each = displayBoxes()[i];
            if (each.frame != frame)
                continue;
            addBox(grid, row, i);
            if (each.legend.control)
                addSample(grid, row, each.legend.control);
            ++row;
            if (form_.boxes[i].name() == "chkRefLines")
                addArrow(grid, row++);
        }
        if (frame == DisplayFrame::Lines)
            addPicture(grid, row);
        grid->setRowStretch(row, 1);
        return box;
    }

    QFrame* buttons(QWidget* parent) {
        auto* const panel = new QFrame(parent);
        bind(panel, form_.pnlButtons);
        auto* const row = makeButtonRow(panel, form_.pnlHelp, {&form_.cmdOK, &form_.cmdCancel});
        row->setContentsMargins(0, 0, 0, 0);
        panel->setLayout(row);
        for (Panel* const bare : {&form_.pnlButtons, &form_.pnlHelp})
            forwardMouse(panel, *bare, form_);
        return panel;
    }

private:
    void addBox(QGridLayout* grid, int row, std::size_t i) {
        CheckBox& model = form_.boxes[i];
        Panel& frame = form_.frameOf(displayBoxes()[i].frame);
        auto* const check = new QCheckBox(grid->parentWidget());
        bind(check, model);
        check->setAccessibleDescription(check->toolTip());
        // What follows from the box above it stands indented.
        const bool depends = &model == &form_.chkScaleDefault;
        auto* const line = new QHBoxLayout;
        line->addSpacing(depends ? indent : 0);
        line->addWidget(check);
        line->addStretch(1);
        grid->addLayout(line, row, Box);
        if (depends)
            check->setAccessibleName(check->accessibleName() + QStringLiteral(" of the scale bar"));
        if (model.helpContextId == frame.helpContextId)
            forwardMouse(check, model, frame);
    }

    void addStroke(QGridLayout* grid, int row, LineSample& model, LineSampleView::Stroke stroke) {
        auto* const view = new LineSampleView(grid->parentWidget(), stroke);
        bind(view, model);
        grid->addWidget(view, row, Sample);
    }

    void addSample(QGridLayout* grid, int row, const char* name) {
        addStroke(
            grid, row, *static_cast<LineSample*>(form_.findControl(name)), LineSampleView::Stroke::Line);
    }

    void addText(QGridLayout* grid, int row, Label& model) {
        auto* const label = new QLabel(grid->parentWidget());
        bind(label, model);
        label->setAttribute(Qt::WA_TransparentForMouseEvents);
        QPalette light;
        light.setColor(QPalette::WindowText, Qt::white);
        label->setPalette(light);
        label->setContentsMargins(0, 0, gap, 0);
        grid->addWidget(label, row, Text);
    }

    // The two ways in which a reference is drawn: the dashed line of the row above, and the arrow.
    void addArrow(QGridLayout* grid, int row) {
        using enum LineSampleView::Stroke;
        addText(grid, row - 1, form_.lblKnownPoint);
        addText(grid, row, form_.lblBearing);
        std::size_t i = 0;
        for (const auto stroke : {Line, UpperBarb, LowerBarb})
            addStroke(grid, row, form_.arrow[i++], stroke);
    }

    // Behind the samples, which stand in the rows of their boxes.
    void addPicture(QGridLayout* grid, int rows) {
        auto* const picture = new QFrame(grid->parentWidget());
        picture->setAccessibleName(QStringLiteral("Legend of the lines"));
        bind(picture, form_.Picture1);
        makeDark(picture);
        grid->addWidget(picture, 0, Sample, rows, 2);
        picture->lower();
        grid->setHorizontalSpacing(0);
    }

    frmDisplay& form_;
    QWidget* contents_;
};

} // namespace

DisplayWindow::DisplayWindow(const std::shared_ptr<frmDisplay>& form) : FormWindow(form) {
    setFixed();
    auto* const column = new QVBoxLayout(contents());
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(gap);
    QWidget* const part = addScrolledPart(column);
    Builder build(*form, part);
    auto* const frames = new QHBoxLayout(part);
    frames->setContentsMargins(0, 0, 0, 0);
    frames->setSpacing(gap);
    for (const DisplayFrame frame : {DisplayFrame::Points, DisplayFrame::Lines, DisplayFrame::General})
        frames->addWidget(build.frame(frame));
    column->addWidget(build.buttons(contents()));
}

} // namespace genutil
