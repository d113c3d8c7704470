#include "platform/qt/stl_export_dialog.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QTimer>
#include <QVBoxLayout>
#include <filesystem>

#include "app/app_paths.h"
#include "app/frm_pelw.h"
#include "app/length_format.h"
#include "app/multi_lang.h"
#include "app/safe_file.h"
#include "document/pw_path.h"
#include "exchange/stl_export.h"
#include "platform/qt/dialog_parts.h"
#include "platform/qt/qt_language.h"
#include "platform/qt/stl_preview.h"

namespace {

// Above this many path points the build takes long enough for a busy sign.
constexpr size_t kBusyPoints = 20000;

// Colours offered for the preview, besides the materials' own.
const TAlphaColor kColours[] = {0xFFCD853F, 0xFFD2B48C, 0xFF8B4513, 0xFF2E2A28, 0xFFF5F5F0,
                                0xFFC0392B, 0xFF1F3A60, 0xFF2E7D32, 0xFFBFE3F5, 0xFFB9BCC4};

QGroupBox* group(const char* name, const char* title, QWidget* parent) {
  auto* g = new QGroupBox(QString::fromUtf8(title), parent);
  g->setObjectName(name);
  return g;
}

template <class T>
T* named(T* w, const char* name) {
  w->setObjectName(name);
  return w;
}

QString colourName(TAlphaColor c) { return QString("#%1").arg(c & 0xFFFFFF, 6, 16, QChar('0')).toUpper(); }

QIcon swatch(TAlphaColor c) {
  QPixmap p(16, 16);
  p.fill(QColor::fromRgb(c));
  QPainter(&p).drawRect(0, 0, 15, 15);
  return QIcon(p);
}

}  // namespace

TfrmSTLExportOptions::TfrmSTLExportOptions(TfrmPelw& form, TStlSource source, QWidget* parent)
    : QDialog(parent), FForm(form), FSource(std::move(source)) {
  setObjectName("frmSTLExportOptions");
  setWindowTitle("STL export");
  // The local API may change the drawing while this window is open.
  FSource.keepCopies();
  for (const TPW_Path* s : FSource.Shapes) FPointCount += s->FData.Count();
  FRebuild = new QTimer(this);
  FRebuild->setSingleShot(true);
  FRebuild->setInterval(0);
  connect(FRebuild, &QTimer::timeout, this, &TfrmSTLExportOptions::rebuildNow);
  buildControls();
  translateWidgets(this, FForm.FMultiLang.get(), FForm.FLangID);
  // The lists' texts come from their own keys.
  for (QComboBox* c : {cmbEdgeTopMode, cmbEdgeBottomMode}) {
    const char* keys[] = {"edge_none", "edge_chamfer", "edge_fillet"};
    for (int i = 0; i < 3; ++i) c->setItemText(i, phraseOf(FForm.FMultiLang.get(), FForm.FLangID, keys[i]));
  }
  for (int i = 0; i < kMaterialCount; ++i)
    cmbMaterial->setItemText(i, phraseOf(FForm.FMultiLang.get(), FForm.FLangID, kMaterialKeys[i]));
  setSettings(readStlSettings(stlSettingsFile(FForm.FAppDataPath)));
  rebuildNow();
}

double TfrmSTLExportOptions::mmPerUnit() const { return FForm.lengthSettings().isInch() ? kMmPerInch : 1.0; }

std::string TfrmSTLExportOptions::phrase(const std::string& key) const {
  return FForm.FMultiLang->getTranslation(FForm.FLangID, key);
}

