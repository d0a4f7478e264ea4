#pragma once

#include "hostif/event.h"
#include "hostif/report_text.h"

#include <QStackedWidget>

#include <array>

class QAbstractScrollArea;

namespace genutil {

class RichTextView;
class TextView;

// Shows a report's text: in the plain-text view, or in the rich-text one while the text is rich.
class ReportView : public QStackedWidget {
public:
    explicit ReportView(QWidget* parent = nullptr);

    // Follows the model from now on. Null lets go of it: what is shown stays.
    void setModel(ReportText* model);
    // The plain-text view and the rich-text view.
    std::array<QAbstractScrollArea*, 2> views() const;
    // Puts the action into the context menus of both views.
    void addToContextMenus(QAction* action);

    // Ctrl and the wheel: steps, negative ones make the text smaller.
    Event<int> zoomed;

private:
    void showKind();

    ReportText* model_ = nullptr;
    Connection following_;
    TextView* plain_;
    RichTextView* rich_;
};

} // namespace genutil
