#pragma once

namespace genutil {

// Starts the engine, once in a process. Throws std::runtime_error with the reason when it would end the
// process.
void startWebEngine();

} // namespace genutil
