#include "platform/qt/windows/preferences_window.h"

#include "platform/qt/form/bind.h"
#include "platform/qt/form/button_row.h"
#include "platform/qt/form/group_box.h"
#include "platform/qt/form/number_box.h"
#include "platform/qt/twip_scale.h"

#include <QCheckBox>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace genutil {
namespace {

constexpr int margin = 10, gap = 8, rowGap = 4; // pixels

class Builder {
public:
    Builder(frmDefaults& form, QWidget* contents) : form_(form), tabs_(new QTabWidget(contents)) {
        bind(tabs_, form_.tabPreferences);
        fillGeneral();
        fillCompute();
    }

    QTabWidget* tabs() const { return tabs_; }

private:
    QVBoxLayout* page(int index) {
        auto* const column = new QVBoxLayout(tabs_->widget(index));
        column->setContentsMargins(margin, margin, margin, margin);
        column->setSpacing(gap);
        return column;
    }

    QVBoxLayout* group(QVBoxLayout* column, Panel& model) {
        auto* const box = new QGroupBox(column->parentWidget());
        bind(box, model);
        column->addWidget(box);
        auto* const rows = new QVBoxLayout(box);
        rows->setContentsMargins(margin, 6, margin, 8);
        rows->setSpacing(rowGap);
        return rows;
    }

    template<class View, class Model>
    static View* add(QBoxLayout* layout, Model& model) {
        auto* const view = new View(layout->parentWidget());
        layout->addWidget(view);
        bind(view, model);
        return view;
    }

    void fillGeneral() {
        QVBoxLayout* const column = page(0);
        QVBoxLayout* const start = group(column, form_.fraStartUp);
        for (OptionButton& option : form_.optStartSize)
            add<QRadioButton>(start, option);
        add<QCheckBox>(start, form_.chkLoadLast);
        QVBoxLayout* const lists = group(column, form_.fraListGroup);
        for (OptionButton& option : form_.optListGroup)
            add<QRadioButton>(lists, option);
        column->addLayout(editorRow());
        for (CheckBox* const check : {&form_.chkShowExtn, &form_.chkRecycleBin, &form_.chkInstantHelp})
            add<QCheckBox>(column, *check);
        column->addStretch(1);
    }

    QHBoxLayout* editorRow() {
        QWidget* const general = tabs_->widget(0);
        auto* const row = new QHBoxLayout;
        row->setSpacing(gap);
        auto* const caption = new QLabel(general);
        auto* const editor = new QLabel(general);
        auto* const button = new QPushButton(general);
        bind(caption, form_.Label3);
        bind(editor, form_.lblEditor);
        bind(button, form_.cmdSelectEdit);
        editor->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
        editor->setTextFormat(Qt::PlainText);
        editor->setMargin(2);
        // The path was shortened to the label's own width, which the frame is not part of.
        editor->setFixedWidth(TwipScale::ofScreen().pixelsHolding(form_.lblEditor.width) + 2 * (1 + 2));
        button->setAccessibleName(QStringLiteral("Select text editor"));
        row->addWidget(caption);
        row->addWidget(editor, 1);
        row->addWidget(button);
        return row;
    }

    void fillCompute() {
        QVBoxLayout* const column = page(1);
        QVBoxLayout* const prompt = group(column, form_.fraControlPrompt);
        for (OptionButton& option : form_.optPromptMode)
            add<QRadioButton>(prompt, option);
        auto* const factor = new QHBoxLayout;
        factor->setSpacing(gap);
        auto* const caption = new QLabel(tabs_->widget(1));
        auto* const box = new NumberBox(tabs_->widget(1));
        bind(caption, form_.lblKfactor);
        bind(box, form_.txtKfactor);
        caption->setBuddy(box);
        box->setAccessibleName(QStringLiteral("Refraction index, K-factor"));
        factor->addWidget(caption);
        factor->addWidget(box);
        factor->addStretch(1);
        column->addLayout(factor);
        for (Button* const button : {&form_.cmdLSOptions, &form_.cmdLSPointOptions}) {
            auto* const view = new QPushButton(tabs_->widget(1));
            bind(view, *button);
            column->addWidget(view, 0, Qt::AlignLeft);
        }
        column->addStretch(1);
    }

    frmDefaults& form_;
    QTabWidget* tabs_;
};

} // namespace

PreferencesWindow::PreferencesWindow(const std::shared_ptr<frmDefaults>& form) : FormWindow(form) {
    setFixed();
    auto* const column = new QVBoxLayout(contents());
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(gap);
    QWidget* const part = addScrolledPart(column);
    auto* const inside = new QVBoxLayout(part);
    inside->setContentsMargins(0, 0, 0, 0);
    inside->addWidget(Builder(*form, part).tabs());
    column->addLayout(makeButtonRow(contents(), form->pnlHelp, {&form->cmdOK, &form->cmdCancel}));
}

} // namespace genutil
