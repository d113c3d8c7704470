#include "platform/qt/qt_timer.h"

TQtTimer::TQtTimer() {
  QObject::connect(&FTimer, &QTimer::timeout, [this] {
    if (FOnTimer) FOnTimer();
  });
}

void useQtTimers() {
  setTimerFactory([] { return std::make_unique<TQtTimer>(); });
}
