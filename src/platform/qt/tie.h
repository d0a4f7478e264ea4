#pragma once

#include "hostif/controls.h"
#include "hostif/form.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <vector>

namespace genutil {

// The tie between a view and the control model that it shows. It belongs to the view and ends with it; a
// window that is about to go deletes its ties first, and its views are then mere pictures that reach no model
// any more.
class Tie : public QObject {
public:
    using Apply = std::function<void(Aspect)>;

    // Calls `apply` whenever an aspect of the model changes.
    Tie(QObject* view, Control& model, Apply apply) : QObject(view) {
        keep(model.changed.connectScoped(std::move(apply)));
    }

    // A further connection that ends with the tie.
    void keep(Connection connection) { connections_.push_back(std::move(connection)); }

private:
    std::vector<Connection> connections_;
};

// A tie that also reports focus and mouse of the view to the model.
class InputTie : public Tie {
public:
    InputTie(QWidget* view, Control& model, Apply apply);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* view_;
    Control& model_;
};

// Runs what the user did; the form and its window outlive it whatever the handlers do.
template<class Act>
void report(Control& model, Act&& act) {
    const Form::Handling now(model.form());
    act();
}

} // namespace genutil
