#pragma once

#include <string>

class QWidget;

namespace genutil {

class PageView;

// A view of pages. Its module is loaded with the first one, from the folder of the component's library or
// from a lib folder beside that. Throws Error CannotCreateObject, naming the module, when it cannot be loaded
// or run.
PageView* makePageView(QWidget* parent);

} // namespace genutil
