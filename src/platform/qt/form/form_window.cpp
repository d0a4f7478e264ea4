#include "platform/qt/form/form_window.h"

#include "hostif/controls.h"
#include "platform/qt/form/menu_bar.h"
#include "platform/qt/form/scrolled_part.h"
#include "platform/qt/grid/grid_view.h"
#include "platform/qt/tie.h"
#include "platform/qt/virtual_keys.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCloseEvent>
#include <QCursor>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QWindow>

#include <algorithm>

namespace genutil {
namespace {

// A window manager tells the size and the state one after the other: both are reported together, in
// milliseconds.
constexpr int resizePause = 20;
constexpr int stateChangePause = 100;

// Marks a state in which what the window reports is not to be applied back to it.
class Reporting {
public:
    explicit Reporting(bool& flag) : flag_(flag), earlier_(flag) { flag_ = true; }
    ~Reporting() { flag_ = earlier_; }

private:
    bool& flag_;
    bool earlier_;
};

Qt::WindowStates toQt(WindowState state) {
    return state == WindowState::Maximized   ? Qt::WindowMaximized
           : state == WindowState::Minimized ? Qt::WindowMinimized
                                             : Qt::WindowNoState;
}

WindowState fromQt(Qt::WindowStates states) {
    return states & Qt::WindowMinimized                            ? WindowState::Minimized
           : states & (Qt::WindowMaximized | Qt::WindowFullScreen) ? WindowState::Maximized
                                                                   : WindowState::Normal;
}

} // namespace

FormWindow::FormWindow(std::shared_ptr<Form> form, Qt::WindowFlags flags)
    : QWidget(nullptr, flags), form_(std::move(form)), contents_(new QWidget(this)) {
    // The host's event loop is the host's: closing a window of ours never ends it.
    setAttribute(Qt::WA_QuitOnClose, false);
    setObjectName(QString::fromStdString(form_->name()));
    new Tie(this, *form_, [this](Aspect aspect) { apply(aspect); });
    new InputTie(contents_, *form_, [](Aspect) {});
    auto* refreshing = new Tie(this, *form_, [](Aspect) {});
    refreshing->keep(form_->refreshed.connectScoped([this] {
        for (QWidget* part : findChildren<QWidget*>())
            part->update();
    }));
    apply(Aspect::Caption);
    apply(Aspect::Enabled);
}

void FormWindow::addMenuBar() {
    menuBar_ = makeMenuBar(this, *form_);
}

QWidget* FormWindow::addScrolledPart(QBoxLayout* column) {
    auto* const part = new ScrolledPart(contents_);
    // The mouse over what is bare of it is over the bare form.
    new InputTie(part->contents(), *form_, [](Aspect) {});
    column->addWidget(part, 1);
    return part->contents();
}

QWidget* FormWindow::viewOf(const Control& control) const {
    return findChild<QWidget*>(QString::fromStdString(control.name()));
}

void FormWindow::open(bool modal, QWindow* owner) {
    ensurePolished();
    applySize();
    applyPlace();
    setTabOrder();
    if (modal)
        setWindowModality(Qt::ApplicationModal);
    winId(); // makes the native window
    windowHandle()->installEventFilter(this);
    windowHandle()->setTransientParent(owner);
    setWindowState(toQt(form_->windowState));
    show();
    if (!form_)
        return; // a handler has closed it
    if (!testAttribute(Qt::WA_ShowWithoutActivating))
        activateWindow();
    applyFocus();
    // The form learns a size that it has not chosen itself.
    reportSize();
}

void FormWindow::retire() {
    for (QObject* child : findChildren<QObject*>())
        if (dynamic_cast<Tie*>(child))
            delete child;
    form_.reset();
    hide();
    // The desktop is mostly first: in a host that runs no event loop this never happens.
    deleteLater();
}

void FormWindow::popUp(const MenuItem& menu) {
    auto* shown = findChild<QMenu*>(QString::fromStdString(menu.name()));
    if (!shown || !form_)
        return;
    const Form::Handling now(*form_);
    QPoint place = QCursor::pos();
    for (const Control* control : form_->controls())
        if (const auto* grid = dynamic_cast<const GridView*>(viewOf(*control)))
            place = grid->menuPlace().value_or(place);
    shown->exec(place);
}

void FormWindow::apply(Aspect aspect) {
    switch (aspect) {
    case Aspect::Caption:
        setWindowTitle(QString::fromStdString(form_->caption));
        break;
    case Aspect::Enabled:
        setEnabled(form_->enabled);
        break;
    case Aspect::Focus:
        applyFocus();
        break;
    case Aspect::WindowState:
        applyState();
        break;
    case Aspect::Geometry:
        if (!reporting_ && form_->windowState == WindowState::Normal) {
            applySize();
            applyPlace();
        }
        break;
    default:
        break;
    }
}

void FormWindow::applyState() {
    if (isVisible() && !reporting_ && fromQt(windowState()) != form_->windowState)
        setWindowState(toQt(form_->windowState));
}

void FormWindow::applyFocus() {
    const auto& controls = form_->controls();
    const Control* wanted = form_->activeControl();
    if (!wanted) {
        // Nothing has the focus yet: the first in the tab order gets it.
        const auto first = std::ranges::min_element(controls, {}, [](const Control* control) {
            return control->canFocus() ? control->tabIndex : std::numeric_limits<int>::max();
        });
        wanted = first != controls.end() && (*first)->canFocus() ? *first : nullptr;
    }
    QWidget* view = wanted ? viewOf(*wanted) : nullptr;
    if (!view || view->hasFocus())
        return;
    view->setFocus(Qt::OtherFocusReason);
    // The focus is shown as after Tab, which alone the toolkit takes for a reason to do so.
    setAttribute(Qt::WA_KeyboardFocusChange);
}

void FormWindow::setTabOrder() {
    std::vector<Control*> controls = form_->controls();
    std::ranges::stable_sort(controls, {}, &Control::tabIndex);
    QWidget* before = nullptr;
    for (const Control* control : controls) {
        QWidget* view = viewOf(*control);
        if (!view || view->focusPolicy() == Qt::NoFocus)
            continue;
        if (control->tabIndex < 0) {
            view->setFocusPolicy(Qt::ClickFocus);
            continue;
        }
        if (before)
            QWidget::setTabOrder(before, view);
        before = view;
    }
}

void FormWindow::reportSize() {
    reportTimer_.stop();
    if (!form_ || !isVisible() || reporting_)
        return;
    const auto alive = form_;
    const Form::Handling now(*alive);
    const QPointer<FormWindow> here(this);
    const WindowState state = fromQt(windowState());
    const QSize wanted = wantedContents();
    const QSize actual = contents_->size();
    double width = alive->width;
    double height = alive->height;
    // A length that only rounding to pixels has changed stays what the form made it.
    if (state != WindowState::Minimized) {
        if (actual.width() != wanted.width() || width <= 0)
            width = scale_.twips(actual.width()) + alive->chrome().width;
        if (actual.height() != wanted.height() || height <= 0)
            height = scale_.twips(actual.height()) + alive->chrome().height;
    }
    {
        const Reporting applied(reporting_);
        alive->userResize(width, height, state);
    }
    if (!here || !form_)
        return;
    // What the form's handler has made of it.
    applyState();
    if (alive->width != width || alive->height != height)
        apply(Aspect::Geometry);
}

void FormWindow::resizeEvent(QResizeEvent*) {
    const int menu = menuHeight(width());
    if (menuBar_)
        menuBar_->setGeometry(0, 0, width(), menu);
    contents_->setGeometry(0, menu, width(), std::max(0, height() - menu));
    if (!reportTimer_.isActive())
        reportTimer_.start(resizePause, this);
}

void FormWindow::paintEvent(QPaintEvent*) {
    wasPainted_ = true;
}

void FormWindow::timerEvent(QTimerEvent* event) {
    if (event->timerId() == reportTimer_.timerId())
        reportSize();
    else
        QWidget::timerEvent(event);
}

void FormWindow::moveEvent(QMoveEvent*) {
    if (!form_ || !isVisible() || reporting_ || fromQt(windowState()) != WindowState::Normal)
        return;
    // What only the fitting has moved stays what the form made it.
    if (!settled_ || wantedPlace() == pos())
        return;
    const auto alive = form_;
    const Form::Handling now(*alive);
    const Reporting applied(reporting_);
    const auto moved = [this](int pixels, double twips) {
        return scale_.pixels(twips) == pixels ? twips : scale_.twips(pixels);
    };
    alive->userMove(moved(pos().x(), alive->left), moved(pos().y(), alive->top));
}

void FormWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (!form_)
        return;
    const auto alive = form_;
    const Form::Handling now(*alive);
    if (event->type() == QEvent::ActivationChange)
        alive->userActivate(isActiveWindow());
    else if (event->type() == QEvent::WindowStateChange)
        reportTimer_.start(stateChangePause, this);
}

