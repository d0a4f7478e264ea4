#pragma once

#include <QTextBrowser>

#include <map>

namespace kestal {

/// A page of help: a part of the manual, or a plain text. Nothing is read but files of the manual's folder;
/// addresses elsewhere show and open nothing.
class HelpPage : public QTextBrowser {
public:
    /// A manual that does not exist or cannot be read has no topics.
    explicit HelpPage(const QString& manual);

    /// Whether the manual has the topic: an element with the id "topic-<number>".
    bool hasTopic(int number) const { return topics_.contains(number); }
    void showTopic(int number);
    void showText(const QString& title, const QString& text);

    QVariant loadResource(int type, const QUrl& name) override;

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QByteArray fileOf(const QUrl& address) const;
    void follow(const QUrl& address);
    void load(const QString& name);
    void goTo(const QString& anchor);

    QString folder_; // canonical
    QString manual_; // the file's name
    QString page_;   // of the file that is shown; "" for a text
    QString anchor_; // what stands at the top; "" for the beginning
    std::map<int, QString> topics_;
};

} // namespace kestal
