#pragma once

#include "platform/qt/tie.h"

#include <QPoint>

#include <optional>

class QFocusEvent;
class QMouseEvent;
class QShortcutEvent;

namespace genutil {

// Gives the control the focus, as far as the form lets it go. The control that had it hears first and may
// take it back, a message box meanwhile included; the one that is to have it has then heard nothing.
// Meanwhile a further call for the same form does nothing. False when the focus is elsewhere afterwards.
bool takeFocus(Control& model);

// The tie of a view that the user can move the focus to. A click or an access key acts only where the focus
// has come along: what the control that had it refuses to let go is not passed by, but for a button that
// needs no valid entry. What a control selects on entering outlives the click that entered it.
class FocusTie : public InputTie {
public:
    FocusTie(QWidget* view, Control& model, Apply apply)
        : InputTie(view, model, std::move(apply)), view_(view), model_(model) {}

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool focusCame(const QFocusEvent& event);
    bool pressCame(const QMouseEvent& event);
    bool mouseMoved(const QMouseEvent& event);
    bool accessKeyCame(const QShortcutEvent& event);

    QWidget* view_;
    Control& model_;
    bool refusedClick_ = false;   // the press that follows is not to be heard
    bool keepsSelection_ = false; // the press that follows leaves the selection
    std::optional<QPoint> held_;  // where that press was made, while it may become a drag
};

} // namespace genutil
