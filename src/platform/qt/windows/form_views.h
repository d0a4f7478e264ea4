#pragma once

#include "platform/qt/form/form_window.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace genutil {

// Builds the window of each form, by the form's name.
using FormViews = std::map<std::string, std::function<FormWindow*(const std::shared_ptr<Form>&)>>;

// The windows of the component's forms.
FormViews standardFormViews();

// Throws Error InternalError, naming the form, when no window is known for it.
FormWindow* makeFormWindow(const FormViews& views, const std::shared_ptr<Form>& form);

} // namespace genutil