void TfrmSTLExportOptions::buildControls() {
  const bool inch = FForm.lengthSettings().isInch();
  // A length in the program's unit, within [lo, hi] millimetres.
  auto length = [&](const char* name, double lo, double hi) {
    auto* b = named(new QDoubleSpinBox(this), name);
    b->setDecimals(inch ? 4 : 2);
    b->setSingleStep(inch ? 0.01 : 0.1);
    b->setRange(lo / mmPerUnit(), hi / mmPerUnit());
    b->setSuffix(inch ? " in" : " mm");
    return b;
  };
  auto* column = new QWidget(this);
  auto* left = new QVBoxLayout(column);

  // Mode
  auto* gMode = group("jig_mode_group", "Mode", column);
  auto* modeRow = new QHBoxLayout(gMode);
  rbModePattern = named(new QRadioButton("3D Pattern", gMode), "jig_mode_pattern");
  rbModeJig = named(new QRadioButton("Positioning Jig", gMode), "jig_mode_jig");
  auto* modes = new QButtonGroup(gMode);
  modes->setObjectName("STLExportMode");
  modes->addButton(rbModePattern);
  modes->addButton(rbModeJig);
  modeRow->addWidget(rbModePattern);
  modeRow->addWidget(rbModeJig);
  left->addWidget(gMode);

  // Thickness and edges
  auto* gThickness = group("gbThickness", "Thickness", column);
  auto* fThickness = new QFormLayout(gThickness);
  nbThickness = length("nbThickness", 0.1, 50.0);
  fThickness->addRow(namedLabel("lblThickness", "Thickness:", gThickness), nbThickness);
  left->addWidget(gThickness);

  auto* gEdge = group("gbEdge", "Edges", column);
  auto* fEdge = new QFormLayout(gEdge);
  cmbEdgeTopMode = named(new QComboBox(gEdge), "cmbEdgeTopMode");
  cmbEdgeBottomMode = named(new QComboBox(gEdge), "cmbEdgeBottomMode");
  for (QComboBox* c : {cmbEdgeTopMode, cmbEdgeBottomMode}) c->addItems({"None", "Chamfer (45°)", "Fillet (R)"});
  nbEdgeTopSize = length("nbEdgeTopSize", 0.0, 10.0);
  nbEdgeBottomSize = length("nbEdgeBottomSize", 0.0, 10.0);
  nbFilletSteps = named(new QSpinBox(gEdge), "nbFilletSteps");
  nbFilletSteps->setRange(2, 16);
  fEdge->addRow(namedLabel("lblEdgeTop", "Top edge:", gEdge), cmbEdgeTopMode);
  fEdge->addRow(namedLabel("lblEdgeTopSize", "Size:", gEdge), nbEdgeTopSize);
  fEdge->addRow(namedLabel("lblEdgeBottom", "Bottom edge:", gEdge), cmbEdgeBottomMode);
  fEdge->addRow(namedLabel("lblEdgeBottomSize", "Size:", gEdge), nbEdgeBottomSize);
  fEdge->addRow(namedLabel("lblFilletSteps", "Fillet steps:", gEdge), nbFilletSteps);
  left->addWidget(gEdge);

  // Stitching holes
  auto* gStitch = group("gbStitch", "Stitching holes", column);
  auto* fStitch = new QFormLayout(gStitch);
  rbStitchRound = named(new QRadioButton("Round holes", gStitch), "rbStitchRound");
  rbStitchOriginal = named(new QRadioButton("Original shape", gStitch), "rbStitchOriginal");
  nbStitchDiameter = length("nbStitchDiameter", 0.5, 5.0);
  fStitch->addRow(rbStitchRound);
  fStitch->addRow(namedLabel("lblStitchDiameter", "Diameter:", gStitch), nbStitchDiameter);
  fStitch->addRow(rbStitchOriginal);
  left->addWidget(gStitch);

  auto* gSizes = group("gbStitchSizes", "Hole sizes (length × width)", column);
  auto* fSizes = new QFormLayout(gSizes);
  auto pair = [&](const char* label, const char* text, QDoubleSpinBox*& l, const char* ln, QDoubleSpinBox*& w,
                  const char* wn) {
    l = length(ln, 0.1, 10.0);
    w = length(wn, 0.05, 5.0);
    auto* row = new QHBoxLayout;
    row->addWidget(l);
    row->addWidget(new QLabel("×", gSizes));
    row->addWidget(w);
    fSizes->addRow(namedLabel(label, text, gSizes), row);
  };
  pair("lblDiamond", "Diamond:", nbDiamondL, "nbDiamondL", nbDiamondW, "nbDiamondW");
  pair("lblEuropean", "French:", nbEuropeanL, "nbEuropeanL", nbEuropeanW, "nbEuropeanW");
  pair("lblFlat", "Flat:", nbFlatL, "nbFlatL", nbFlatW, "nbFlatW");
  left->addWidget(gSizes);

  // Text
  auto* gText = group("gbTextEngrave", "Text", column);
  auto* fText = new QFormLayout(gText);
  rbEngraveNone = named(new QRadioButton("None", gText), "rbEngraveNone");
  rbEngraveTop = named(new QRadioButton("Engrave on top", gText), "rbEngraveTop");
  rbEngraveBottom = named(new QRadioButton("Engrave on bottom", gText), "rbEngraveBottom");
  auto* sides = new QHBoxLayout;
  for (QRadioButton* r : {rbEngraveNone, rbEngraveTop, rbEngraveBottom}) sides->addWidget(r);
  fText->addRow(sides);
  chkMultiColor = named(new QCheckBox("Multi-color print (instead of engrave)", gText), "chkMultiColor");
  fText->addRow(chkMultiColor);
  nbEngraveDepth = length("nbEngraveDepth", 0.1, 5.0);
  fText->addRow(namedLabel("lblEngraveDepth", "Depth:", gText), nbEngraveDepth);
  left->addWidget(gText);

  left->addWidget(buildJigControls());

  // The preview's look
  auto* gLook = group("gbMaterialColor", "Preview look", column);
  auto* fLook = new QFormLayout(gLook);
  cbColor = named(new QComboBox(gLook), "cbColor");
  for (TAlphaColor c : kColours) cbColor->addItem(swatch(c), colourName(c), QVariant::fromValue(uint(c)));
  ColorPanel1 = named(new QPushButton(gLook), "ColorPanel1");
  ColorPanel1->setFixedWidth(48);
  ColorPanel1->setToolTip("...");
  auto* colourRow = new QHBoxLayout;
  colourRow->addWidget(cbColor, 1);
  colourRow->addWidget(ColorPanel1);
  fLook->addRow(namedLabel("lblColor", "Color:", gLook), colourRow);
  cmbMaterial = named(new QComboBox(gLook), "cmbMaterial");
  for (int i = 0; i < kMaterialCount; ++i) cmbMaterial->addItem(kMaterialKeys[i]);
  fLook->addRow(namedLabel("lblMaterial", "Material:", gLook), cmbMaterial);
  left->addWidget(gLook);
  left->addStretch(1);

  auto* scroll = new QScrollArea(this);
  scroll->setWidget(column);
  scroll->setWidgetResizable(true);
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll->setMinimumWidth(column->sizeHint().width() + 24);

  // The preview, its hint and the status line
  auto* host = named(new QWidget(this), "pnlPreviewHost");
  auto* right = new QVBoxLayout(host);
  right->setContentsMargins(0, 0, 0, 0);
  if (stlPreviewAvailable()) {
    FPreview = new TStlPreviewWidget(host);
    right->addWidget(FPreview, 1);
  } else {
    auto* none = named(new QLabel(host), "lblNoPreview");
    none->setAlignment(Qt::AlignCenter);
    none->setWordWrap(true);
    none->setMinimumSize(320, 260);
    right->addWidget(none, 1);
  }
  lblViewHint = named(new QLabel("Drag to rotate, right-drag to pan, wheel to zoom", host), "lblViewHint");
  lblStatus = named(new QLabel(host), "lblStatus");
  lblStatus->setWordWrap(true);
  lblStatus->setMinimumHeight(lblStatus->fontMetrics().height() * 3);
  lblStatus->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  right->addWidget(lblViewHint);
  right->addWidget(lblStatus);
  auto* buttons = okCancelButtons(this, host);
  right->addWidget(buttons);

  auto* layout = new QHBoxLayout(this);
  layout->addWidget(scroll);
  layout->addWidget(host, 1);
  resize(1100, 720);

  // Every setting rebuilds the solid; colour and material only its look.
  for (QDoubleSpinBox* b : findChildren<QDoubleSpinBox*>())
    connect(b, &QDoubleSpinBox::valueChanged, this, &TfrmSTLExportOptions::optionChange);
  connect(nbFilletSteps, &QSpinBox::valueChanged, this, &TfrmSTLExportOptions::optionChange);
  for (QComboBox* c : {cmbEdgeTopMode, cmbEdgeBottomMode})
    connect(c, &QComboBox::currentIndexChanged, this, &TfrmSTLExportOptions::optionChange);
  for (QAbstractButton* b : findChildren<QAbstractButton*>())
    if (qobject_cast<QRadioButton*>(b) || qobject_cast<QCheckBox*>(b))
      connect(b, &QAbstractButton::toggled, this, &TfrmSTLExportOptions::optionChange);
  connect(cmbMaterial, &QComboBox::currentIndexChanged, this, &TfrmSTLExportOptions::materialPresetChange);
  connect(cbColor, &QComboBox::activated, this,
          [this](int i) { colorChange(TAlphaColor(cbColor->itemData(i).toUInt())); });
  connect(ColorPanel1, &QPushButton::clicked, this, [this] {
    const QColor c = QColorDialog::getColor(QColor::fromRgb(FColor), this);
    if (c.isValid()) colorChange(TAlphaColor(c.rgba()));
  });
}

