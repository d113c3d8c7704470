// The drawing surface and its two rulers. They paint through the
// controller and hand it every pointer, wheel, key and gesture event.
#pragma once

#include <QWidget>

class TfrmPelw;
class QGestureEvent;

class TCanvasWidget : public QWidget {
  Q_OBJECT
 public:
  TCanvasWidget(TfrmPelw& form, QWidget* parent);

 protected:
  bool event(QEvent* e) override;
  void paintEvent(QPaintEvent*) override;
  void resizeEvent(QResizeEvent*) override;
  void mousePressEvent(QMouseEvent* e) override;
  void mouseMoveEvent(QMouseEvent* e) override;
  void mouseReleaseEvent(QMouseEvent* e) override;
  void wheelEvent(QWheelEvent* e) override;
  void keyPressEvent(QKeyEvent* e) override;

 private:
  TfrmPelw& FForm;
  void gesture(QGestureEvent* e);
};

class TRulerWidget : public QWidget {
  Q_OBJECT
 public:
  TRulerWidget(TfrmPelw& form, Qt::Orientation orientation, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent*) override;

 private:
  TfrmPelw& FForm;
  Qt::Orientation FOrientation;
};
