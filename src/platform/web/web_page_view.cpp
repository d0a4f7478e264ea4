#include "platform/web/local_page.h"
#include "platform/web/page_view.h"
#include "platform/web/web_engine.h"

#include <QApplication>
#include <QVBoxLayout>
#include <QWebEngineContextMenuRequest>
#include <QWebEngineDownloadRequest>
#include <QWebEngineFindTextResult>
#include <QWebEngineHistory>
#include <QWebEngineLoadingInfo>
#include <QWebEngineView>
#include <QWheelEvent>

#include <algorithm>
#include <array>
#include <memory>
#include <set>

namespace genutil {
namespace {

constexpr int longestName = 500; // characters of a name that are shown
constexpr int loadStopped = -3;  // the engine's number for a page that gave way to another or to a download
constexpr int wheelStep = 120;

QString shortened(const QString& name) {
    return name.size() <= longestName ? name : name.left(longestName) + QChar(0x2026);
}

class WebPageView : public PageView {
public:
    explicit WebPageView(QWidget* parent);
    ~WebPageView() override;

    void open(const std::string& page) override;
    void command(PageCommand command) override;
    void search(const QString& text, bool backwards) override;
    void setZoom(double factor) override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Declared in the order in which they are made; they go the other way round.
    struct Engine {
        KeepsNothing profile;
        LocalPage page{profile};
        QWebEngineView view;
    };

    void end();
    // No view may outlive the engine, which ends with the application: the views go first.
    static void endAll();
    static void endAllFirst();

    void connectPage();
    void connectLoading();
    void followLink(const QEvent& event);
    void loadSucceeded();
    void loadFailed(const QWebEngineLoadingInfo& load);
    void refuseDownload(const QWebEngineDownloadRequest& download);
    void cannotShow(const QString& name, const QString& reason);
    void notOpened(const QString& name, const QString& reason);
    void tellNavigated();
    void tellState(bool isOnLink = false);

    static inline std::set<WebPageView*> all_;

    std::unique_ptr<Engine> engine_; // null once the application ends
    std::string asked_;
    QString sought_; // empty while nothing is looked for
    double zoom_ = 1;
    QUrl linkBelow_; // the pointer, or that has the keys
    QUrl pressedLink_;
    bool hasPage_ = false;           // something of what was asked for has been shown
    bool showsWhatWasAsked_ = false; // and not why it cannot be shown
    bool isLoading_ = false;
    bool committed_ = false; // what is being loaded has begun to show
    int wheel_ = 0;
};

WebPageView::WebPageView(QWidget* parent) : PageView(parent), engine_(std::make_unique<Engine>()) {
    all_.insert(this);
    endAllFirst();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(&engine_->view);
    engine_->view.setPage(&engine_->page);
    engine_->view.setAcceptDrops(false);
    engine_->view.setContextMenuPolicy(Qt::CustomContextMenu);
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(&engine_->view);
    connectPage();
    connectLoading();
    qApp->installEventFilter(this);
}

WebPageView::~WebPageView() {
    all_.erase(this);
    qApp->disconnect(this); // the focus moves while the view goes
    end();
}

void WebPageView::end() {
    if (!engine_)
        return;
    // What they tell while they go is nobody's business any more.
    for (QObject* part : {static_cast<QObject*>(&engine_->profile), static_cast<QObject*>(&engine_->page),
             static_cast<QObject*>(&engine_->view)})
        part->disconnect(this);
    engine_->page.refused = nullptr;
    engine_.reset();
}

void WebPageView::endAll() {
    for (WebPageView* view : all_)
        view->end();
}

// What was registered last is run first, and the engine registers its own with the first page it shows.
void WebPageView::endAllFirst() {
    qRemovePostRoutine(endAll);
    qAddPostRoutine(endAll);
}

void WebPageView::connectPage() {
    engine_->page.refused = [this](const QUrl& address, const QString& reason) {
        notOpened(address.toDisplayString(), reason);
    };
    connect(&engine_->page, &QWebEnginePage::selectionChanged, this, [this] { tellState(); });
    connect(&engine_->page, &QWebEnginePage::findTextFinished, this,
        [this](const QWebEngineFindTextResult& result) {
            if (isLoading_ && result.numberOfMatches() == 0)
                return; // what is still to come is searched when it is there
            found(result.activeMatch(), result.numberOfMatches());
        });
    // The engine waits for its event to end, and the menu stays as long as the user likes.
    connect(
        &engine_->view, &QWidget::customContextMenuRequested, this,
        [this] {
            const auto* request = engine_ ? engine_->view.lastContextMenuRequest() : nullptr;
            tellState(request && request->linkUrl().isValid());
            menuWanted();
        },
        Qt::QueuedConnection);
    connect(&engine_->page, &QWebEnginePage::linkHovered, this,
        [this](const QString& address) { linkBelow_ = QUrl(address); });
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, const QWidget* now) {
        if (now && isAncestorOf(now))
            focused();
    });
}