QWidget* TfrmSTLExportOptions::buildJigControls() {
  auto* box = new QWidget(this);
  auto* v = new QVBoxLayout(box);
  v->setContentsMargins(0, 0, 0, 0);
  auto mm = [&](QWidget* parent, const char* name, double lo, double hi) {
    auto* b = named(new QDoubleSpinBox(parent), name);
    b->setDecimals(2);
    b->setRange(lo, hi);
    return b;
  };
  auto* gOuter = group("jig_outer_group", "Outer Shape", box);
  auto* fOuter = new QFormLayout(gOuter);
  rbOuterRectMargin = named(new QRadioButton("Rectangle (BBox + margin)", gOuter), "jig_outer_rectmargin");
  rbOuterRectExplicit = named(new QRadioButton("Rectangle (W × H specified)", gOuter), "jig_outer_rectexplicit");
  rbOuterPattern = named(new QRadioButton("Pattern offset", gOuter), "jig_outer_pattern");
  for (QRadioButton* r : {rbOuterRectMargin, rbOuterRectExplicit, rbOuterPattern}) fOuter->addRow(r);
  lblOuterWarn = namedLabel("jig_outer_warn", "", gOuter);
  lblOuterWarn->setWordWrap(true);
  lblOuterWarn->setStyleSheet("color: #a04000;");
  fOuter->addRow(lblOuterWarn);
  nbOuterMargin = mm(gOuter, "nbOuterMargin", 0, 500);
  nbOuterWidth = mm(gOuter, "nbOuterWidth", 1, 2000);
  nbOuterHeight = mm(gOuter, "nbOuterHeight", 1, 2000);
  fOuter->addRow(namedLabel("jig_outer_margin", "Margin/Offset (mm):", gOuter), nbOuterMargin);
  fOuter->addRow(namedLabel("jig_outer_w", "Width (mm):", gOuter), nbOuterWidth);
  fOuter->addRow(namedLabel("jig_outer_h", "Height (mm):", gOuter), nbOuterHeight);
  v->addWidget(gOuter);

  auto* gPocket = group("jig_pocket_group", "Pocket", box);
  auto* fPocket = new QFormLayout(gPocket);
  nbTotalHeight = mm(gPocket, "nbTotalHeight", 0.1, 50);
  nbPocketGap = mm(gPocket, "nbPocketGap", 0, 10);
  nbPocketDepth = mm(gPocket, "nbPocketDepth", 0.1, 50);
  fPocket->addRow(namedLabel("jig_total_height", "Total height (mm):", gPocket), nbTotalHeight);
  fPocket->addRow(namedLabel("jig_pocket_gap", "Gap (clearance, mm):", gPocket), nbPocketGap);
  fPocket->addRow(namedLabel("jig_pocket_depth", "Pocket depth (mm, =height for through):", gPocket), nbPocketDepth);
  chkKeepNested = named(new QCheckBox("Keep nested contours as holes (5-yen / donut style)", gPocket), "jig_keep_nested");
  fPocket->addRow(chkKeepNested);
  v->addWidget(gPocket);

  auto* gFinger = group("jig_finger_group", "Finger hole (through bottom slab in blind mode)", box);
  auto* fFinger = new QFormLayout(gFinger);
  chkFingerCentroid = named(new QCheckBox("Place at pocket centroid", gFinger), "jig_finger_centroid");
  nbFingerDiameter = mm(gFinger, "nbFingerDiameter", 1, 200);
  fFinger->addRow(chkFingerCentroid);
  fFinger->addRow(namedLabel("jig_finger_diameter", "Diameter (mm):", gFinger), nbFingerDiameter);
  v->addWidget(gFinger);
  return box;
}

