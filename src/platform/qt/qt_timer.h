// Timers on Qt's event loop.
#pragma once

#include <QTimer>

#include "platform/timer.h"

class TQtTimer : public ITimer {
 public:
  TQtTimer();
  void setInterval(int milliseconds) override { FTimer.setInterval(milliseconds); }
  int interval() const override { return FTimer.interval(); }
  void setOnTimer(std::function<void()> onTimer) override { FOnTimer = std::move(onTimer); }
  void start() override { FTimer.start(); }
  void stop() override { FTimer.stop(); }
  bool isActive() const override { return FTimer.isActive(); }

 private:
  QTimer FTimer;
  std::function<void()> FOnTimer;
};

// From now on createTimer() makes Qt timers.
void useQtTimers();
