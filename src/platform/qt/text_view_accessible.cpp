#include "platform/qt/text_view_accessible.h"

#include "platform/qt/text_view.h"

#include <QAccessibleWidget>

namespace genutil {
namespace {

class TextViewAccessible : public QAccessibleWidget {
public:
    explicit TextViewAccessible(TextView* view)
        : QAccessibleWidget(view, QAccessible::EditableText), view_(view) {}

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.readOnly = true;
        state.multiLine = true;
        return state;
    }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? view_->visibleText() : QAccessibleWidget::text(kind);
    }

private:
    TextView* view_;
};

QAccessibleInterface* create(const QString&, QObject* object) {
    auto* view = dynamic_cast<TextView*>(object);
    return view ? new TextViewAccessible(view) : nullptr;
}

} // namespace

void installTextViewAccessibility() {
    static const bool installed = (QAccessible::installFactory(create), true);
    static_cast<void>(installed);
}

} // namespace genutil
