#include "platform/qt/ls_options_window.h"

#include "platform/qt/bind.h"
#include "platform/qt/fonts.h"
#include "platform/qt/number_box.h"
#include "platform/qt/tie.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

namespace genutil {
namespace {

// The columns of the standard deviations.
enum Column { Caption, Deviation, Plus, PerMillion, PartsUnit, FirstCentring, SecondCentring };

constexpr int columnGap = 12, rowGap = 4, groupGap = 8, margin = 10; // pixels

// A unit as a caption writes it, and as it is spoken.
struct Unit {
    const char* written;
    const char* spoken;
};
constexpr std::array units{Unit{" (secs)", "seconds"}, Unit{" (m)", "metres"}, Unit{" %", "per cent"}};

// The spoken name of an option: the caption's words, what else tells it from its neighbours, the unit.
QString spokenName(const char* caption, const QString& part, const char* unit = nullptr) {
    QString words = QString::fromUtf8(caption);
    QString spokenUnit = unit ? QString::fromLatin1(unit) : QString();
    for (const Unit& each : units)
        if (words.endsWith(QLatin1String(each.written))) {
            words.chop(int(std::string_view(each.written).size()));
            if (!unit)
                spokenUnit = QLatin1String(each.spoken);
        }
    QStringList pieces{words, part, spokenUnit};
    pieces.removeAll(QString());
    return pieces.join(QStringLiteral(", "));
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
        grid->setHorizontalSpacing(columnGap);
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
        return label;
    }

    QLabel* text(const char* words) {
        auto* label = new QLabel(QString::fromUtf8(words), contents_);
        label->setFont(toQFont(form_.font));
        return label;
    }

    // A row of a caption and its control. Returns the control's view.
    QWidget* addRow(QGridLayout* grid, int row, int column, const LSCaption& each, const QString& spoken) {
        QWidget* const view = control(each.option, spoken);
        auto* const label = caption(each.label);
        label->setBuddy(view);
        grid->addWidget(label, row, column);
        grid->addWidget(view, row, column + 1);
        return view;
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
        if (Control* const label = form_.findControl(labelName)) {
            auto* tie = new Tie(view, *label, [](Aspect) {});
            tie->keep(model.mouseMove.connectScoped([label] { label->mouseMove(); }));
        }
        return view;
    }

    frmLS_Options& form_;
    QWidget* contents_;
};

void addHeadings(Builder& build, QGridLayout* grid, int row, const char* first, const char* second) {
    grid->addWidget(build.text(first), row, FirstCentring, Qt::AlignHCenter | Qt::AlignBottom);
    grid->addWidget(build.text(second), row, SecondCentring, Qt::AlignHCenter | Qt::AlignBottom);
}

void addObservation(Builder& build, QGridLayout* grid, int row, const LSObservation& each) {
    const auto put = [&](int option, Column column, const char* part, const char* unit = nullptr) {
        grid->addWidget(
            build.control(option, spokenName(each.caption, QLatin1String(part), unit)), row, column);
    };
    auto* const caption = build.caption(each.label);
    const auto putText = [&](const char* words, Column column) {
        QLabel* const text = build.text(words);
        text->setEnabled(caption->isEnabled());
        grid->addWidget(text, row, column);
    };
    grid->addWidget(caption, row, Caption);
    if (each.perMillion == 0) {
        put(each.deviation, Deviation, "observation error");
    } else {
        put(each.deviation, Deviation, "observation error, constant");
        putText("+", Plus);
        put(each.perMillion, PerMillion, "observation error", "parts per million");
        putText("PPM", PartsUnit);
    }
    put(each.firstCentring, FirstCentring, each.isSpatial ? "horizontal centring" : "instrument centring",
        "metres");
    put(each.secondCentring, SecondCentring, each.isSpatial ? "vertical centring" : "target centring",
        "metres");
}

// The table of the standard deviations, and what belongs to it below.
QWidget* makeDeviations(Builder& build, const LSGroup& group) {
    QGridLayout* const grid = build.makeGroup(group.caption);
    int row = 0;
    grid->addWidget(build.text("Observation errors"), row, Deviation, 1, 4, Qt::AlignHCenter);
    grid->addWidget(build.text("Centering (m)"), row++, FirstCentring, 1, 2, Qt::AlignHCenter);
    addHeadings(build, grid, row++, "Instrument", "Target");
    bool spatial = false;
    for (const LSObservation& each : lsObservations()) {
        if (each.isSpatial && !std::exchange(spatial, true))
            addHeadings(build, grid, row++, "Horizontal", "Vertical");
        addObservation(build, grid, row++, each);
    }
    grid->setRowMinimumHeight(row++, rowGap);
    for (const LSCaption& each : group.options)
        build.addRow(grid, row++, Caption, each, spokenName(each.caption, {}));
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
        build.addRow(grid, row++, 0, each,
            spokenName(group.caption, QString()) + QLatin1String(", ") + spokenName(each.caption, QString()));
    grid->setColumnStretch(0, 1);
    grid->setRowStretch(row, 1);
    return grid->parentWidget();
}

// The lists one below the other, the check boxes in two columns beside them.
QWidget* makeGeneral(Builder& build, const LSGroup& group) {
    QGridLayout* const grid = build.makeGroup(group.caption);
    int row = 0;
    for (const LSCaption& each : group.options)
        build.addRow(grid, row++, 0, each, spokenName(each.caption, {}));
    const int rows = int(group.checks.size() + 1) / 2;
    for (std::size_t i = 0; i < group.checks.size(); ++i)
        grid->addWidget(
            build.control(group.checks[i], {}), int(i) % rows, 3 + 2 * (int(i) / rows), Qt::AlignLeft);
    grid->setColumnMinimumWidth(2, columnGap);
    grid->setColumnStretch(2, 1);
    grid->setColumnStretch(4, 1);
    return grid->parentWidget();
}

QLayout* makeButtons(QWidget* contents, frmLS_Options& form) {
    auto* row = new QHBoxLayout;
    row->setSpacing(groupGap);
    auto* help = new QFrame(contents);
    bind(help, form.pnlHelp);
    row->addWidget(help, 1);
    for (Button* model : {&form.cmdOK, &form.cmdCancel, &form.cmdDefaults}) {
        auto* button = new QPushButton(contents);
        row->addWidget(button);
        bind(button, *model);
    }
    return row;
}

} // namespace

LSOptionsWindow::LSOptionsWindow(const std::shared_ptr<frmLS_Options>& form) : FormWindow(form) {
    setFixed();
    Builder build(*form, contents());
    auto* column = new QVBoxLayout(contents());
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(groupGap);
    auto* upper = new QHBoxLayout;
    auto* limits = new QVBoxLayout;
    upper->setSpacing(groupGap);
    limits->setSpacing(groupGap);
    column->addLayout(upper);
    for (const LSGroup& group : lsGroups())
        switch (group.frame) {
        case LSFrame::Deviations:
            upper->addWidget(makeDeviations(build, group));
            upper->addLayout(limits);
            break;
        case LSFrame::General:
            column->addWidget(makeGeneral(build, group));
            break;
        default:
            limits->addWidget(makeLimits(build, group), int(group.options.size()));
        }
    column->addLayout(makeButtons(contents(), *form));
}

} // namespace genutil
