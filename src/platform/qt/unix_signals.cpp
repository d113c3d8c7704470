#include "platform/qt/unix_signals.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

int gPipe[2] = {-1, -1};

void onPosixSignal(int sig) {
  const unsigned char b = static_cast<unsigned char>(sig);
  [[maybe_unused]] const ssize_t n = ::write(gPipe[1], &b, 1);
}

}  // namespace

void watchTerminationSignals(std::function<void(int)> onSignal) {
  if (gPipe[0] < 0) {
    if (::pipe2(gPipe, O_CLOEXEC | O_NONBLOCK) != 0) return;
  }
  auto* notifier = new QSocketNotifier(gPipe[0], QSocketNotifier::Read, QCoreApplication::instance());
  QObject::connect(notifier, &QSocketNotifier::activated, notifier, [onSignal] {
    unsigned char b = 0;
    while (::read(gPipe[0], &b, 1) == 1) onSignal(b);
  });
  struct sigaction sa {};
  sa.sa_handler = onPosixSignal;
  sigemptyset(&sa.sa_mask);
  sa.sa_flags = SA_RESTART;
  sigaction(SIGINT, &sa, nullptr);
  sigaction(SIGTERM, &sa, nullptr);
  // The terminal or session went away: the same as being asked to end.
  sigaction(SIGHUP, &sa, nullptr);
}