TSTLExportSettings TfrmSTLExportOptions::settings() const {
  TSTLExportSettings s;
  const double k = mmPerUnit();
  s.Thickness = nbThickness->value() * k;
  s.EdgeTopMode = cmbEdgeTopMode->currentIndex();
  s.EdgeTopSize = nbEdgeTopSize->value() * k;
  s.EdgeBottomMode = cmbEdgeBottomMode->currentIndex();
  s.EdgeBottomSize = nbEdgeBottomSize->value() * k;
  s.FilletSteps = nbFilletSteps->value();
  s.StitchAsRound = rbStitchRound->isChecked();
  s.StitchDiameter = nbStitchDiameter->value() * k;
  s.DiamondL = nbDiamondL->value() * k;
  s.DiamondW = nbDiamondW->value() * k;
  s.EuropeanL = nbEuropeanL->value() * k;
  s.EuropeanW = nbEuropeanW->value() * k;
  s.FlatL = nbFlatL->value() * k;
  s.FlatW = nbFlatW->value() * k;
  s.Color = FColor;
  s.MaterialPreset = cmbMaterial->currentIndex();
  s.EngraveSide = rbEngraveTop->isChecked() ? TEngraveSide::Top
                  : rbEngraveBottom->isChecked() ? TEngraveSide::Bottom
                                                 : TEngraveSide::None;
  s.MultiColorPrint = chkMultiColor->isChecked();
  s.EngraveDepth = nbEngraveDepth->value() * k;
  s.TemplateMode = rbModeJig->isChecked();
  TSTLTemplateSettings& j = s.Jig;
  j.OuterMode = rbOuterRectExplicit->isChecked() ? TSTLTemplateOuterMode::omRectExplicit
                : rbOuterPattern->isChecked()    ? TSTLTemplateOuterMode::omPatternOffset
                                                 : TSTLTemplateOuterMode::omRectMargin;
  j.OuterMargin = nbOuterMargin->value();
  j.OuterWidth = nbOuterWidth->value();
  j.OuterHeight = nbOuterHeight->value();
  j.TotalHeight = nbTotalHeight->value();
  j.PocketGap = nbPocketGap->value();
  j.PocketDepth = nbPocketDepth->value();
  j.KeepNestedContours = chkKeepNested->isChecked();
  j.FingerHoleAtCentroid = chkFingerCentroid->isChecked();
  j.CentroidFingerDiameter = nbFingerDiameter->value();
  s.clampToRanges();
  return s;
}

