#include "platform/qt/windows/ls_save_options_window.h"

#include "platform/qt/form/bind.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace genutil {
namespace {

constexpr int indent = 24, margin = 12, gap = 6; // pixels

template<class View, class Model>
View* add(QVBoxLayout* column, View* view, Model& model, bool depends = false) {
    auto* row = new QHBoxLayout;
    row->addSpacing(depends ? indent : 0);
    row->addWidget(view, 1);
    column->addLayout(row);
    bind(view, model);
    return view;
}

} // namespace

LSSaveOptionsWindow::LSSaveOptionsWindow(const std::shared_ptr<frmLS_SaveOptions>& form) : FormWindow(form) {
    setFixed();
    auto* const window = new QVBoxLayout(contents());
    window->setContentsMargins(margin, margin, margin, margin);
    window->setSpacing(gap);
    QWidget* const parent = addScrolledPart(window);
    auto* column = new QVBoxLayout(parent);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(gap);
    add(column, new QLabel(parent), form->lblPrompt)->setWordWrap(true);
    column->addSpacing(gap);
    add(column, new QCheckBox(parent), form->chkDBPoints);
    add(column, new QCheckBox(parent), form->chkDBPtsFixed, true);
    column->addSpacing(gap);
    add(column, new QCheckBox(parent), form->chkPtEntry);
    for (OptionButton& option : form->optPointEntry)
        add(column, new QRadioButton(parent), option, true);
    add(column, new QCheckBox(parent), form->chkPtEntryFixed, true);
    column->addSpacing(gap);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    for (Button* model : {&form->cmdOK, &form->cmdCancel}) {
        auto* button = new QPushButton(contents());
        buttons->addWidget(button);
        bind(button, *model);
    }
    window->addLayout(buttons);
}

} // namespace genutil
