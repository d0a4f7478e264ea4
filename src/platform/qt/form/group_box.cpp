#include "platform/qt/form/group_box.h"

#include "platform/qt/fonts.h"
#include "platform/qt/tie.h"

#include <QGroupBox>

namespace genutil {

void bind(QGroupBox* view, Panel& model) {
    const auto apply = [view, &model](Aspect) {
        const QString caption = QString::fromStdString(model.caption);
        view->setTitle(caption);
        view->setAccessibleName(caption);
        view->setFont(toQFont(model.font));
        view->setEnabled(model.enabled);
        view->setVisible(model.visible);
    };
    view->setObjectName(QString::fromStdString(model.name()));
    new InputTie(view, model, apply);
    apply(Aspect::Caption);
}

void forwardMouse(QObject* view, Control& inner, Control& outer) {
    auto* const tie = new Tie(view, inner, [](Aspect) {});
    tie->keep(inner.mouseMove.connectScoped([&outer] { outer.mouseMove(); }));
}

} // namespace genutil
