#include "platform/qt/qt_main_thread.h"

#include <QCoreApplication>
#include <QMetaObject>

#include "platform/main_thread.h"

void attachToQtEventLoop(TMainThreadCalls& calls) {
  TMainThreadCalls* target = &calls;
  calls.setWake([target] {
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [target] { target->drain(); }, Qt::QueuedConnection);
  });
}
