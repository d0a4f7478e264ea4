#include "host/help_page.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QScrollBar>

namespace kestal {
namespace {

constexpr qint64 largestFile = 32 << 20; // bytes

} // namespace

HelpPage::HelpPage(const QString& manual)
    : folder_(QFileInfo(manual).dir().canonicalPath()), manual_(QFileInfo(manual).fileName()) {
    setObjectName("webHelp");
    setAccessibleName("Help text");
    setOpenLinks(false);
    setFrameShape(QFrame::NoFrame);
    setTabChangesFocus(true);
    connect(this, &QTextBrowser::anchorClicked, this, [this](const QUrl& address) { follow(address); });
    static const QRegularExpression id("\\bid\\s*=\\s*[\"'](topic-([0-9]{1,9}))[\"']");
    const QString text = QString::fromUtf8(fileOf(QUrl(manual_)));
    for (auto found = id.globalMatch(text); found.hasNext();) {
        const auto match = found.next();
        topics_.insert({match.captured(2).toInt(), match.captured(1)});
    }
}

QByteArray HelpPage::fileOf(const QUrl& address) const {
    if (!address.isRelative() && !address.isLocalFile())
        return {};
    // Links that lead out of the folder are followed to the end before anything is read.
    const QString path = QFileInfo(QDir(folder_).filePath(address.path())).canonicalFilePath();
    QFile file(path);
    if (folder_.isEmpty() || !path.startsWith(folder_ + '/') || !QFileInfo(path).isFile() ||
        file.size() > largestFile || !file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

QVariant HelpPage::loadResource(int, const QUrl& name) {
    const QByteArray contents = fileOf(name);
    return contents.isEmpty() ? QVariant() : QVariant(contents);
}

void HelpPage::load(const QString& name) {
    if (page_ == name)
        return;
    page_ = name;
    setHtml(QString::fromUtf8(fileOf(QUrl(name))));
}

void HelpPage::goTo(const QString& anchor) {
    anchor_ = anchor;
    if (anchor.isEmpty())
        verticalScrollBar()->setValue(0);
    else
        scrollToAnchor(anchor);
}

void HelpPage::showTopic(int number) {
    load(manual_);
    goTo(topics_.at(number));
}

void HelpPage::showText(const QString& title, const QString& text) {
    page_.clear();
    setHtml("<h2>" + title.toHtmlEscaped() + "</h2><p>" +
            text.toHtmlEscaped().replace("\n\n", "</p><p>").replace("\n", "<br>") + "</p>");
    goTo({});
}

void HelpPage::follow(const QUrl& address) {
    const QString name = address.path();
    if (!name.isEmpty() && name != page_) {
        if (fileOf(address).isEmpty())
            return;
        load(name);
    }
    goTo(address.fragment());
}

// Where a place of the page stands is not known before the page has its width.
void HelpPage::showEvent(QShowEvent* event) {
    QTextBrowser::showEvent(event);
    goTo(anchor_);
}

void HelpPage::resizeEvent(QResizeEvent* event) {
    QTextBrowser::resizeEvent(event);
    goTo(anchor_);
}

} // namespace kestal
