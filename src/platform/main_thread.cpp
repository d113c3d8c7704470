#include "platform/main_thread.h"

#include <chrono>
#include <exception>

struct TMainThreadCalls::TCall {
  std::function<void()> fn;
  std::mutex m;
  std::condition_variable cv;
  bool finished = false;
  bool ran = false;
  std::exception_ptr error;

  void finish(bool didRun, std::exception_ptr e = nullptr) {
    std::lock_guard<std::mutex> lock(m);
    ran = didRun;
    error = e;
    finished = true;
    cv.notify_all();
  }
};

TMainThreadCalls::TMainThreadCalls(std::function<void()> wake)
    : FWake(std::move(wake)), FMainThread(std::this_thread::get_id()) {}

TMainThreadCalls::~TMainThreadCalls() { cancelPending(); }

void TMainThreadCalls::setWake(std::function<void()> wake) {
  std::lock_guard<std::mutex> lock(FMutex);
  FWake = std::move(wake);
}

bool TMainThreadCalls::runSync(std::function<void()> fn) {
  if (isMainThread()) {
    fn();
    return true;
  }
  auto call = std::make_shared<TCall>();
  call->fn = std::move(fn);
  std::function<void()> wake;
  {
    std::lock_guard<std::mutex> lock(FMutex);
    if (FClosed) return false;
    FQueue.push_back(call);
    wake = FWake;
  }
  FWorkArrived.notify_one();
  if (wake) wake();
  std::unique_lock<std::mutex> lock(call->m);
  call->cv.wait(lock, [&] { return call->finished; });
  if (call->error) std::rethrow_exception(call->error);
  return call->ran;
}

size_t TMainThreadCalls::drain() {
  size_t count = 0;
  while (true) {
    std::shared_ptr<TCall> call;
    {
      std::lock_guard<std::mutex> lock(FMutex);
      if (FQueue.empty()) break;
      call = FQueue.front();
      FQueue.pop_front();
    }
    try {
      call->fn();
      call->finish(true);
    } catch (...) {
      call->finish(true, std::current_exception());
    }
    ++count;
  }
  return count;
}

size_t TMainThreadCalls::waitAndDrain(int timeoutMs) {
  {
    std::unique_lock<std::mutex> lock(FMutex);
    FWorkArrived.wait_for(lock, std::chrono::milliseconds(timeoutMs),
                          [this] { return !FQueue.empty(); });
  }
  return drain();
}

void TMainThreadCalls::close() {
  std::lock_guard<std::mutex> lock(FMutex);
  FClosed = true;
}

void TMainThreadCalls::cancelPending() {
  std::deque<std::shared_ptr<TCall>> pending;
  {
    std::lock_guard<std::mutex> lock(FMutex);
    FClosed = true;
    pending.swap(FQueue);
  }
  for (auto& call : pending) call->finish(false);
}

bool TMainThreadCalls::isClosed() const {
  std::lock_guard<std::mutex> lock(FMutex);
  return FClosed;
}
