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
#include "platform/qt/text_measure.h"
#include "platform/qt/twip_scale.h"

#include <QApplication>
#include <QClipboard>
#include <QDateTime>
#include <QEventLoop>
#include <QFontInfo>
#include <QPointer>
#include <QScreen>
#include <QWindow>

#include <algorithm>
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
        QEventLoop* modalLoop = nullptr; // null for a modeless form
        bool isEarly = false;            // blocks other windows, and a modal show is still to come
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

    FormViews views_;
    std::vector<Open> open_;
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
    FormWindow* window = makeFormWindow(views_, form);
    const bool staysAbove = modal || window->windowType() == Qt::Tool;
    const QWidget* active = QApplication::activeModalWidget();
    if (!active)
        active = QApplication::activeWindow();
    open_.push_back({form.get(), window, nullptr, isEarly});
    form->setShown(true);
    window->open(modal, staysAbove && active ? active->window()->windowHandle() : nullptr);
}

void QtDesktop::runModal(const std::shared_ptr<Form>& form) {
    const auto entry = find(*form);
    if (entry == open_.end())
        return; // closed by its own activation
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
    if (gone.window)
        gone.window->retire();
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
    return showMessage(message);
}

bool QtDesktop::showOpen(Form& owner, FileDialog& dialog) {
    const PointerScope arrow(*this, Pointer::Default);
    return showFileDialog(windowOf(owner), dialog, FileDialogKind::Open);
}

bool QtDesktop::showSave(Form& owner, FileDialog& dialog) {
    const PointerScope arrow(*this, Pointer::Default);
    return showFileDialog(windowOf(owner), dialog, FileDialogKind::Save);
}

SystemPrinter& QtDesktop::systemPrinter() {
    if (!printer_)
        printer_ = makeSystemPrinter();
    return *printer_;
}

bool QtDesktop::showPrint(Form& owner, PrintDialog& dialog) {
    const PointerScope arrow(*this, Pointer::Default);
    return systemPrinter().ask(windowOf(owner), dialog);
}

std::optional<std::string> QtDesktop::askText(Form& owner, const TextPrompt& prompt) {
    const PointerScope arrow(*this, Pointer::Default);
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
    static int argumentCount = 1;
    static char name[] = "k_genutil";
    static char* arguments[] = {name, nullptr};
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
