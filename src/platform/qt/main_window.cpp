#include "platform/qt/main_window.h"

#include <QPalette>
#include <QStatusBar>
#include <QWidget>

#include "app/frm_pelw.h"

namespace {

// The drawing surface; it shows the empty canvas on the dark background.
class TCanvasWidget : public QWidget {
 public:
  explicit TCanvasWidget(QWidget* parent) : QWidget(parent) {
    setAutoFillBackground(true);
    QPalette pal = palette();
    pal.setColor(QPalette::Window, QColor(0x20, 0x20, 0x20));
    setPalette(pal);
    setMinimumSize(320, 240);
  }
};

}  // namespace

TMainWindow::TMainWindow(TfrmPelw& form, QWidget* parent) : QMainWindow(parent), FForm(form) {
  setWindowTitle("Pelwright");
  setCentralWidget(new TCanvasWidget(this));
  QString status = "Ready";
  if (FForm.FMCPServer)
    status += QString("  |  Local API on 127.0.0.1:%1").arg(FForm.FMCPServer->boundPort());
  statusBar()->showMessage(status);
  resize(1200, 800);
}
