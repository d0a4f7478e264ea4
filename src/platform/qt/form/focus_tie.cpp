#include "platform/qt/form/focus_tie.h"

#include <QFocusEvent>

#include <algorithm>
#include <utility>

namespace genutil {
namespace {

// The forms whose focus is on its way. A message box in between takes the focus from the window and gives it
// back, which is no move within the form.
std::vector<const Form*>& movingForms() {
    static std::vector<const Form*> forms;
    return forms;
}

class Moving {
public:
    explicit Moving(const Form& form) { movingForms().push_back(&form); }
    ~Moving() { movingForms().pop_back(); }
    Moving(const Moving&) = delete;
};

bool isMoving(const Form& form) {
    return std::ranges::count(movingForms(), &form) > 0;
}

} // namespace

bool takeFocus(Control& model) {
    const auto form = model.form().shared_from_this();
    if (form->activeControl() == &model)
        return true;
    if (isMoving(*form))
        return false;
    {
        const Moving now(*form);
        form->moveFocus(nullptr);
    }
    if (form->isLoaded() && !form->activeControl())
        form->moveFocus(&model);
    return form->activeControl() == &model;
}

bool FocusTie::eventFilter(QObject* watched, QEvent* event) {
    if (watched != view_)
        return InputTie::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::FocusIn: {
        const QPointer<FocusTie> here(this); // a handler may close the window
        const QPointer<QWidget> view(view_);
        const bool taken = takeFocus(model_);
        if (here)
            refusedClick_ = !taken && static_cast<QFocusEvent*>(event)->reason() == Qt::MouseFocusReason;
        // A view that has lost it again must not look as though it had it.
        return !view || (!view->hasFocus() && view->isActiveWindow());
    }
    case QEvent::MouseButtonPress:
        // The toolkit has mostly moved the focus by now.
        if (std::exchange(refusedClick_, false))
            return true;
        [[fallthrough]];
    case QEvent::Shortcut:
        return model_.canFocus() && !takeFocus(model_);
    default:
        return InputTie::eventFilter(watched, event);
    }
}

} // namespace genutil
