#include "platform/qt/form/bind.h"

#include "platform/qt/fonts.h"
#include "platform/qt/form/burst_gate.h"
#include "platform/qt/form/control_look.h"
#include "platform/qt/form/focus_tie.h"
#include "platform/qt/form/gauge_bar.h"
#include "platform/qt/form/report_view.h"
#include "platform/qt/form/scrolled_part.h"
#include "platform/qt/grid/grid_view.h"
#include "platform/qt/tie.h"
#include "platform/qt/twip_scale.h"

#include <QAbstractItemModel>
#include <QAbstractScrollArea>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFrame>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QTabWidget>

#include <array>
#include <memory>

namespace genutil {
namespace {

QString toQt(const std::string& text) {
    return QString::fromStdString(text);
}

// A caption as a screen reader speaks it: without the mark of the access key.
QString spoken(const std::string& caption) {
    QString text = toQt(caption);
    text.replace(QLatin1String("&&"), QString(QChar(0)))
        .remove(QLatin1Char('&'))
        .replace(QChar(0), QLatin1Char('&'));
    return text.trimmed();
}

void applyCommon(QWidget& view, const Control& model, Aspect aspect) {
    if (aspect == Aspect::Enabled)
        view.setEnabled(model.enabled);
    else if (aspect == Aspect::Visible)
        view.setVisible(model.visible);
    else if (aspect == Aspect::Font)
        view.setFont(toQFont(model.font));
    else if (aspect == Aspect::Help)
        view.setToolTip(toQt(model.toolTip));
    else if (aspect == Aspect::Colour)
        showBackColor(view, model.backColor);
    if (aspect == Aspect::Mark || aspect == Aspect::Help)
        showMark(view, model.marked);
}

constexpr std::array everyAspect{Aspect::Font, Aspect::Items, Aspect::Caption, Aspect::Text, Aspect::Value,
    Aspect::Locked, Aspect::Help, Aspect::Enabled, Aspect::Visible, Aspect::Mark};

// What all kinds share. `applyOwn` puts the kind's own aspects into the view; it runs with the view's signals
// blocked.
template<class View, class ApplyOwn>
InputTie* tieWidget(View* view, Control& model, ApplyOwn applyOwn) {
    const auto apply = [view, &model, applyOwn](Aspect aspect) {
        const QSignalBlocker blocked(view);
        applyCommon(*view, model, aspect);
        applyOwn(aspect);
    };
    view->setObjectName(toQt(model.name()));
    if (view->accessibleName().isEmpty())
        view->setAccessibleName(toQt(model.name()));
    auto* tie = new FocusTie(view, model, apply);
    for (const Aspect aspect : everyAspect)
        apply(aspect);
    if (model.backColor != BackColor::Normal)
        apply(Aspect::Colour);
    return tie;
}

template<class View, class Model>
void showCaption(View& view, const Model& model) {
    view.setText(toQt(model.caption));
    view.setAccessibleName(model.caption.get().empty() ? toQt(model.name()) : spoken(model.caption));
}

// After a user's act the model may hold another state than the view: it refused, or a handler changed it
// back.
template<class View, class Act, class Restore>
void actAndRestore(View* view, Control& model, Act act, Restore restore) {
    const QPointer<View> left(view);
    report(model, [&] {
        if (!model.canFocus() || takeFocus(model))
            act();
        if (left) {
            const QSignalBlocker blocked(view);
            restore();
        }
    });
}

// The number of UTF-8 units of the text's first `units` UTF-16 units, and back.
std::size_t utf8Size(const QString& text, qsizetype units) {
    return std::size_t(QStringView(text).first(units).toUtf8().size());
}
int utf16Size(const std::string& text, std::size_t units) {
    return int(QString::fromUtf8(text.data(), qsizetype(std::min(units, text.size()))).size());
}

} // namespace

void bind(QLabel* view, Label& model) {
    view->setTextFormat(Qt::PlainText);
    // A caption that changes faster than the screen is shown once a refresh, the last one with the pending
    // events.
    struct Pace {
        BurstGate gate;
        bool pending = false;
    };
    const auto pace = std::make_shared<Pace>();
    tieWidget(view, model, [view, &model, pace](Aspect aspect) {
        if (aspect != Aspect::Caption || pace->pending)
            return;
        if (!view->isVisible() || pace->gate.pass()) {
            showCaption(*view, model);
            return;
        }
        pace->pending = true;
        const auto form = model.form().weak_from_this();
        QMetaObject::invokeMethod(
            view,
            [view, &model, pace, form] {
                pace->pending = false;
                if (const auto alive = form.lock())
                    showCaption(*view, model);
            },
            Qt::QueuedConnection);
    });
}

void bind(QFrame* view, Panel& model) {
    tieWidget(view, model, [](Aspect) {});
}

void bind(QPushButton* view, Button& model) {
    auto* tie = tieWidget(view, model, [view, &model](Aspect aspect) {
        if (aspect == Aspect::Caption)
            showCaption(*view, model);
        else if (aspect == Aspect::Value)
            view->setDefault(model.isDefault);
    });
    QObject::connect(view, &QPushButton::clicked, tie, [view, &model] {
        actAndRestore(
            view, model, [&] { model.userPress(); }, [] {});
    });
}

void bind(QAction* view, MenuItem& model) {
    const auto apply = [view, &model](Aspect) {
        view->setSeparator(model.isSeparator());
        view->setText(model.isSeparator() ? QString() : toQt(model.caption));
        view->setEnabled(model.enabled);
        view->setVisible(model.visible);
        view->setCheckable(model.isCheckable || model.checked);
        view->setChecked(model.checked);
        view->setToolTip(toQt(model.toolTip));
    };
    view->setObjectName(toQt(model.name()));
    if (!model.shortcut().empty())
        view->setShortcuts(QKeySequence::listFromString(toQt(model.shortcut()), QKeySequence::PortableText));
    auto* tie = new Tie(view, model, apply);
    apply(Aspect::Caption);
    QObject::connect(view, &QAction::triggered, tie, [view, &model, apply] {
        actAndRestore(
            view, model, [&] { model.userChoose(); }, [&] { apply(Aspect::Value); });
    });
}

void bind(QLineEdit* view, TextBox& model) {
    const auto showText = [view, &model] {
        if (view->text() != toQt(model.text))
            view->setText(toQt(model.text));
    };
    auto* tie = tieWidget(view, model, [view, &model, showText](Aspect aspect) {
        if (aspect == Aspect::Text) {
            showText();
        } else if (aspect == Aspect::Locked) {
            view->setReadOnly(model.locked);
        } else if (aspect == Aspect::Value) {
            const int start = utf16Size(model.text, model.selectionStart);
            view->setSelection(
                start, utf16Size(model.text, model.selectionStart + model.selectionLength) - start);
        }
    });
    const auto reportSelection = [view, &model] {
        const QString text = view->text();
        const qsizetype start = view->hasSelectedText() ? view->selectionStart() : view->cursorPosition();
        model.selectionStart = utf8Size(text, start);
        model.selectionLength = utf8Size(text, start + view->selectedText().size()) - model.selectionStart;
    };
    QObject::connect(view, &QLineEdit::selectionChanged, tie, reportSelection);
    QObject::connect(view, &QLineEdit::cursorPositionChanged, tie, reportSelection);
    QObject::connect(view, &QLineEdit::textEdited, tie, [view, &model, showText](const QString& text) {
        actAndRestore(
            view, model, [&] { model.userEdit(text.toStdString()); }, showText);
    });
}

void bind(QCheckBox* view, CheckBox& model) {
    auto* tie = tieWidget(view, model, [view, &model](Aspect aspect) {
        if (aspect == Aspect::Caption)
            showCaption(*view, model);
        else if (aspect == Aspect::Value)
            view->setChecked(model.ticked);
    });
    QObject::connect(view, &QCheckBox::clicked, tie, [view, &model] {
        actAndRestore(
            view, model, [&] { model.userToggle(); }, [&] { view->setChecked(model.ticked); });
    });
}

void bind(QRadioButton* view, OptionButton& model) {
    view->setAutoExclusive(false); // the form keeps the rule of the group
    auto* tie = tieWidget(view, model, [view, &model](Aspect aspect) {
        if (aspect == Aspect::Caption)
            showCaption(*view, model);
        else if (aspect == Aspect::Value)
            view->setChecked(model.selected);
    });
    QObject::connect(view, &QRadioButton::clicked, tie, [view, &model] {
        actAndRestore(
            view, model, [&] { model.userSelect(); }, [&] { view->setChecked(model.selected); });
    });
}

void bind(QComboBox* view, ComboBox& model) {
    guardWheel(view);
    auto* tie = tieWidget(view, model, [view, &model](Aspect aspect) {
        if (aspect == Aspect::Items) {
            view->clear();
            for (const ListItem& item : model.items.get())
                view->addItem(toQt(item.text));
        }
        if (aspect == Aspect::Items || aspect == Aspect::Value)
            view->setCurrentIndex(model.listIndex);
    });
    QObject::connect(view, &QComboBox::activated, tie, [view, &model](int index) {
        actAndRestore(
            view, model, [&] { model.userSelect(std::int16_t(index)); },
            [&] { view->setCurrentIndex(model.listIndex); });
    });
}

void bind(QTabWidget* view, Tabs& model) {
    for (std::size_t i = std::size_t(view->count()); i < model.titles.size(); ++i)
        view->addTab(new QWidget, QString());
    for (std::size_t i = 0; i < model.titles.size(); ++i)
        view->setTabText(int(i), toQt(model.titles[i]));
    auto* tie = tieWidget(view, model, [view, &model](Aspect aspect) {
        if (aspect == Aspect::Value)
            view->setCurrentIndex(model.current);
    });
    QObject::connect(view, &QTabWidget::currentChanged, tie, [&model](int index) {
        if (index >= 0)
            report(model, [&] { model.current = std::int16_t(index); });
    });
}

void bind(GaugeBar* view, FloodGauge& model) {
    tieWidget(view, model, [view, &model](Aspect aspect) {
        if (aspect == Aspect::Value)
            view->setValue(model.floodPercent);
    });
}

void bind(GridView* view, Grid& model) {
    view->setGrid(&model);
    auto* tie = tieWidget(view, model, [view](Aspect aspect) { view->gridChanged(aspect); });
    // Without its table the view is going itself.
    QObject::connect(tie, &QObject::destroyed, view->model(), [view] { view->setGrid(nullptr); });
}

void bind(ReportView* view, ReportText& model) {
    auto* tie = tieWidget(view, model, [](Aspect) {});
    view->setModel(&model);
    QObject::connect(tie, &QObject::destroyed, view, [view] { view->setModel(nullptr); });
    // The user's keys and mouse are at the view that is shown.
    for (QAbstractScrollArea* shown : view->views())
        new InputTie(shown, model, [](Aspect) {});
}

void place(QWidget* view, Control& model) {
    const auto apply = [view, &model](Aspect aspect) {
        if (aspect != Aspect::Geometry)
            return;
        const TwipScale scale = TwipScale::ofScreen();
        const int height = model.height > 0 ? scale.pixelsHolding(model.height) : view->sizeHint().height();
        view->setGeometry(
            scale.pixels(model.left), scale.pixels(model.top), scale.pixelsHolding(model.width), height);
    };
    new Tie(view, model, apply);
    apply(Aspect::Geometry);
}

} // namespace genutil
