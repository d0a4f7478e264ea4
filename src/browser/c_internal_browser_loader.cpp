#include "browser/c_internal_browser_loader.h"

namespace genutil {

void cInternalBrowserLoader::LoadForm(const std::string& HTMLfile) {
    run("LoadForm", [&] {
        load([](frmInternal_Browser&) {}, [&](frmInternal_Browser& form) { form.Form_Setup(HTMLfile); },
            [](frmInternal_Browser&) {});
    });
}

} // namespace genutil
