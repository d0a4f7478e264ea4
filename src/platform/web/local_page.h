#pragma once

#include "platform/web/page_rules.h"

#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineUrlRequestInterceptor>

#include <functional>

namespace genutil {

// Lets through what the page's folder holds, and nothing else: every request of every frame, redirected ones
// included, comes here before it goes anywhere.
class FolderOnly : public QWebEngineUrlRequestInterceptor {
public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

    PageFolder folder;

    void interceptRequest(QWebEngineUrlRequestInfo& request) override;
};

// A profile that keeps nothing: no cookies, no cache on disk, no storage.
class KeepsNothing : public QWebEngineProfile {
public:
    KeepsNothing();

    FolderOnly files;
};

// A page that runs no scripts and goes nowhere but to pages of its folder. Help pages need no scripts, and a
// script's peer connection would send datagrams that pass no interceptor.
class LocalPage : public QWebEnginePage {
public:
    explicit LocalPage(KeepsNothing& profile);

    // Shows text in place of a page. Both are plain texts.
    void showMessage(const QString& title, const QString& text);
    bool showsMessage() const { return showsMessage_; }

    // Hears of the address that was not gone to, and why.
    std::function<void(const QUrl& address, const QString& reason)> refused;

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    QStringList chooseFiles(FileSelectionMode, const QStringList&, const QStringList&) override { return {}; }
    void javaScriptConsoleMessage(
        JavaScriptConsoleMessageLevel, const QString&, int, const QString&) override {}

private:
    KeepsNothing& profile_;
    bool showsMessage_ = false;
};

} // namespace genutil
