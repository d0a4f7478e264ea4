#include "platform/qt/form/menu_bar.h"

#include "hostif/controls.h"
#include "platform/qt/form/bind.h"

#include <QMenuBar>

#include <algorithm>

namespace genutil {
namespace {

std::vector<MenuItem*> entriesOf(const Form& form, const MenuItem* parent) {
    std::vector<MenuItem*> entries;
    for (Control* control : form.controls())
        if (auto* item = dynamic_cast<MenuItem*>(control); item && item->parent() == parent)
            entries.push_back(item);
    return entries;
}

// Puts the entries of the menu, and of the menus among them, into a menu or a menu bar.
void addEntries(QWidget* place, const Form& form, const MenuItem* parent) {
    for (MenuItem* item : entriesOf(form, parent)) {
        if (entriesOf(form, item).empty()) {
            auto* action = new QAction(place);
            place->addAction(action);
            bind(action, *item);
        } else {
            auto* menu = new QMenu(place);
            place->addAction(menu->menuAction());
            bind(menu->menuAction(), *item);
            addEntries(menu, form, item);
        }
    }
}

} // namespace

QMenuBar* makeMenuBar(QWidget* window, const Form& form) {
    auto* bar = new QMenuBar(window);
    bar->setNativeMenuBar(false); // the form's height counts with a bar in its window
    addEntries(bar, form, nullptr);
    return bar;
}

QMenu* makePopUpMenu(QWidget* window, MenuItem& item) {
    auto* menu = new QMenu(window);
    menu->setObjectName(QString::fromStdString(item.name()));
    addEntries(menu, item.form(), &item);
    return menu;
}

} // namespace genutil
