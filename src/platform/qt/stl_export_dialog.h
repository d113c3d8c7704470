// TfrmSTLExportOptions: every setting of the STL solids beside a live 3-D
// preview that is rebuilt when a setting changes (the colour and material
// only change its look). OK asks for a file and saves the solid of the
// chosen mode, then the settings to STLExport.ini.
#pragma once

#include <QDialog>
#include <string>

#include "exchange/stl_outlines.h"
#include "exchange/stl_solids.h"

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QPushButton;
class QRadioButton;
class QSpinBox;
class QTimer;
class TfrmPelw;
class TStlPreviewWidget;

class TfrmSTLExportOptions : public QDialog {
  Q_OBJECT
 public:
  // `source`: the shapes the solid is made from; the dialog keeps copies.
  TfrmSTLExportOptions(TfrmPelw& form, TStlSource source, QWidget* parent = nullptr);

  // The plate; lengths in the program's unit.
  QDoubleSpinBox* nbThickness = nullptr;
  QComboBox* cmbEdgeTopMode = nullptr;
  QComboBox* cmbEdgeBottomMode = nullptr;
  QDoubleSpinBox* nbEdgeTopSize = nullptr;
  QDoubleSpinBox* nbEdgeBottomSize = nullptr;
  QSpinBox* nbFilletSteps = nullptr;
  QRadioButton* rbStitchRound = nullptr;
  QRadioButton* rbStitchOriginal = nullptr;
  QDoubleSpinBox* nbStitchDiameter = nullptr;
  QDoubleSpinBox* nbDiamondL = nullptr;
  QDoubleSpinBox* nbDiamondW = nullptr;
  QDoubleSpinBox* nbEuropeanL = nullptr;
  QDoubleSpinBox* nbEuropeanW = nullptr;
  QDoubleSpinBox* nbFlatL = nullptr;
  QDoubleSpinBox* nbFlatW = nullptr;
  QRadioButton* rbEngraveNone = nullptr;
  QRadioButton* rbEngraveTop = nullptr;
  QRadioButton* rbEngraveBottom = nullptr;
  QCheckBox* chkMultiColor = nullptr;
  QDoubleSpinBox* nbEngraveDepth = nullptr;
  QComboBox* cbColor = nullptr;
  QPushButton* ColorPanel1 = nullptr;
  QComboBox* cmbMaterial = nullptr;
  // The jig, in millimetres as its labels say.
  QRadioButton* rbModePattern = nullptr;
  QRadioButton* rbModeJig = nullptr;
  QRadioButton* rbOuterRectMargin = nullptr;
  QRadioButton* rbOuterRectExplicit = nullptr;
  QRadioButton* rbOuterPattern = nullptr;
  QDoubleSpinBox* nbOuterMargin = nullptr;
  QDoubleSpinBox* nbOuterWidth = nullptr;
  QDoubleSpinBox* nbOuterHeight = nullptr;
  QLabel* lblOuterWarn = nullptr;
  QDoubleSpinBox* nbTotalHeight = nullptr;
  QDoubleSpinBox* nbPocketGap = nullptr;
  QDoubleSpinBox* nbPocketDepth = nullptr;
  QCheckBox* chkKeepNested = nullptr;
  QCheckBox* chkFingerCentroid = nullptr;
  QDoubleSpinBox* nbFingerDiameter = nullptr;
  TStlPreviewWidget* FPreview = nullptr;  // none where there is no OpenGL
  QLabel* lblStatus = nullptr;
  QLabel* lblViewHint = nullptr;

  TSTLExportSettings settings() const;
  void setSettings(const TSTLExportSettings& s);
  // Builds the solid of the current settings now (a change of a setting
  // does it once control returns to the event loop).
  void rebuildNow();
  const TStlResult& solid() const { return FResult; }
  int buildCount() const { return FBuildCount; }
  // Writes the solid's files and the settings; says what happened through
  // the controller's dialogs. False when nothing was written.
  bool saveTo(const std::string& file);
  void accept() override;

 private:
  TfrmPelw& FForm;
  TStlSource FSource;
  size_t FPointCount = 0;
  TSTLExportSettings FBuilt;  // the settings of FResult
  TStlResult FResult;
  TAlphaColor FColor = 0xFFCD853F;
  int FBuildCount = 0;
  bool FLoading = false;
  QTimer* FRebuild = nullptr;

  void buildControls();
  QWidget* buildJigControls();
  void optionChange();
  void materialPresetChange();
  void colorChange(TAlphaColor c);
  void showColor();
  void enableForMode();
  double mmPerUnit() const;
  std::string phrase(const std::string& key) const;
};
