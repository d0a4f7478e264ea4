#pragma once

#include "browser/frm_internal_browser.h"
#include "frame/loader.h"

#include <string>

namespace genutil {

// Shows pages, such as the product's history, for the host.
class cInternalBrowserLoader : public FormLoader<frmInternal_Browser> {
public:
    explicit cInternalBrowserLoader(Component& component) : FormLoader(component, "cInternalBrowserLoader") {}

    // Opens a window with the page, a file's path or an address. Each call opens another window.
    void LoadForm(const std::string& HTMLfile);
};

} // namespace genutil
