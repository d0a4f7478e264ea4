#include "platform/qt/form/focus_tie.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFocusEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QShortcutEvent>

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

// The press is refused together with the focus. A button that needs no valid entry acts all the same, once
// the user has seen why the entry was refused.
void passBy(Control& refused) {
    auto* const button = dynamic_cast<Button*>(&refused);
    if (button && button->needsNoValidEntry && button->form().isLoaded())
        button->userPress();
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
    const Form::Handling now(model_.form());
    switch (event->type()) {
    case QEvent::FocusIn:
        return focusCame(*static_cast<QFocusEvent*>(event));
    case QEvent::MouseButtonPress:
        return pressCame(*static_cast<QMouseEvent*>(event));
    case QEvent::MouseButtonRelease:
        held_.reset();
        return false;
    case QEvent::MouseMove: {
        const QPointer<FocusTie> here(this);
        return InputTie::eventFilter(watched, event) || !here ||
               mouseMoved(*static_cast<QMouseEvent*>(event));
    }
    case QEvent::Shortcut:
        return accessKeyCame(*static_cast<QShortcutEvent*>(event));
    default:
        return InputTie::eventFilter(watched, event);
    }
}

bool FocusTie::focusCame(const QFocusEvent& event) {
    const QPointer<FocusTie> here(this); // a handler may close the window
    const QPointer<QWidget> view(view_);
    const bool byMouse = event.reason() == Qt::MouseFocusReason;
    const bool taken = takeFocus(model_);
    if (here) {
        const auto* const box = qobject_cast<QLineEdit*>(view_);
        refusedClick_ = !taken && byMouse;
        keepsSelection_ = taken && byMouse && box && box->hasSelectedText();
    }
    // A view that has lost it again must not look as though it had it.
    return !view || (!view->hasFocus() && view->isActiveWindow());
}

bool FocusTie::pressCame(const QMouseEvent& event) {
    held_.reset();
    const bool keepsSelection = std::exchange(keepsSelection_, false);
    Control& model = model_; // a handler may close the window, and this with it
    // The toolkit has mostly moved the focus by now.
    if (std::exchange(refusedClick_, false) || (model.canFocus() && !takeFocus(model))) {
        passBy(model);
        return true;
    }
    if (keepsSelection && event.button() == Qt::LeftButton) {
        held_ = event.position().toPoint();
        return true;
    }
    return false;
}

// A drag from the press that entered the box selects from there, as any other drag.
bool FocusTie::mouseMoved(const QMouseEvent& event) {
    if (!held_ || !event.buttons().testFlag(Qt::LeftButton))
        return false;
    if ((event.position().toPoint() - *held_).manhattanLength() < QApplication::startDragDistance())
        return true;
    auto* const box = static_cast<QLineEdit*>(view_);
    box->setCursorPosition(box->cursorPositionAt(*std::exchange(held_, std::nullopt)));
    return false;
}

// The toolkit would press the button a tenth of a second later, when the user's next key may have closed the
// form or opened a question.
bool FocusTie::accessKeyCame(const QShortcutEvent& event) {
    auto* const button = qobject_cast<QAbstractButton*>(view_);
    Control& model = model_;
    if (model.canFocus() && !takeFocus(model)) {
        passBy(model);
        return true;
    }
    if (!button || event.isAmbiguous())
        return false;
    button->setShortcutAutoRepeat(event.shortcutId(), false);
    button->click();
    return true;
}

} // namespace genutil
