// Running work on the main thread from other threads. A caller blocks until
// the main thread has run its function to the end. The window's event loop
// (or a plain loop in tests) drains the queue; `wake` tells it that work is
// waiting. Closing the queue refuses new calls and lets waiting ones go, so
// that shutting down never waits on a caller that waits on it.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

class TMainThreadCalls {
 public:
  // Constructed on the main thread. `wake` may be called from any thread.
  explicit TMainThreadCalls(std::function<void()> wake = {});
  ~TMainThreadCalls();

  void setWake(std::function<void()> wake);

  // Runs fn on the main thread and waits for it. Called on the main thread
  // itself, runs fn at once. False when the queue is closed or closes before
  // fn ran; fn then did not run. An exception from fn is passed on to the
  // caller.
  bool runSync(std::function<void()> fn);

  // On the main thread: runs every call waiting now. Returns how many ran.
  size_t drain();
  // On the main thread: waits up to `timeoutMs` for work, then drains. For
  // loops without a toolkit.
  size_t waitAndDrain(int timeoutMs);

  // Refuses new calls. Calls already waiting are run by the next drain.
  void close();
  // Refuses new calls and releases every waiting call without running it.
  void cancelPending();
  bool isClosed() const;
  bool isMainThread() const { return std::this_thread::get_id() == FMainThread; }

 private:
  struct TCall;
  mutable std::mutex FMutex;
  std::condition_variable FWorkArrived;
  std::deque<std::shared_ptr<TCall>> FQueue;
  std::function<void()> FWake;
  bool FClosed = false;
  std::thread::id FMainThread;
};
