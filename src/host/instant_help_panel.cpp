#include "host/instant_help_panel.h"

#include <QApplication>
#include <QCursor>
#include <QEvent>
#include <QLabel>
#include <QPointer>
#include <QScreen>
#include <QToolTip>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace kestal {
namespace {

constexpr int gap = 6; // pixels, between the panel and the window
constexpr std::array widths{420, 560, 700, 320, 240, 180};

bool coversAny(const QRect& place, const std::vector<QRect>& parts) {
    return std::ranges::any_of(parts, [&](const QRect& part) { return place.intersects(part); });
}

QRect keptInside(QRect place, const QRect& screen) {
    place.moveLeft(
        std::clamp(place.left(), screen.left(), std::max(screen.left(), screen.right() + 1 - place.width())));
    place.moveTop(
        std::clamp(place.top(), screen.top(), std::max(screen.top(), screen.bottom() + 1 - place.height())));
    return place;
}

} // namespace

QRect placeBeside(const QRect& window, const QRect& screen, const PanelSizes& sizes,
    const std::vector<QRect>& visible, const QRect& shown) {
    for (const QSize size : sizes)
        for (const QPoint corner : {QPoint(window.right() + 1 + gap, window.top()),
                 QPoint(window.left() - gap - size.width(), window.top()),
                 QPoint(window.left(), window.bottom() + 1 + gap),
                 QPoint(window.left(), window.top() - gap - size.height())}) {
            // Along the window it may be pushed, but not onto it.
            const QRect place = keptInside({corner, size}, screen);
            if (screen.contains(place) && !place.intersects(window))
                return place;
        }
    if (std::ranges::count(sizes, shown.size()) > 0 && screen.contains(shown) && !coversAny(shown, visible))
        return shown;
    // The buttons of a dialog are at its lower right: that corner is the last choice.
    const auto inCorner = [&](const QSize& size, bool isRight, bool isBelow) {
        return QRect(QPoint(isRight ? screen.right() + 1 - size.width() : screen.left(),
                         isBelow ? screen.bottom() + 1 - size.height() : screen.top()),
            size);
    };
    for (const QSize& size : sizes)
        for (const auto& [isRight, isBelow] : {std::pair(true, false), {false, true}, {false, false}})
            if (const QRect place = inCorner(size, isRight, isBelow);
                screen.contains(place) && !coversAny(place, visible))
                return place;
    return inCorner(sizes.front(), true, true);
}

InstantHelpPanel::InstantHelpPanel(QWidget& window)
    : QFrame(&window, Qt::ToolTip | Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus),
      window_(window), title_(new QLabel), text_(new QLabel) {
    setObjectName("pnlInstantHelp");
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setPalette(QToolTip::palette());
    setForegroundRole(QPalette::ToolTipText);
    setBackgroundRole(QPalette::ToolTipBase);
    setAutoFillBackground(true);
    auto* const layout = new QVBoxLayout(this);
    for (QLabel* const label : {title_, text_}) {
        label->setTextFormat(Qt::PlainText);
        label->setForegroundRole(QPalette::ToolTipText);
        label->setWordWrap(true);
        layout->addWidget(label);
    }
    title_->setObjectName("lblHelpTitle");
    text_->setObjectName("lblHelpText");
    QFont bold = title_->font();
    bold.setBold(true);
    title_->setFont(bold);
    window.installEventFilter(this);
}

void InstantHelpPanel::showTopic(const QString& title, const QString& text) {
    // A window's topic is a page of the manual; its first paragraph says what the window is for.
    const qsizetype end = text.indexOf(QStringLiteral("\n\n"));
    title_->setText(title);
    text_->setText(end < 0 ? text : text.left(end) + QStringLiteral("\n\nF1 shows the whole topic."));
    place();
    show();
    raise();
}

bool InstantHelpPanel::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
        if (isVisible() && watched == &window_)
            place();
        break;
    case QEvent::Hide:
    case QEvent::WindowDeactivate:
        hide();
        break;
    default:
        break;
    }
    return false;
}

PanelSizes InstantHelpPanel::sizes() const {
    PanelSizes result;
    for (const int width : widths)
        result.emplace_back(width, layout()->totalHeightForWidth(width) + 2 * frameWidth());
    return result;
}

void InstantHelpPanel::place() {
    // What the user points at and what has the keys, with something of what stands around them.
    constexpr int around = 24;
    const QMargins margins(around, around, around, around);
    std::vector<QRect> visible{QRect(QCursor::pos(), QSize(1, 1)).marginsAdded(margins)};
    if (const QWidget* const focused = window_.focusWidget();
        focused && focused->height() < window_.height() / 2)
        visible.push_back(QRect(focused->mapToGlobal(QPoint()), focused->size()).marginsAdded(margins));
    setGeometry(placeBeside(window_.frameGeometry(), window_.screen()->availableGeometry(), sizes(), visible,
        isVisible() ? geometry() : QRect()));
}

void showInstantHelpBeside(const QString& title, const QString& text) {
    static QPointer<InstantHelpPanel> panel;
    QWidget* const window = QApplication::activeWindow();
    if (!window)
        return;
    if (!panel || panel->parentWidget() != window) {
        delete panel;
        panel = new InstantHelpPanel(*window);
    }
    panel->showTopic(title, text);
}

} // namespace kestal
