// The Qt application the benchmarks that paint need: offscreen, made once.
#pragma once

#include <QGuiApplication>
#include <memory>

inline QGuiApplication& benchGuiApp() {
  static int argc = 1;
  static char name[] = "pelwright_bench";
  static char* argv[] = {name, nullptr};
  static std::unique_ptr<QGuiApplication> a = [] {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return std::make_unique<QGuiApplication>(argc, argv);
  }();
  return *a;
}
