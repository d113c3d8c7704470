// SIGINT, SIGTERM and SIGHUP turned into a call on the main thread, through a pipe
// that Qt's event loop watches.
#pragma once

#include <functional>

// Installs the handlers; `onSignal` runs on the main thread, once per signal.
void watchTerminationSignals(std::function<void(int)> onSignal);
