#include "platform/qt/menu_bar.h"

#include "hostif/controls.h"
#include "platform/qt/bind.h"

#include <QMenuBar>

#include <algorithm>
#include <map>

namespace genutil {

QMenuBar* makeMenuBar(QWidget* window, const Form& form) {
    std::vector<MenuItem*> items;
    for (Control* control : form.controls())
        if (auto* item = dynamic_cast<MenuItem*>(control))
            items.push_back(item);

    auto* bar = new QMenuBar(window);
    bar->setNativeMenuBar(false); // the form's height counts with a bar in its window
    std::map<const MenuItem*, QMenu*> menus;
    for (MenuItem* item : items) {
        QWidget* place = item->parent() ? static_cast<QWidget*>(menus.at(item->parent())) : bar;
        if (std::ranges::find(items, item, &MenuItem::parent) == items.end()) {
            auto* action = new QAction(place);
            place->addAction(action);
            bind(action, *item);
        } else {
            auto* menu = new QMenu(place);
            place->addAction(menu->menuAction());
            bind(menu->menuAction(), *item);
            menus[item] = menu;
        }
    }
    return bar;
}

} // namespace genutil
