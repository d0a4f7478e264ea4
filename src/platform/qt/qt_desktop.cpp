#include "platform/qt/qt_desktop.h"

#include "hostif/controls.h"
#include "hostif/error.h"
#include "hostif/form.h"
#include "hostif/printer.h"
#include "hostif/value.h"
#include "platform/qt/dialogs.h"
#include "platform/qt/file_watch.h"
#include "platform/qt/fonts.h"
#include "platform/qt/locale.h"
#include "platform/qt/print/qt_printer.h"
#include "platform/qt/quit_gate.h"
#include "platform/qt/text_measure.h"
#include "platform/qt/twip_scale.h"

#include <QApplication>
#include <QClipboard>
#include <QDateTime>
#include <QDrag>
#include <QEventLoop>
#include <QFontInfo>
#include <QPointer>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <cerrno> // the program's name
#include <list>
#include <vector>

namespace genutil {
namespace {

class QtClipboard : public Clipboard {
public:
    void clear() override { QApplication::clipboard()->clear(); }
    void setText(const std::string& text) override {
        QApplication::clipboard()->setText(QString::fromStdString(text));
    }
    std::string text() override { return QApplication::clipboard()->text().toStdString(); }
};

class QtDesktop : public Desktop {
public:
    explicit QtDesktop(FormViews views) : views_(std::move(views)) {}
    ~QtDesktop() override;

    Screen screen() override;
    Pointer pointer() override { return pointer_; }
    void setPointer(Pointer pointer) override;
    double textWidth(const Font& font, const std::string& text) override;
    bool isFixedPitch(const Font& font) override { return QFontInfo(toQFont(font)).fixedPitch(); }

    void show(const std::shared_ptr<Form>& form, bool modal) override;
    void showEarly(const std::shared_ptr<Form>& form) override;
    void hide(Form& form) override { takeAway(form); }
    void close(Form& form) override { takeAway(form); }
    void bringToFront(Form& form) override;
    void repaint(Control& control) override;
    void doEvents() override;
    void popUpMenu(MenuItem& menu) override;

    Answer ask(const Message& message) override;
    bool showOpen(Form& owner, FileDialog& dialog) override;
    bool showSave(Form& owner, FileDialog& dialog) override;
    std::optional<std::string> askText(Form& owner, const TextPrompt& prompt) override;
    std::unique_ptr<FileWatch> watchFile(const std::string& path, std::function<void()> changed) override {
        return makeFileWatch(path, std::move(changed));
    }
    Clipboard& clipboard() override { return clipboard_; }
    Printer* printer() override { return &systemPrinter(); }
    std::unique_ptr<Printer> pdfPrinter(const std::string& path) override { return makePdfPrinter(path); }
    bool showPrint(Form& owner, PrintDialog& dialog) override;
    double localTime() override;

private:
    struct Open {
        const Form* form;
        QPointer<FormWindow> window;
        QEventLoop* modalLoop = nullptr;      // null for a modeless form
        bool isEarly = false;                 // blocks other windows, and a modal show is still to come
        std::shared_ptr<Connection> quitting; // to the end of what occupies the form
    };
    // A window whose form has closed, not yet deleted.
    struct Gone {
        QPointer<FormWindow> window;
        std::weak_ptr<Form> form;
    };
    // While it lives, the user is not heard by the forms that are open, save this one.
    class Pause {
    public:
        Pause(QtDesktop& desktop, const Form* except = nullptr);
        ~Pause();
        Pause(const Pause&) = delete;

    private:
        QtDesktop& desktop_;
        std::list<Form::Occupied> forms_;
    };
    struct Measure {
        Font font;
        TextMeasure text;
    };

    std::vector<Open>::iterator find(const Form& form) {
        return std::ranges::find(open_, &form, &Open::form);
    }
    FormWindow* windowOf(const Form& form);
    void open(const std::shared_ptr<Form>& form, bool modal, bool isEarly);
    void takeAway(Form& form);
    void runModal(const std::shared_ptr<Form>& form);
    bool isOccupied() const;
    void releaseGone();

    FormViews views_;
    std::vector<Open> open_;
    std::vector<Gone> gone_;
    int questions_ = 0; // and modal forms that are open
    QuitGate quitGate_{[this] { return isOccupied(); }};
    std::vector<Measure> measures_; // at measuredScale_
    double measuredScale_ = 0;
    Pointer pointer_ = Pointer::Default;
    // Asking the system for its printers takes time: not before one is wanted.
    SystemPrinter& systemPrinter();

