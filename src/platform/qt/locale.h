#pragma once

namespace genutil {

// Numbers and dates are written and read from now on as the user's system does it. Dates that were written in
// any other language of the toolkit's are read as well, by the names of their months; a name that means
// different months in different languages is the user's own, or else English.
void useSystemLocale();

} // namespace genutil
