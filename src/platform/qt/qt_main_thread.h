// Hooks the controller's main-thread calls into Qt's event loop.
#pragma once

class TMainThreadCalls;

// From now on a call queued from another thread wakes the Qt event loop,
// which drains the queue on the main thread.
void attachToQtEventLoop(TMainThreadCalls& calls);
