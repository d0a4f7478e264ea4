#include "platform/qt/form/button_row.h"

#include "platform/qt/form/bind.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>

namespace genutil {

QHBoxLayout* makeButtonRow(QWidget* parent, Panel& help, std::initializer_list<Button*> buttons) {
    constexpr int gap = 8; // pixels
    auto* const row = new QHBoxLayout;
    row->setSpacing(gap);
    auto* const panel = new QFrame(parent);
    bind(panel, help);
    row->addWidget(panel, 1);
    for (Button* const model : buttons) {
        auto* const button = new QPushButton(parent);
        row->addWidget(button);
        bind(button, *model);
    }
    return row;
}

} // namespace genutil
