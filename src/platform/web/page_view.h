#pragma once

#include "hostif/event.h"
#include "hostif/web_view.h"

#include <QString>
#include <QWidget>

#include <string>

namespace genutil {

// The view of a page, which a module of its own makes (k_genutil_web.so): the engine behind it is large, and
// a process that shows no page has nothing to do with it.
class PageView : public QWidget {
public:
    using QWidget::QWidget;

    // Shows the page, a file's path or an address. One that cannot be shown has its name and the reason shown
    // instead.
    virtual void open(const std::string& page) = 0;
    virtual void command(PageCommand command) = 0;
    virtual void search(const QString& text, bool backwards) = 0;
    virtual void setZoom(double factor) = 0;

    // What WebView's events of these names tell.
    Event<> navigateComplete;
    Event<const QString&> refused;
    Event<int, int> found;
    Event<const PageState&> stateChanged;
    Event<> menuWanted;
    Event<> focused;       // the page has taken the focus
    Event<int> zoomWanted; // steps, by the mouse wheel
};

// The module's one function. Throws std::runtime_error with the reason when this system cannot run the
// engine.
using MakePageView = PageView* (*)(QWidget* parent);
inline constexpr const char* makePageViewName = "k_genutil_make_page_view_1";

} // namespace genutil