void TfrmSTLExportOptions::setSettings(const TSTLExportSettings& s) {
  FLoading = true;
  const double k = mmPerUnit();
  nbThickness->setValue(s.Thickness / k);
  cmbEdgeTopMode->setCurrentIndex(s.EdgeTopMode);
  nbEdgeTopSize->setValue(s.EdgeTopSize / k);
  cmbEdgeBottomMode->setCurrentIndex(s.EdgeBottomMode);
  nbEdgeBottomSize->setValue(s.EdgeBottomSize / k);
  nbFilletSteps->setValue(s.FilletSteps);
  (s.StitchAsRound ? rbStitchRound : rbStitchOriginal)->setChecked(true);
  nbStitchDiameter->setValue(s.StitchDiameter / k);
  nbDiamondL->setValue(s.DiamondL / k);
  nbDiamondW->setValue(s.DiamondW / k);
  nbEuropeanL->setValue(s.EuropeanL / k);
  nbEuropeanW->setValue(s.EuropeanW / k);
  nbFlatL->setValue(s.FlatL / k);
  nbFlatW->setValue(s.FlatW / k);
  cmbMaterial->setCurrentIndex(s.MaterialPreset);
  (s.EngraveSide == TEngraveSide::Top      ? rbEngraveTop
   : s.EngraveSide == TEngraveSide::Bottom ? rbEngraveBottom
                                           : rbEngraveNone)
      ->setChecked(true);
  chkMultiColor->setChecked(s.MultiColorPrint);
  nbEngraveDepth->setValue(s.EngraveDepth / k);
  (s.TemplateMode ? rbModeJig : rbModePattern)->setChecked(true);
  const TSTLTemplateSettings& j = s.Jig;
  (j.OuterMode == TSTLTemplateOuterMode::omRectExplicit    ? rbOuterRectExplicit
   : j.OuterMode == TSTLTemplateOuterMode::omPatternOffset ? rbOuterPattern
                                                           : rbOuterRectMargin)
      ->setChecked(true);
  nbOuterMargin->setValue(j.OuterMargin);
  nbOuterWidth->setValue(j.OuterWidth);
  nbOuterHeight->setValue(j.OuterHeight);
  nbTotalHeight->setValue(j.TotalHeight);
  nbPocketGap->setValue(j.PocketGap);
  nbPocketDepth->setValue(j.PocketDepth);
  chkKeepNested->setChecked(j.KeepNestedContours);
  chkFingerCentroid->setChecked(j.FingerHoleAtCentroid);
  nbFingerDiameter->setValue(j.CentroidFingerDiameter);
  FColor = s.Color;
  FLoading = false;
  showColor();
  enableForMode();
  optionChange();
}

