#pragma once

#include "text/rich_text.h"

#include <QCache>
#include <QImage>
#include <QTextObjectInterface>

#include <memory>

namespace genutil::richtext {

// Makes the format of a picture's one character. It keeps the picture's bytes, whether they can be shown or
// not.
void setPicture(QTextCharFormat& format, const text::Picture& picture);
// Null for a format of characters, whatever they were typed behind.
std::shared_ptr<const text::Picture> picture(const QTextFormat& format);

// The kind of object that those characters are.
inline constexpr int pictureObject = QTextFormat::UserObject + 1;

// Lays out and paints the pictures of a document; a picture that cannot be decoded is a crossed frame.
// Decodes only what is painted, no larger than it is painted, and keeps a bounded amount of it.
class PictureObjects : public QObject, public QTextObjectInterface {
public:
    explicit PictureObjects(QObject* parent);

    QSizeF intrinsicSize(QTextDocument* document, int position, const QTextFormat& format) override;
    void drawObject(QPainter* painter, const QRectF& rect, QTextDocument* document, int position,
        const QTextFormat& format) override;

    // The layout asks for the interface by the names that the toolkit's object compiler would have written.
    void* qt_metacast(const char* name) override;

private:
    struct Decoded {
        std::shared_ptr<const text::Picture> picture;
        QSize dots;   // asked for
        bool isWhole; // no more dots to be had
        QImage image; // null for a broken picture
    };
    QImage decoded(const std::shared_ptr<const text::Picture>& picture, QSize dots);

    QCache<const text::Picture*, Decoded> cache_; // costs in KiB
};

} // namespace genutil::richtext
