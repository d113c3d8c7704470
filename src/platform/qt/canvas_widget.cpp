#include "platform/qt/canvas_widget.h"

#include <QGestureEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPinchGesture>
#include <QWheelEvent>

#include "app/frm_pelw.h"
#include "platform/qt/qt_canvas.h"

namespace {

TShiftState shiftOf(Qt::KeyboardModifiers m, Qt::MouseButtons b = Qt::NoButton) {
  TShiftState s = 0;
  if (m & Qt::ShiftModifier) s |= ssShift;
  if (m & Qt::AltModifier) s |= ssAlt;
  if (m & Qt::ControlModifier) s |= ssCtrl;
  if (m & Qt::MetaModifier) s |= ssCommand;
  if (b & Qt::LeftButton) s |= ssLeft;
  if (b & Qt::RightButton) s |= ssRight;
  if (b & Qt::MiddleButton) s |= ssMiddle;
  return s;
}

TMouseButton buttonOf(Qt::MouseButton b) {
  if (b == Qt::RightButton) return TMouseButton::mbRight;
  if (b == Qt::MiddleButton) return TMouseButton::mbMiddle;
  return TMouseButton::mbLeft;
}

TPointF pointOf(const QPointF& p) { return TPointF::fromDouble(p.x(), p.y()); }

}  // namespace

TCanvasWidget::TCanvasWidget(TfrmPelw& form, QWidget* parent) : QWidget(parent), FForm(form) {
  setObjectName("pbox");
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setMinimumSize(320, 240);
  grabGesture(Qt::PinchGesture);
  grabGesture(Qt::PanGesture);
}

bool TCanvasWidget::event(QEvent* e) {
  if (e->type() == QEvent::Gesture) {
    gesture(static_cast<QGestureEvent*>(e));
    return true;
  }
  return QWidget::event(e);
}

void TCanvasWidget::gesture(QGestureEvent* e) {
  if (auto* pinch = static_cast<QPinchGesture*>(e->gesture(Qt::PinchGesture))) {
    TGestureEvent g;
    g.Location = pointOf(mapFromGlobal(pinch->centerPoint()));
    // The zoom gesture reports a growing distance; the pinch's total scale
    // stands in for it.
    g.Distance = 100.0 * pinch->totalScaleFactor();
    g.Begins = pinch->state() == Qt::GestureStarted;
    g.Ends = pinch->state() == Qt::GestureFinished || pinch->state() == Qt::GestureCanceled;
    FForm.FormGestureZoom(g);
    e->accept(pinch);
  }
  if (auto* pan = static_cast<QPanGesture*>(e->gesture(Qt::PanGesture))) {
    TGestureEvent g;
    // The total offset since the gesture began; the view takes differences.
    g.Location = pointOf(pan->offset());
    g.Begins = pan->state() == Qt::GestureStarted;
    g.Ends = pan->state() == Qt::GestureFinished || pan->state() == Qt::GestureCanceled;
    FForm.FormGesturePan(g);
    e->accept(pan);
  }
}

void TCanvasWidget::paintEvent(QPaintEvent*) {
  QPainter p(this);
  TQtCanvas canvas(p, width(), height(), devicePixelRatioF());
  FForm.pboxPaint(&canvas);
}

void TCanvasWidget::resizeEvent(QResizeEvent*) {
  FForm.pboxResize(width(), height());
  FForm.RepaintCanvas();
}

void TCanvasWidget::mousePressEvent(QMouseEvent* e) {
  setFocus();
  FForm.pboxMouseDown(buttonOf(e->button()), shiftOf(e->modifiers(), e->buttons()), pointOf(e->position()));
}

void TCanvasWidget::mouseMoveEvent(QMouseEvent* e) {
  FForm.pboxMouseMove(shiftOf(e->modifiers(), e->buttons()), pointOf(e->position()));
}

void TCanvasWidget::mouseReleaseEvent(QMouseEvent* e) {
  FForm.pboxMouseUp(buttonOf(e->button()), shiftOf(e->modifiers(), e->buttons()), pointOf(e->position()));
}

void TCanvasWidget::wheelEvent(QWheelEvent* e) {
  FForm.FLastMousePos = pointOf(e->position());
  // Alt turns the wheel sideways on some systems; take whichever moved.
  const QPoint d = e->angleDelta();
  FForm.FormMouseWheel(d.y() != 0 ? d.y() : d.x(), shiftOf(e->modifiers()));
  e->accept();
}

void TCanvasWidget::keyPressEvent(QKeyEvent* e) {
  TViewKey key = TViewKey::Other;
  switch (e->key()) {
    case Qt::Key_Left: key = TViewKey::Left; break;
    case Qt::Key_Right: key = TViewKey::Right; break;
    case Qt::Key_Up: key = TViewKey::Up; break;
    case Qt::Key_Down: key = TViewKey::Down; break;
    default: break;
  }
  if (!FForm.FormKeyDown(key, shiftOf(e->modifiers()))) QWidget::keyPressEvent(e);
}

TRulerWidget::TRulerWidget(TfrmPelw& form, Qt::Orientation orientation, QWidget* parent)
    : QWidget(parent), FForm(form), FOrientation(orientation) {
  setObjectName(orientation == Qt::Horizontal ? "pbRulerX" : "pbRulerY");
  setAttribute(Qt::WA_OpaquePaintEvent);
  if (orientation == Qt::Horizontal) setFixedHeight(22);
  else setFixedWidth(34);
}

void TRulerWidget::paintEvent(QPaintEvent*) {
  QPainter p(this);
  TQtCanvas canvas(p, width(), height(), devicePixelRatioF());
  if (FOrientation == Qt::Horizontal) FForm.pbRulerXPaint(canvas);
  else FForm.pbRulerYPaint(canvas);
}