void TfrmSTLExportOptions::enableForMode() {
  const bool jig = rbModeJig->isChecked();
  for (const char* name : {"gbThickness", "gbEdge"})
    if (auto* g = findChild<QGroupBox*>(name)) g->setEnabled(!jig);
  for (const char* name : {"jig_outer_group", "jig_pocket_group", "jig_finger_group"})
    if (auto* g = findChild<QGroupBox*>(name)) g->setEnabled(jig);
  chkMultiColor->setEnabled(!jig);
  lblOuterWarn->setVisible(rbOuterPattern->isChecked());
  nbOuterWidth->setEnabled(rbOuterRectExplicit->isChecked());
  nbOuterHeight->setEnabled(rbOuterRectExplicit->isChecked());
  nbOuterMargin->setEnabled(!rbOuterRectExplicit->isChecked());
  // Round holes take the diameter; holes in their own shape, the sizes.
  nbStitchDiameter->setEnabled(rbStitchRound->isChecked());
  if (auto* g = findChild<QGroupBox*>("gbStitchSizes")) g->setEnabled(!rbStitchRound->isChecked());
  nbFilletSteps->setEnabled(cmbEdgeTopMode->currentIndex() == kEdgeFillet ||
                            cmbEdgeBottomMode->currentIndex() == kEdgeFillet);
}

void TfrmSTLExportOptions::optionChange() {
  if (FLoading) return;
  enableForMode();
  FRebuild->start();
}

