// Timers as the view needs them: one shot or repeating, on the main thread.
// The window installs a toolkit timer; without one, timers are manual and
// fire only when told to (tests, the headless runner).
#pragma once

#include <functional>
#include <memory>

class ITimer {
 public:
  virtual ~ITimer() = default;
  virtual void setInterval(int milliseconds) = 0;
  virtual int interval() const = 0;
  virtual void setOnTimer(std::function<void()> onTimer) = 0;
  // Starts, or restarts from zero when running.
  virtual void start() = 0;
  virtual void stop() = 0;
  virtual bool isActive() const = 0;
};

// A timer that fires only through fire().
class TManualTimer : public ITimer {
 public:
  void setInterval(int milliseconds) override { FInterval = milliseconds; }
  int interval() const override { return FInterval; }
  void setOnTimer(std::function<void()> onTimer) override { FOnTimer = std::move(onTimer); }
  void start() override { FActive = true; ++FStarts; }
  void stop() override { FActive = false; }
  bool isActive() const override { return FActive; }
  // Runs the handler as the toolkit would when the interval has passed.
  void fire() {
    if (FActive && FOnTimer) FOnTimer();
  }
  int FStarts = 0;

 private:
  int FInterval = 0;
  bool FActive = false;
  std::function<void()> FOnTimer;
};

using TTimerFactory = std::function<std::unique_ptr<ITimer>()>;
std::unique_ptr<ITimer> createTimer();
// An empty factory returns to manual timers.
void setTimerFactory(TTimerFactory factory);
