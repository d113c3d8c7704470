// The Qt application the painting benchmarks need, on the offscreen
// platform, made once.
#pragma once

#include <QGuiApplication>
#include <memory>

inline QGuiApplication& benchQtApp() {
  static int argc = 1;
  static char name[] = "pelwright_bench";
  static char* argv[] = {name, nullptr};
  static std::unique_ptr<QGuiApplication> a = [] {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return std::make_unique<QGuiApplication>(argc, argv);
  }();
  return *a;
}
