#include "platform/web/local_page.h"

#include <QWebEngineCookieStore>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInfo>

#include <utility>

namespace genutil {
namespace {

using Attribute = QWebEngineSettings::WebAttribute;

constexpr std::pair<Attribute, bool> pageSettings[] = {
    {Attribute::JavascriptEnabled, false}, {Attribute::LocalStorageEnabled, false},
    {Attribute::LocalContentCanAccessRemoteUrls, false}, {Attribute::HyperlinkAuditingEnabled, false},
    {Attribute::DnsPrefetchEnabled, false}, {Attribute::AutoLoadIconsForPage, false},
    {Attribute::PluginsEnabled, false}, {Attribute::PdfViewerEnabled, false},
    {Attribute::FullScreenSupportEnabled, false}, {Attribute::ScreenCaptureEnabled, false},
    {Attribute::WebGLEnabled, false}, {Attribute::WebRTCPublicInterfacesOnly, true},
    {Attribute::NavigateOnDropEnabled, false},
    {Attribute::ErrorPageEnabled, false}, // what cannot be shown is told in the product's words
};

std::string textOf(const QUrl& address) {
    return address.toEncoded().toStdString();
}

// What a page carries within itself.
bool isInline(const QUrl& address) {
    return address.scheme() == QLatin1String("data") || address.scheme() == QLatin1String("about");
}

} // namespace

void FolderOnly::interceptRequest(QWebEngineUrlRequestInfo& request) {
    const QUrl address = request.requestUrl();
    request.block(!isInline(address) && !folder.faultOf(textOf(address)).empty());
}

KeepsNothing::KeepsNothing() {
    setHttpCacheType(NoCache);
    setPersistentCookiesPolicy(NoPersistentCookies);
    setSpellCheckEnabled(false);
    cookieStore()->setCookieFilter([](const QWebEngineCookieStore::FilterRequest&) { return false; });
    setUrlRequestInterceptor(&files);
}

LocalPage::LocalPage(KeepsNothing& profile) : QWebEnginePage(&profile, nullptr), profile_(profile) {
    for (const auto& [attribute, on] : pageSettings)
        settings()->setAttribute(attribute, on);
    // Other programs' addresses (mail and the like) come to acceptNavigationRequest, which says that they are
    // refused.
    settings()->setUnknownUrlSchemePolicy(QWebEngineSettings::AllowUnknownUrlSchemesFromUserInteraction);
    // A link that asks for a window of its own is followed in this one.
    connect(this, &QWebEnginePage::newWindowRequested, this,
        [this](const QWebEngineNewWindowRequest& request) { load(request.requestedUrl()); });
}

void LocalPage::showMessage(const QString& title, const QString& text) {
    showsMessage_ = true;
    setHtml(QStringLiteral("<html><head><meta charset=\"utf-8\"><title>%1</title></head>"
                           "<body style=\"font-family: sans-serif; margin: 3em; overflow-wrap: anywhere\">"
                           "<h2>%1</h2><p>%2</p></body></html>")
                .arg(title.toHtmlEscaped(),
                    text.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>"))));
}

bool LocalPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) {
    if (!isMainFrame)
        return isInline(url) || profile_.files.folder.faultOf(textOf(url)).empty();
    // Only the message comes this way.
    if (isInline(url) && showsMessage_ && type == NavigationTypeTyped)
        return true;
    const std::string fault = profile_.files.folder.faultOf(textOf(url));
    if (fault.empty())
        showsMessage_ = false;
    else if (refused)
        refused(url, QString::fromStdString(fault));
    return fault.empty();
}

} // namespace genutil
