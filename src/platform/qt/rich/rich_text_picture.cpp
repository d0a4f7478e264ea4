#include "platform/qt/rich/rich_text_picture.h"

#include "platform/qt/twip_scale.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QImageReader>
#include <QPainter>
#include <QTextDocument>

#include <algorithm>
#include <cstring>

namespace genutil::richtext {
namespace {

constexpr int KeptPicture = QTextFormat::UserProperty + 101; // std::shared_ptr<const text::Picture>
constexpr int ShownSize = QTextFormat::UserProperty + 102;   // QSizeF, pixels

constexpr double longestSide = 2112; // pixels; 22 inches, the longest side of a page
constexpr QSizeF brokenSize{32, 32};
constexpr int cacheSize = 64 * 1024;  // KiB
constexpr qint64 mostDots = 32 << 20; // of the file; 128 MiB once decoded

// Reads `bytes`, which must outlive the reader.
struct MemoryReader {
    explicit MemoryReader(const text::Picture& picture)
        : bytes(QByteArray::fromRawData(picture.bytes.data(), qsizetype(picture.bytes.size()))) {
        device.setBuffer(&bytes);
        device.open(QIODevice::ReadOnly);
        reader.setDevice(&device);
        // No other of the toolkit's formats gets to see the bytes.
        reader.setAutoDetectImageFormat(false);
        reader.setFormat(picture.kind == text::Picture::Kind::Png ? "png" : "jpeg");
    }
    QByteArray bytes;
    QBuffer device;
    QImageReader reader;
};

QSizeF shownSize(const text::Picture& picture) {
    const double twipsPerPixel = TwipScale::ofScreen().twipsPerPixel();
    QSizeF size(picture.width / twipsPerPixel, picture.height / twipsPerPixel);
    if (size.width() <= 0 || size.height() <= 0) {
        const QSizeF own = MemoryReader(picture).reader.size();
        const QSizeF known = own.isEmpty() ? brokenSize : own;
        // With one side given the other keeps the proportion.
        if (size.width() > 0)
            size.setHeight(size.width() * known.height() / known.width());
        else if (size.height() > 0)
            size.setWidth(size.height() * known.width() / known.height());
        else
            size = known;
    }
    return {std::clamp(size.width(), 1.0, longestSide), std::clamp(size.height(), 1.0, longestSide)};
}

// The layout's pixels to one of the screen's at a zoom of 1.
double zoomOf(const QTextDocument& document) {
    const QPaintDevice* device = document.documentLayout()->paintDevice();
    return device ? device->logicalDpiY() * TwipScale::ofScreen().twipsPerPixel() / 1440 : 1;
}

} // namespace

void setPicture(QTextCharFormat& format, const text::Picture& picture) {
    format.setObjectType(pictureObject);
    format.setProperty(KeptPicture,
        QVariant::fromValue(std::shared_ptr<const text::Picture>(std::make_shared<text::Picture>(picture))));
    format.setProperty(ShownSize, shownSize(picture));
}

std::shared_ptr<const text::Picture> picture(const QTextFormat& format) {
    if (format.objectType() != pictureObject) // what is typed behind a picture has its other properties
        return nullptr;
    return format.property(KeptPicture).value<std::shared_ptr<const text::Picture>>();
}

PictureObjects::PictureObjects(QObject* parent) : QObject(parent), cache_(cacheSize) {}

void* PictureObjects::qt_metacast(const char* name) {
    if (std::strcmp(name, qobject_interface_iid<QTextObjectInterface*>()) == 0)
        return static_cast<QTextObjectInterface*>(this);
    return QObject::qt_metacast(name);
}

QSizeF PictureObjects::intrinsicSize(QTextDocument* document, int, const QTextFormat& format) {
    return format.property(ShownSize).toSizeF() * zoomOf(*document);
}

QImage PictureObjects::decoded(const std::shared_ptr<const text::Picture>& picture, QSize dots) {
    if (const Decoded* kept = cache_.object(picture.get());
        kept && (kept->dots.width() >= dots.width() || kept->isWhole))
        return kept->image;
    auto fresh = std::make_unique<Decoded>(Decoded{picture, dots, true, {}});
    MemoryReader source(*picture);
    const QSize own = source.reader.size();
    if (!own.isEmpty() && qint64(own.width()) * own.height() <= mostDots) {
        fresh->isWhole = dots.width() >= own.width() || dots.height() >= own.height();
        if (!fresh->isWhole)
            source.reader.setScaledSize(dots);
        fresh->image = source.reader.read();
    }
    const QImage image = fresh->image;
    cache_.insert(picture.get(), fresh.release(), 1 + image.sizeInBytes() / 1024);
    return image;
}

void PictureObjects::drawObject(
    QPainter* painter, const QRectF& rect, QTextDocument*, int, const QTextFormat& format) {
    const auto shown = picture(format);
    const QSizeF dots = rect.size() * painter->device()->devicePixelRatio();
    if (const QImage image = shown ? decoded(shown, dots.toSize()) : QImage(); !image.isNull()) {
        painter->setRenderHint(QPainter::SmoothPixmapTransform);
        painter->drawImage(rect, image);
        return;
    }
    painter->save();
    painter->setPen(QColor(128, 128, 128)); // seen on light and on dark
    const QRectF frame = rect.adjusted(0.5, 0.5, -0.5, -0.5);
    painter->drawRect(frame);
    painter->drawLine(frame.topLeft(), frame.bottomRight());
    painter->drawLine(frame.bottomLeft(), frame.topRight());
    painter->restore();
}

} // namespace genutil::richtext
