// The main window: a canvas for the drawing and a status line. Events go to
// the controller, which owns everything that matters.
#pragma once

#include <QMainWindow>

class TfrmPelw;

class TMainWindow : public QMainWindow {
  Q_OBJECT
 public:
  explicit TMainWindow(TfrmPelw& form, QWidget* parent = nullptr);

 private:
  TfrmPelw& FForm;
};