void TfrmSTLExportOptions::rebuildNow() {
  FRebuild->stop();
  FBuilt = settings();
  const bool busy = FPointCount > kBusyPoints;
  if (busy) {
    lblStatus->setText(QString::fromStdString(phrase("stl_msg_building")));
    lblStatus->repaint();
    QApplication::setOverrideCursor(Qt::WaitCursor);
  }
  std::string failure;
  try {
    FResult = buildStlSolid(FSource.Shapes, FBuilt);
  } catch (const std::exception& e) {
    FResult = {};
    failure = phrase("stl_msg_preview_failed_prefix") + e.what();
  }
  if (busy) QApplication::restoreOverrideCursor();
  ++FBuildCount;
  if (FPreview) {
    FPreview->setMeshes(FResult.Body, FResult.Text);
    FPreview->setMaterial(FColor, FBuilt.MaterialPreset);
  }
  std::string status = failure.empty() ? stlStatusText(FResult, FSource.FromSelection, *FForm.FMultiLang, FForm.FLangID)
                                       : failure;
  if (!FResult.Body.empty()) {
    const std::string count =
        fillPhrase(phrase("stl_msg_triangles"), {std::to_string(FResult.Body.size() + FResult.Text.size())});
    status = status.empty() ? count : count + "\n" + status;
  }
  lblStatus->setText(QString::fromStdString(status));
}

void TfrmSTLExportOptions::materialPresetChange() {
  if (FLoading) return;
  FColor = stlMaterialLook(cmbMaterial->currentIndex()).Color;
  showColor();
  if (FPreview) FPreview->setMaterial(FColor, cmbMaterial->currentIndex());
}

void TfrmSTLExportOptions::colorChange(TAlphaColor c) {
  FColor = c | 0xFF000000u;
  showColor();
  if (FPreview) FPreview->setMaterial(FColor, cmbMaterial->currentIndex());
}

void TfrmSTLExportOptions::showColor() {
  int at = cbColor->findData(QVariant::fromValue(uint(FColor)));
  if (at < 0) {
    cbColor->addItem(swatch(FColor), colourName(FColor), QVariant::fromValue(uint(FColor)));
    at = cbColor->count() - 1;
  }
  cbColor->setCurrentIndex(at);
  ColorPanel1->setStyleSheet(QString("background-color: %1;").arg(colourName(FColor)));
}

bool TfrmSTLExportOptions::saveTo(const std::string& file) {
  IDialogs& dialogs = *FForm.FDialogs;
  TSTLExportSettings s = FBuilt;
  s.Color = FColor;
  s.MaterialPreset = cmbMaterial->currentIndex();
  std::vector<std::pair<std::string, std::string>> files;
  if (const std::string key = stlFilesFor(FResult, s, file, files); !key.empty()) {
    dialogs.showMessage(phrase(key));
    return false;
  }
  try {
    for (const auto& [name, bytes] : files) writeFileAtomically(name, bytes);
  } catch (const std::exception& e) {
    dialogs.showMessage(e.what());
    return false;
  }
  try {
    writeStlSettings(s, stlSettingsFile(FForm.FAppDataPath));
  } catch (const std::exception&) {
    // The solid is saved; settings that could not be kept are only missed.
  }
  dialogs.showMessage(stlSavedMessage(files, *FForm.FMultiLang, FForm.FLangID));
  return true;
}

void TfrmSTLExportOptions::accept() {
  if (FRebuild->isActive()) rebuildNow();
  if (FResult.Body.empty()) {
    FForm.FDialogs->showMessage(phrase(FBuilt.TemplateMode ? "stl_msg_no_triangles_to_save" : "stl_msg_no_mesh_to_save"));
    return;
  }
  std::string folder, name = FBuilt.TemplateMode ? "template.stl" : "pattern.stl";
  if (!FForm.FFilename.empty()) {
    const std::filesystem::path p(FForm.FFilename);
    folder = p.parent_path().string();
    if (!FBuilt.TemplateMode) name = p.stem().string() + ".stl";
  }
  const std::string file = FForm.FDialogs->saveFileName(folder, name, ".stl");
  if (file.empty()) return;
  if (saveTo(file)) QDialog::accept();
}