void WebPageView::connectLoading() {
    connect(&engine_->profile, &QWebEngineProfile::downloadRequested, this,
        [this](QWebEngineDownloadRequest* download) { refuseDownload(*download); });
    connect(&engine_->page, &QWebEnginePage::loadStarted, this, [this] { committed_ = false; });
    connect(&engine_->page, &QWebEnginePage::urlChanged, this, [this] { tellNavigated(); });
    connect(&engine_->page, &QWebEnginePage::loadingChanged, this, [this](const QWebEngineLoadingInfo& load) {
        isLoading_ = load.status() == QWebEngineLoadingInfo::LoadStartedStatus;
        if (load.status() == QWebEngineLoadingInfo::LoadSucceededStatus)
            loadSucceeded();
        else if (load.status() != QWebEngineLoadingInfo::LoadStartedStatus)
            loadFailed(load);
    });
    connect(&engine_->page, &QWebEnginePage::renderProcessTerminated, this,
        [this](QWebEnginePage::RenderProcessTerminationStatus status) {
            if (status != QWebEnginePage::NormalTerminationStatus)
                cannotShow(engine_->page.url().toDisplayString(),
                    QStringLiteral("The program that shows pages failed to show it."));
        });
}

void WebPageView::open(const std::string& page) {
    if (!engine_)
        return;
    asked_ = page;
    hasPage_ = showsWhatWasAsked_ = false;
    committed_ = false; // a load that takes the place of another does not tell that it starts
    const NamedPage named = findPage(page);
    engine_->profile.files.folder = named.fault.empty() ? PageFolder(named.file) : PageFolder();
    if (!named.fault.empty())
        return cannotShow(QString::fromStdString(page), QString::fromStdString(named.fault));
    QByteArray address = QByteArray::fromStdString(addressOfPath(named.file));
    if (!named.fragment.empty())
        address += '#' + QByteArray::fromStdString(named.fragment);
    engine_->page.load(QUrl::fromEncoded(address));
}

void WebPageView::command(PageCommand command) {
    if (!engine_)
        return;
    // What stands in place of a page is not read again: the page is.
    if (command == PageCommand::Reload && engine_->page.showsMessage())
        return open(asked_);
    constexpr auto action = [](PageCommand each) {
        switch (each) {
        case PageCommand::Back:
            return QWebEnginePage::Back;
        case PageCommand::Forward:
            return QWebEnginePage::Forward;
        case PageCommand::Reload:
            return QWebEnginePage::Reload;
        case PageCommand::Copy:
            return QWebEnginePage::Copy;
        case PageCommand::CopyLink:
            return QWebEnginePage::CopyLinkToClipboard;
        case PageCommand::SelectAll:
            return QWebEnginePage::SelectAll;
        }
        return QWebEnginePage::NoWebAction;
    };
    engine_->page.triggerAction(action(command));
}

void WebPageView::search(const QString& text, bool backwards) {
    sought_ = text;
    if (engine_)
        engine_->page.findText(text, backwards ? QWebEnginePage::FindBackward : QWebEnginePage::FindFlags());
}

void WebPageView::setZoom(double factor) {
    zoom_ = factor;
    if (engine_)
        engine_->page.setZoomFactor(factor);
}