    QtClipboard clipboard_;
    std::unique_ptr<SystemPrinter> printer_;
};

QtDesktop::~QtDesktop() {
    const bool running = QApplication::instance() != nullptr;
    if (running)
        setPointer(Pointer::Default);
    for (const Open& each : std::exchange(open_, {}))
        if (each.window && running)
            delete each.window;
    for (const Gone& each : std::exchange(gone_, {}))
        if (each.window && running)
            delete each.window;
}

QtDesktop::Pause::Pause(QtDesktop& desktop, const Form* except) : desktop_(desktop) {
    ++desktop_.questions_;
    for (const Open& each : desktop_.open_)
        if (each.window && each.window->form() && each.form != except)
            forms_.emplace_back(*each.window->form());
}

QtDesktop::Pause::~Pause() {
    forms_.clear();
    --desktop_.questions_;
    desktop_.quitGate_.goOn();
}

bool QtDesktop::isOccupied() const {
    return questions_ > 0 || std::ranges::any_of(open_, [](const Open& each) {
        return each.window && each.window->form() && !each.window->form()->hearsUser();
    });
}

// Called where the component is entered and left: the toolkit's own way of deleting a window waits for an
// event loop, which some hosts never run and others not while they compute.
void QtDesktop::releaseGone() {
    for (const Gone& each : std::exchange(gone_, {})) {
        if (!each.window)
            continue;
        const auto form = each.form.lock();
        if ((form && form->handlesEvent()) || each.window->findChild<QDrag*>())
            gone_.push_back(each);
        else
            delete each.window;
    }
}

Screen QtDesktop::screen() {
    const TwipScale scale = TwipScale::ofScreen();
    const QScreen* primary = QGuiApplication::primaryScreen();
    const QSize size = primary ? primary->size() : QSize(1024, 768);
    return {scale.twips(size.width()), scale.twips(size.height()), scale.twipsPerPixel()};
}

void QtDesktop::setPointer(Pointer pointer) {
    if (pointer == std::exchange(pointer_, pointer))
        return;
    if (pointer == Pointer::Hourglass)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

double QtDesktop::textWidth(const Font& font, const std::string& text) {
    const TwipScale scale = TwipScale::ofScreen();
    if (scale.twipsPerPixel() != std::exchange(measuredScale_, scale.twipsPerPixel()))
        measures_.clear();
    auto known = std::ranges::find(measures_, font, &Measure::font);
    if (known == measures_.end())
        known = measures_.insert(known, {font, TextMeasure(toQFont(font))});
    return scale.twips(known->text.width(text));
}

FormWindow* QtDesktop::windowOf(const Form& form) {
    const auto found = find(form);
    return found == open_.end() ? nullptr : found->window.data();
}

void QtDesktop::show(const std::shared_ptr<Form>& form, bool modal) {
    const auto entry = find(*form);
    if (entry == open_.end()) {
        open(form, modal, false);
    } else if (!modal) {
        entry->window->raise();
        entry->window->activateWindow();
    } else if (!std::exchange(entry->isEarly, false)) {
        throw Error(
            errors::InvalidCall, form->name() + " is already shown and cannot be shown modally as well");
    }
    if (modal)
        runModal(form);
}

void QtDesktop::showEarly(const std::shared_ptr<Form>& form) {
    if (find(*form) == open_.end())
        open(form, true, true);
}

void QtDesktop::open(const std::shared_ptr<Form>& form, bool modal, bool isEarly) {
    releaseGone();
    const Form::Handling now(*form);
    FormWindow* window = makeFormWindow(views_, form);
    const bool staysAbove = modal || window->windowType() == Qt::Tool;
    const QWidget* active = QApplication::activeModalWidget();
    if (!active)
        active = QApplication::activeWindow();
    open_.push_back({form.get(), window, nullptr, isEarly,
        std::make_shared<Connection>(form->hearsAgain.connectScoped([this] { quitGate_.goOn(); }))});
    form->setShown(true);
    const QPointer<FormWindow> shown(window);
    window->open(modal, staysAbove && active ? active->window()->windowHandle() : nullptr);
    // A window that leaves the host at work: it may be long before that lets events run.
    if (shown && shown->form() && shown->testAttribute(Qt::WA_ShowWithoutActivating))
        shown->waitUntilSeen();
}

void QtDesktop::runModal(const std::shared_ptr<Form>& form) {
    const auto entry = find(*form);
    if (entry == open_.end())
        return; // closed by its own activation
    {
        const Pause others(*this, form.get());
        QEventLoop loop;
        entry->modalLoop = &loop;
        loop.exec();
        // Still there: the application is ending.
        if (const auto left = find(*form); left != open_.end()) {
            left->modalLoop = nullptr;
            if (!form->unload())
                takeAway(*form);
        }
    }
    releaseGone();
}

void QtDesktop::takeAway(Form& form) {
    const auto entry = find(form);
    if (entry == open_.end())
        return;
    const Open gone = *entry;
    open_.erase(entry);
    const auto alive = form.shared_from_this();
    if (gone.window)
        gone.window->reportSize();
    form.userActivate(false);
    form.setShown(false);
    if (gone.window) {
        gone.window->retire();
        gone_.push_back({gone.window, form.weak_from_this()});
    }
    if (gone.modalLoop)
        gone.modalLoop->quit();
}

void QtDesktop::bringToFront(Form& form) {
    if (FormWindow* window = windowOf(form))
        window->bringToFront();
}

void QtDesktop::repaint(Control& control) {
    if (FormWindow* window = windowOf(control.form()))
        window->repaintView(control);
}

void QtDesktop::doEvents() {
    releaseGone();
    QApplication::processEvents();
    // What those events changed is painted as well.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::UpdateRequest);
}

double QtDesktop::localTime() {
    const QDateTime now = QDateTime::currentDateTime();
    constexpr double millisecondsPerDay = 86'400'000;
    return double(QDate(1899, 12, 30).daysTo(now.date())) +
           now.time().msecsSinceStartOfDay() / millisecondsPerDay;
}

void QtDesktop::popUpMenu(MenuItem& menu) {
    const auto alive = menu.form().shared_from_this();
    const PointerScope arrow(*this, Pointer::Default);
    if (FormWindow* window = windowOf(*alive))
        window->popUp(menu);
}

Answer QtDesktop::ask(const Message& message) {
    const PointerScope arrow(*this, Pointer::Default);
    const Pause others(*this);
    return showMessage(message);
}

bool QtDesktop::showOpen(Form& owner, FileDialog& dialog) {
    const PointerScope arrow(*this, Pointer::Default);
    const Pause others(*this);
    return showFileDialog(windowOf(owner), dialog, FileDialogKind::Open);
}

bool QtDesktop::showSave(Form& owner, FileDialog& dialog) {
    const PointerScope arrow(*this, Pointer::Default);
    const Pause others(*this);
    return showFileDialog(windowOf(owner), dialog, FileDialogKind::Save);
}

SystemPrinter& QtDesktop::systemPrinter() {
    if (!printer_)
        printer_ = makeSystemPrinter();
    return *printer_;
}

bool QtDesktop::showPrint(Form& owner, PrintDialog& dialog) {
    const PointerScope arrow(*this, Pointer::Default);
    const Pause others(*this);
    return systemPrinter().ask(windowOf(owner), dialog);
}

std::optional<std::string> QtDesktop::askText(Form& owner, const TextPrompt& prompt) {
    const PointerScope arrow(*this, Pointer::Default);
    const Pause others(*this);
    return showTextPrompt(windowOf(owner), prompt);
}

void ensureApplication() {
    if (QApplication::instance())
        return;
    // Without a screen the toolkit would end the process.
    const auto isSet = [](const char* variable) { return !qEnvironmentVariableIsEmpty(variable); };
    if (!isSet("QT_QPA_PLATFORM") && !isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY"))
        throw Error(errors::CannotCreateObject,
            "There is no screen to show windows on: set DISPLAY or WAYLAND_DISPLAY");
    // The name in the titles of windows is the host program's.
    static int argumentCount = 1;
    static std::string name = program_invocation_name;
    static char* arguments[] = {name.data(), nullptr};
    // Never destroyed: the process may end in any order, and the toolkit must not go while libraries still
    // unload.
    new QApplication(argumentCount, arguments);
    QApplication::setQuitOnLastWindowClosed(false);
}

} // namespace

std::unique_ptr<Desktop> makeQtDesktop(FormViews views) {
    ensureApplication();
    useSystemLocale();
    return std::make_unique<QtDesktop>(std::move(views));
}

} // namespace genutil
