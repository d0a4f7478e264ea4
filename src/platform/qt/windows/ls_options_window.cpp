#include "platform/qt/windows/ls_options_window.h"

#include "platform/qt/fonts.h"
#include "platform/qt/form/bind.h"
#include "platform/qt/form/button_row.h"
#include "platform/qt/form/group_box.h"
#include "platform/qt/form/number_box.h"
#include "platform/qt/windows/decimal_column.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>

#include <algorithm>
#include <map>

namespace genutil {
namespace {

// The columns of the standard deviations.
enum Column {
    Caption,
    Deviation,
    DeviationUnit,
    Plus,
    PerMillion,
    PartsUnit,
    FirstCentring,
    FirstUnit,
    SecondCentring,
    SecondUnit
};

constexpr int unitGap = 5, columnGap = 12, rowGap = 4, groupGap = 8, margin = 10; // pixels

// A unit as the option table names it, as a caption ends with it, as it stands beside a box, and as it is
// spoken.
struct Unit {
    const char* name;
    const char* inCaption;
    const char* besideBox;
    const char* spoken;
};
constexpr std::array units{Unit{"seconds", " (secs)", "secs", "seconds"}, Unit{"m", " (m)", "m", "metres"},
    Unit{"ppm", " (PPM)", "PPM", "parts per million"}, Unit{"%", " %", "%", "per cent"}};

// Null where the unit goes without saying.
const Unit* unitOf(int option) {
    const auto unit = std::ranges::find(units, std::string_view(lsOption(option).unit), &Unit::name);
    return unit == units.end() ? nullptr : unit;
}

// A caption without the unit at its end.
QString wordsOf(const char* caption) {
    QString words = QString::fromUtf8(caption);
    for (const Unit& unit : units)
        if (words.endsWith(QLatin1String(unit.inCaption)))
            words.chop(int(std::string_view(unit.inCaption).size()));
    return words;
}

// The spoken name of an option: words that tell it from its neighbours, and the unit.
QString spokenName(QStringList words, int option) {
    if (const Unit* const unit = unitOf(option))
        words += QLatin1String(unit->spoken);
    return words.join(QLatin1String(", "));
}

// Puts the controls of one form into its groups.
class Builder {
public:
    Builder(frmLS_Options& form, QWidget* contents) : form_(form), contents_(contents) {}

    // The frame's box with an empty grid in it.
    QGridLayout* makeGroup(const char* caption) {
        auto* box = new QGroupBox(QString::fromUtf8(caption), contents_);
        box->setFont(toQFont(form_.font));
        auto* grid = new QGridLayout(box);
        grid->setContentsMargins(margin, 6, margin, 8);
        grid->setHorizontalSpacing(unitGap);
        grid->setVerticalSpacing(rowGap);
        return grid;
    }

    QWidget* control(int option, const QString& spoken) {
        switch (lsOption(option).kind) {
        case LSControl::Box:
            return bound(new NumberBox(contents_), form_.boxOf(option), spoken);
        case LSControl::Check: {
            auto* check = new QCheckBox(contents_);
            bind(check, form_.checkOf(option));
            return check;
        }
        default:
            return list(option, spoken);
        }
    }

    QLabel* caption(const char* name) {
        auto* label = new QLabel(contents_);
        bind(label, *static_cast<Label*>(form_.findControl(name)));
        label->setContentsMargins(0, 0, columnGap - unitGap, 0);
        return label;
    }

    QLabel* text(const char* words) {
        auto* label = new QLabel(QString::fromUtf8(words), contents_);
        label->setFont(toQFont(form_.font));
        return label;
    }

    // Puts a box, and its unit into the next column.
    void put(QGridLayout* grid, int row, int column, int option, const QStringList& spoken) {
        QWidget* const view = control(option, spokenName(spoken, option));
        grid->addWidget(view, row, column);
        if (auto* const box = dynamic_cast<NumberBox*>(view))
            numbersOf(grid, column).add(box, form_.boxOf(option));
        if (const Unit* const unit = unitOf(option); unit && lsOption(option).kind == LSControl::Box)
            putText(grid, row, column + 1, unit->besideBox, form_.boxOf(option).enabled);
    }

    void putText(QGridLayout* grid, int row, int column, const char* words, bool isEnabled) {
        QLabel* const label = text(words);
        label->setContentsMargins(0, 0, columnGap - unitGap, 0);
        label->setEnabled(isEnabled);
        grid->addWidget(label, row, column);
    }

    // A row of a caption and its control.
    void addRow(QGridLayout* grid, int row, const LSCaption& each, const QStringList& spoken) {
        auto* const label = caption(each.label);
        grid->addWidget(label, row, Caption);
        put(grid, row, Caption + 1, each.option, spoken);
        label->setBuddy(grid->itemAtPosition(row, Caption + 1)->widget());
    }

private:
    template<class View, class Model>
    static View* bound(View* view, Model& model, const QString& spoken) {
        view->setAccessibleName(spoken);
        bind(view, model);
        return view;
    }

    // Instant help hears of the mouse over a list from the list's label.
    QWidget* list(int option, const QString& spoken) {
        ComboBox& model = form_.listOf(option);
        auto* view = bound(new QComboBox(contents_), model, spoken);
        const std::string labelName = "lblDummyC" + model.name().substr(1);
        if (Control* const label = form_.findControl(labelName))
            forwardMouse(view, model, *label);
        return view;
    }

    // The boxes of a grid's column.
    DecimalColumn& numbersOf(QGridLayout* grid, int column) {
        DecimalColumn*& numbers = numbers_[{grid, column}];
        if (!numbers)
            numbers = new DecimalColumn(contents_);
        return *numbers;
    }

