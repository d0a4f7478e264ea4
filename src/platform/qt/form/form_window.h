#pragma once

#include "hostif/form.h"
#include "platform/qt/form/burst_gate.h"
#include "platform/qt/form/paint_budget.h"
#include "platform/qt/twip_scale.h"

#include <QBasicTimer>
#include <QWidget>

#include <memory>
#include <optional>

class QBoxLayout;
class QKeyEvent;
class QMenuBar;

namespace genutil {

class MenuItem;

// The window of a form, from the moment it is shown until it is hidden or closed; showing the form again
// makes another. The contents get what the form's nominal size leaves after its chrome; a menu bar comes on
// top of that. What the screens have no room for is fitted to them, while the form keeps its numbers. A class
// for each form puts the controls' views into contents().
class FormWindow : public QWidget {
public:
    explicit FormWindow(std::shared_ptr<Form> form, Qt::WindowFlags flags = Qt::Window);

    // Null once the window is retired.
    const std::shared_ptr<Form>& form() const { return form_; }
    QWidget* contents() const { return contents_; }
    // The view bound to the control; null when there is none.
    QWidget* viewOf(const Control& control) const;

    // Shows the window as the form says. `owner` is the window that it stays above; null for an independent
    // one.
    void open(bool modal, QWindow* owner);
    // Ends every tie to the form and lets the window go; it disappears at once.
    void retire();

    // Runs events, the user's excepted, until the window is on the screen as a whole, or for half a second:
    // the host may compute for minutes before it lets events run.
    void waitUntilSeen();
    // Paints the view now, within the budget for that; what it leaves out is painted with the pending events.
    void repaintView(const Control& control);
    // At most once in a screen refresh while no other window has been brought to the front.
    void bringToFront();

    // Shows the pop-up menu where the user has asked for it and returns when it has gone. Does nothing for a
    // menu that the window has not got.
    void popUp(const MenuItem& menu);

    // Tells the form the window's size and state, if they have changed.
    void reportSize();

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    // Shows the form's menu items in a menu bar.
    void addMenuBar();
    // The size of the contents where the form leaves its own at 0.
    virtual QSize naturalSize() const;
    // The user cannot resize the window. On a screen that is too small it is smaller than its contents.
    void setFixed() { fixed_ = true; }
    // The part of the contents that scrolls then; an empty widget in it is returned.
    QWidget* addScrolledPart(QBoxLayout* column);

    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void apply(Aspect aspect);
    void applySize();
    void applyPlace();
    void applyState();
    void applyFocus();
    void setTabOrder();
    void centre();
    int menuHeight(int width) const;
    QRect room() const;
    std::optional<QPoint> wantedPlace() const;
    QSize wantedContents() const;
    void settle();
    bool handleKey(const QKeyEvent& event);
    bool pressByKey(const KeyEvent& event);

    std::shared_ptr<Form> form_;
    TwipScale scale_ = TwipScale::ofScreen();
    QWidget* contents_;
    QMenuBar* menuBar_ = nullptr;
    bool fixed_ = false;
    bool reporting_ = false;
    bool settled_ = false; // the window manager has given the window its frame
    QBasicTimer reportTimer_;
    PaintBudget paintBudget_;
    bool wasPainted_ = false; // since that was asked for
    BurstGate raiseGate_;
};

} // namespace genutil
