#include "platform/timer.h"

namespace {
TTimerFactory& factory() {
  static TTimerFactory f;
  return f;
}
}  // namespace

std::unique_ptr<ITimer> createTimer() {
  if (factory()) return factory()();
  return std::make_unique<TManualTimer>();
}

void setTimerFactory(TTimerFactory f) { factory() = std::move(f); }
