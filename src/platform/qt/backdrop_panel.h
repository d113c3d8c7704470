// The backdrop panel (tabTop_Backdrop): the list of backdrops, adding and
// deleting, the backdrop tool, place, angle, resolution and real size,
// calibration by two points, and the common opacity. Each value the user
// finishes editing is one call to the controller (one undo step).
#pragma once

#include <QWidget>

class TfrmPelw;
class QComboBox;
class QDoubleSpinBox;
class QSlider;
class QCheckBox;
class QToolButton;
class QLabel;

class TBackdropPanel : public QWidget {
  Q_OBJECT
 public:
  TBackdropPanel(TfrmPelw& form, QWidget* parent = nullptr);
  // The boxes from the selected backdrop, without change events.
  void refresh();
  void retranslate();
  QToolButton* FTool = nullptr;  // sbBackdrop

 private:
  TfrmPelw& FForm;
  QComboBox* FList = nullptr;
  QDoubleSpinBox* FX = nullptr;
  QDoubleSpinBox* FY = nullptr;
  QDoubleSpinBox* FAngle = nullptr;
  QDoubleSpinBox* FDpi = nullptr;
  QDoubleSpinBox* FWidth = nullptr;
  QDoubleSpinBox* FHeight = nullptr;
  QSlider* FOpacity = nullptr;
  QCheckBox* FShow = nullptr;
  QLabel* FHint = nullptr;
  bool FRefreshing = false;
  QDoubleSpinBox* numberBox(const char* name, double min, double max, int decimals);
};