    frmLS_Options& form_;
    QWidget* contents_;
    std::map<std::pair<QGridLayout*, int>, DecimalColumn*> numbers_;
};

void addHeadings(
    Builder& build, QGridLayout* grid, int row, const char* first, const char* second, bool isEnabled) {
    build.putText(grid, row, FirstCentring, first, isEnabled);
    build.putText(grid, row, SecondCentring, second, isEnabled);
    for (const int column : {FirstCentring, SecondCentring})
        grid->itemAtPosition(row, column)->setAlignment(Qt::AlignHCenter | Qt::AlignBottom);
}

void addObservation(Builder& build, QGridLayout* grid, int row, const LSObservation& each) {
    auto* const caption = build.caption(each.label);
    const QString words = wordsOf(each.caption);
    const auto put = [&](int option, Column column, const char* part) {
        build.put(grid, row, column, option, {words, QLatin1String(part)});
    };
    grid->addWidget(caption, row, Caption);
    if (each.perMillion == 0) {
        put(each.deviation, Deviation, "observation error");
    } else {
        put(each.deviation, Deviation, "observation error, constant");
        build.putText(grid, row, Plus, "+", caption->isEnabled());
        put(each.perMillion, PerMillion, "observation error");
    }
    put(each.firstCentring, FirstCentring, each.isSpatial ? "horizontal centring" : "instrument centring");
    put(each.secondCentring, SecondCentring, each.isSpatial ? "vertical centring" : "target centring");
}

// The table of the standard deviations, and what belongs to it below.
QWidget* makeDeviations(Builder& build, const frmLS_Options& form, const LSGroup& group) {
    QGridLayout* const grid = build.makeGroup(group.caption);
    int row = 0;
    grid->addWidget(
        build.text("Observation errors"), row, Deviation, 1, PartsUnit - Caption, Qt::AlignHCenter);
    grid->addWidget(
        build.text("Centering (m)"), row++, FirstCentring, 1, SecondUnit - PartsUnit, Qt::AlignHCenter);
    addHeadings(build, grid, row++, "Instrument", "Target", true);
    bool spatial = false;
    for (const LSObservation& each : lsObservations()) {
        if (each.isSpatial && !std::exchange(spatial, true))
            addHeadings(build, grid, row++, "Horizontal", "Vertical", form.findControl(each.label)->enabled);
        addObservation(build, grid, row++, each);
    }
    grid->setRowMinimumHeight(row++, rowGap);
    for (const LSCaption& each : group.options)
        build.addRow(grid, row++, each, {wordsOf(each.caption)});
    for (const int option : group.checks)
        grid->addWidget(build.control(option, {}), row++, Caption, 1, -1, Qt::AlignLeft);
    grid->setRowStretch(row, 1);
    grid->setColumnStretch(Caption, 1);
    return grid->parentWidget();
}

QWidget* makeLimits(Builder& build, const LSGroup& group) {
    QGridLayout* const grid = build.makeGroup(group.caption);
    int row = 0;
    for (const LSCaption& each : group.options)
        build.addRow(grid, row++, each, {wordsOf(group.caption), wordsOf(each.caption)});
    grid->setColumnStretch(Caption, 1);
    grid->setRowStretch(row, 1);
    return grid->parentWidget();
}

// The lists one below the other, the check boxes in two columns beside them.
QWidget* makeGeneral(Builder& build, const LSGroup& group) {
    constexpr int firstGap = Caption + 2, firstChecks = firstGap + 1;
    QGridLayout* const grid = build.makeGroup(group.caption);
    int row = 0;
    for (const LSCaption& each : group.options)
        build.addRow(grid, row++, each, {wordsOf(each.caption)});
    const int rows = int(group.checks.size() + 1) / 2;
    for (std::size_t i = 0; i < group.checks.size(); ++i)
        grid->addWidget(build.control(group.checks[i], {}), int(i) % rows, firstChecks + 2 * (int(i) / rows),
            Qt::AlignLeft);
    grid->setColumnMinimumWidth(firstGap, columnGap);
    grid->setColumnStretch(firstGap, 1);
    grid->setColumnStretch(firstChecks + 1, 1);
    return grid->parentWidget();
}

} // namespace

LSOptionsWindow::LSOptionsWindow(const std::shared_ptr<frmLS_Options>& form) : FormWindow(form) {
    setFixed();
    auto* const window = new QVBoxLayout(contents());
    window->setContentsMargins(margin, margin, margin, margin);
    window->setSpacing(groupGap);
    QWidget* const part = addScrolledPart(window);
    Builder build(*form, part);
    auto* column = new QVBoxLayout(part);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(groupGap);
    auto* upper = new QHBoxLayout;
    auto* limits = new QVBoxLayout;
    upper->setSpacing(groupGap);
    limits->setSpacing(groupGap);
    column->addLayout(upper);
    for (const LSGroup& group : lsGroups())
        switch (group.frame) {
        case LSFrame::Deviations:
            upper->addWidget(makeDeviations(build, *form, group));
            upper->addLayout(limits);
            break;
        case LSFrame::General:
            column->addWidget(makeGeneral(build, group));
            break;
        default:
            limits->addWidget(makeLimits(build, group), int(group.options.size()));
        }
    QHBoxLayout* const buttons =
        makeButtonRow(contents(), form->pnlHelp, {&form->cmdOK, &form->cmdCancel, &form->cmdDefaults});
    auto* const understood = new QLabel(contents());
    understood->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // never makes the window wider
    bind(understood, form->lblUnderstood);
    buttons->insertWidget(0, understood, 1);
    window->addLayout(buttons);
}

} // namespace genutil