bool WebPageView::eventFilter(QObject* watched, QEvent* event) {
    constexpr std::array heard{
        QEvent::Wheel, QEvent::KeyPress, QEvent::MouseButtonPress, QEvent::MouseButtonRelease};
    if (std::ranges::find(heard, event->type()) == heard.end())
        return false;
    // Some of what the engine sends events to is of no type that could be asked for.
    const QList<QWidget*> parts = findChildren<QWidget*>();
    if (std::ranges::find(parts, watched) == parts.end())
        return false;
    if (event->type() != QEvent::Wheel) {
        followLink(*event);
        return false;
    }
    const auto& wheel = static_cast<const QWheelEvent&>(*event);
    if (!(wheel.modifiers() & Qt::ControlModifier))
        return false;
    wheel_ += wheel.angleDelta().y();
    if (const int steps = wheel_ / wheelStep; steps != 0) {
        wheel_ -= steps * wheelStep;
        zoomWanted(steps);
    }
    return true;
}

// The engine drops links of some kinds without a word to anybody: scripts, data, pages of its own.
void WebPageView::followLink(const QEvent& event) {
    const bool isClick = event.type() == QEvent::MouseButtonRelease &&
                         static_cast<const QMouseEvent&>(event).button() == Qt::LeftButton;
    const bool isKey =
        event.type() == QEvent::KeyPress && static_cast<const QKeyEvent&>(event).key() == Qt::Key_Return;
    if (event.type() == QEvent::MouseButtonPress)
        pressedLink_ = linkBelow_;
    if ((!isKey && !(isClick && pressedLink_ == linkBelow_)) || linkBelow_.isEmpty() || !engine_)
        return;
    const std::string fault = engine_->profile.files.folder.faultOf(linkBelow_.toEncoded().toStdString());
    if (!fault.empty())
        notOpened(linkBelow_.toDisplayString(), QString::fromStdString(fault));
}

void WebPageView::loadSucceeded() {
    if (!committed_)
        tellNavigated();
    showsWhatWasAsked_ = !engine_->page.showsMessage();
    // Until now only a part of the page, or an earlier one, was searched.
    if (!sought_.isEmpty()) {
        engine_->page.findText(QString()); // from the start again, not on
        search(sought_, false);
    }
}

void WebPageView::loadFailed(const QWebEngineLoadingInfo& load) {
    if (load.status() == QWebEngineLoadingInfo::LoadFailedStatus && load.errorCode() != loadStopped)
        cannotShow(load.url().toDisplayString(), load.errorString());
    else if (!hasPage_ && !engine_->page.showsMessage() && load.url() == engine_->page.requestedUrl())
        tellNavigated(); // nothing more will come
    if (engine_ && !sought_.isEmpty())
        search(sought_, false); // in what there is
}

void WebPageView::refuseDownload(const QWebEngineDownloadRequest& download) {
    const QString name = download.url().toDisplayString();
    const QString reason = QStringLiteral("It is not a page but data of type %1.").arg(download.mimeType());
    if (showsWhatWasAsked_)
        notOpened(name, reason);
    else
        cannotShow(name, reason);
}

void WebPageView::cannotShow(const QString& name, const QString& reason) {
    engine_->page.showMessage(
        QStringLiteral("This page cannot be shown"), shortened(name) + QLatin1Char('\n') + reason);
}

void WebPageView::notOpened(const QString& name, const QString& reason) {
    refused(QStringLiteral("Not opened. %1 %2").arg(reason, shortened(name)));
}

void WebPageView::tellNavigated() {
    if (!hasPage_)
        endAllFirst();
    committed_ = true;
    hasPage_ = true;
    engine_->page.setZoomFactor(zoom_);
    tellState();
    navigateComplete();
}

void WebPageView::tellState(bool isOnLink) {
    if (!engine_)
        return;
    const QWebEngineHistory& history = *engine_->page.history();
    stateChanged({.canGoBack = history.canGoBack(),
        .canGoForward = history.canGoForward(),
        .hasSelection = engine_->page.hasSelection(),
        .isOnLink = isOnLink});
}

} // namespace
} // namespace genutil

extern "C" Q_DECL_EXPORT genutil::PageView* k_genutil_make_page_view_1(QWidget* parent) {
    genutil::startWebEngine();
    return new genutil::WebPageView(parent);
}
