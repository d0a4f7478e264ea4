#include "platform/qt/form/control_look.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QPalette>
#include <QPointer>
#include <QToolTip>

namespace genutil {
namespace {

struct Colours {
    QColor background, text;
};

Colours coloursOf(BackColor meaning, const QPalette& usual) {
    const bool isDark = usual.color(QPalette::Base).lightness() < 128;
    switch (meaning) {
    case BackColor::Info: {
        // The theme's own light yellow where it has one; a dark theme's boxes stay dark.
        const QColor tip = QToolTip::palette().color(QPalette::ToolTipBase);
        return {isDark                  ? QColor(62, 58, 36)
                : tip.lightness() > 200 ? tip
                                        : QColor(255, 255, 225),
            isDark ? QColor(245, 240, 220) : QColor(Qt::black)};
    }
    case BackColor::Light3D:
        return {usual.color(QPalette::Button), usual.color(QPalette::ButtonText)};
    case BackColor::Refused:
        return isDark ? Colours{QColor(110, 34, 34), Qt::white} : Colours{QColor(255, 204, 204), Qt::black};
    case BackColor::Normal:
        break;
    }
    return {usual.color(QPalette::Base), usual.color(QPalette::Text)};
}

constexpr int barWidth = 3, barDistance = 5; // pixels

// The bar is the view's neighbour, and goes with it.
class Mark : public QObject {
public:
    explicit Mark(QWidget& view) : QObject(&view), view_(view), bar_(new Bar) {
        setObjectName(QLatin1String(name));
        bar_->setAttribute(Qt::WA_TransparentForMouseEvents);
        view.installEventFilter(this);
        follow();
    }
    ~Mark() override { delete bar_; }

    static constexpr const char* name = "mark";

    bool eventFilter(QObject*, QEvent* event) override {
        switch (event->type()) {
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::Show:
        case QEvent::Hide:
        case QEvent::ParentChange:
            follow();
            break;
        default:
            break;
        }
        return false;
    }

private:
    class Bar : public QWidget {
        void paintEvent(QPaintEvent*) override {
            QPainter(this).fillRect(rect(), palette().color(QPalette::Highlight));
        }
    };

    void follow() {
        if (!bar_)
            return;
        if (bar_->parentWidget() != view_.parentWidget())
            bar_->setParent(view_.parentWidget());
        bar_->setGeometry(view_.x() - barDistance, view_.y() + 1, barWidth, view_.height() - 2);
        bar_->setVisible(!view_.isHidden() && view_.parentWidget());
    }

    QWidget& view_;
    QPointer<QWidget> bar_;
};

// Shows the colours anew when the theme changes.
class ThemeFollower : public QObject {
public:
    explicit ThemeFollower(QWidget& view) : QObject(&view), view_(view) {
        setObjectName(QLatin1String(name));
        view.installEventFilter(this);
    }

    static constexpr const char* name = "themeFollower";
    BackColor meaning = BackColor::Normal;

    void show() const;
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::ApplicationPaletteChange)
            show();
        return false;
    }

private:
    QWidget& view_;
};

void ThemeFollower::show() const {
    // A label shows its background only when it is told to.
    if (qobject_cast<QLabel*>(&view_))
        view_.setAutoFillBackground(meaning != BackColor::Normal);
    if (meaning == BackColor::Normal) {
        view_.setPalette(QPalette());
        return;
    }
    const QPalette usual = QApplication::palette(&view_);
    const auto [background, text] = coloursOf(meaning, usual);
    QPalette palette = usual;
    for (const auto role : {QPalette::Base, QPalette::Button, QPalette::Window})
        palette.setColor(role, background);
    // The text of what is disabled stays the theme's pale one.
    for (const auto group : {QPalette::Active, QPalette::Inactive})
        for (const auto role : {QPalette::Text, QPalette::ButtonText, QPalette::WindowText})
            palette.setColor(group, role, text);
    view_.setPalette(palette);
}

} // namespace

void showBackColor(QWidget& view, BackColor meaning) {
    auto* follower = static_cast<ThemeFollower*>(
        view.findChild<QObject*>(QLatin1String(ThemeFollower::name), Qt::FindDirectChildrenOnly));
    if (!follower && meaning == BackColor::Normal)
        return; // it has never had another
    if (!follower)
        follower = new ThemeFollower(view);
    follower->meaning = meaning;
    follower->show();
}

void showMark(QWidget& view, bool marked) {
    QObject* const shown = view.findChild<QObject*>(QLatin1String(Mark::name), Qt::FindDirectChildrenOnly);
    if (!marked && !shown)
        return;
    if (!marked)
        delete shown;
    else if (!shown)
        new Mark(view);
    view.setAccessibleDescription(
        marked ? (view.toolTip() + QStringLiteral(" Differs from the default.")).trimmed() : QString());
}

} // namespace genutil
