#pragma once

#include "hostif/control.h"

#include <string>
#include <utility>

namespace genutil {

enum class PageCommand { Back, Forward, Reload, Copy, CopyLink, SelectAll };

// What the page that is shown allows the user to do now.
struct PageState {
    bool canGoBack = false;
    bool canGoForward = false;
    bool hasSelection = false;
    bool isOnLink = false; // where the menu was asked for
};

// An embedded page: a local file, with what it shows of its own folder. Texts are UTF-8.
class WebView : public Control {
public:
    WebView(Form& form, std::string name) : Control(form, std::move(name)) {}

    // Shows a page, given as a file's path or as an address; one that is shown already is read again. A view
    // that comes later begins with the page asked for last.
    void navigate(std::string page) {
        address_ = std::move(page);
        navigating(address_);
    }
    const std::string& address() const { return address_; }

    Observed<double> zoom{*this, Aspect::Value, 1};

    // What the view is asked for.
    Event<const std::string&> navigating;
    Event<PageCommand> commanded;
    Event<const std::string&, bool> searching; // the text, and whether to look back; "" ends the search

    // What the view reports.
    Event<> navigateComplete;          // a page, or what is said in its place, is there
    Event<const std::string&> refused; // why something that the user or the page wanted is not shown
    Event<int, int> found;             // the number of the selected place, and of all; 0, 0: none
    Event<const PageState&> stateChanged;
    Event<> menuWanted;
    Event<int> zoomWanted; // steps

private:
    std::string address_;
};

} // namespace genutil