void FormWindow::closeEvent(QCloseEvent* event) {
    // The form decides; when it goes it takes the window away itself.
    event->ignore();
    if (reportTimer_.isActive())
        reportSize();
    const auto alive = form_;
    if (alive) {
        const Form::Handling now(*alive);
        // The window system alone asks for the user.
        alive->userClose(event->spontaneous() ? UnloadReason::CloseBox : UnloadReason::Ending);
    }
    // A window whose form has gone never keeps the application from ending.
    event->setAccepted(!alive || !alive->isLoaded());
}

bool FormWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == windowHandle() && event->type() == QEvent::Expose && windowHandle()->isExposed())
        settle();
    // Keys come to the native window before any widget.
    return form_ && watched == windowHandle() && event->type() == QEvent::KeyPress &&
           handleKey(*static_cast<QKeyEvent*>(event));
}

bool FormWindow::handleKey(const QKeyEvent& event) {
    const auto alive = form_;
    const Form::Handling now(*alive);
    const KeyEvent pressed = toKeyEvent(event);
    if (!alive->hearsUser() || (pressed.code != 0 && alive->userKey(pressed)))
        return true;
    if (!alive->isShown())
        return true;
    const QString characters = event.text();
    // A button that has the focus takes Enter itself, before the form could move the focus with it.
    const bool isForButton =
        pressed.code == key::Enter && dynamic_cast<const Button*>(alive->activeControl()) != nullptr;
    if (!isForButton && !characters.isEmpty() && alive->userCharacter(characters.front().unicode()))
        return true;
    return !alive->isShown() || pressByKey(pressed);
}

// Enter presses the focused button or else the default one, Escape the one that cancels. A key that is held
// down presses once: it may have answered the question of its first press.
bool FormWindow::pressByKey(const KeyEvent& event) {
    const int code = event.code;
    if (code != key::Enter && code != key::Escape)
        return false;
    const auto alive = form_;
    const auto press = [this, &event](Button& button) {
        const QWidget* view = viewOf(button);
        if (!view || !view->isVisible() || !button.enabled)
            return false;
        if (!event.repeated)
            button.userPress();
        return true;
    };
    for (Control* control : alive->controls()) {
        auto* button = dynamic_cast<Button*>(control);
        const bool meant =
            button && (code == key::Escape ? button->isCancel : button == alive->activeControl());
        if (meant)
            return press(*button);
    }
    for (Control* control : alive->controls())
        if (auto* button = dynamic_cast<Button*>(control); button && code == key::Enter && button->isDefault)
            return press(*button);
    return false;
}

} // namespace genutil
