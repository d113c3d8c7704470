#include "platform/qt/backdrop_panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QToolButton>
#include <QVBoxLayout>

#include "app/frm_pelw.h"

namespace {
QString phraseOf(const TfrmPelw& f, const char* key) {
  return f.FMultiLang ? QString::fromStdString(f.FMultiLang->getTranslation(f.FLangID, key)) : QString(key);
}
}  // namespace

QDoubleSpinBox* TBackdropPanel::numberBox(const char* name, double min, double max, int decimals) {
  auto* b = new QDoubleSpinBox(this);
  b->setObjectName(name);
  b->setRange(min, max);
  b->setDecimals(decimals);
  b->setKeyboardTracking(false);
  return b;
}

TBackdropPanel::TBackdropPanel(TfrmPelw& form, QWidget* parent) : QWidget(parent), FForm(form) {
  setObjectName("tabTop_Backdrop");
  auto* main = new QVBoxLayout(this);
  main->setContentsMargins(4, 4, 4, 4);
  FList = new QComboBox(this);
  FList->setObjectName("cmbBackdrop");
  main->addWidget(FList);
  auto* row = new QHBoxLayout;
  auto* add = new QPushButton(this);
  add->setObjectName("btnAddBackdrop");
  auto* del = new QPushButton(this);
  del->setObjectName("btnDeleteBackdrop");
  FTool = new QToolButton(this);
  FTool->setObjectName("sbBackdrop");
  FTool->setCheckable(true);
  row->addWidget(add);
  row->addWidget(del);
  row->addWidget(FTool);
  main->addLayout(row);
  auto* form_ = new QFormLayout;
  FX = numberBox("nbBackdropX1", -1e6, 1e6, 2);
  FY = numberBox("nbBackdropY1", -1e6, 1e6, 2);
  FAngle = numberBox("nbBackdropAngle", -360, 360, 2);
  FDpi = numberBox("nbBackdropDpi", 0.1, 1e6, 2);
  FWidth = numberBox("nbBackdropWidth1", 0, 1e6, 2);
  FHeight = numberBox("nbBackdropHeight1", 0, 1e6, 2);
  auto* position = new QHBoxLayout;
  position->addWidget(FX);
  position->addWidget(FY);
  auto* size = new QHBoxLayout;
  size->addWidget(FWidth);
  size->addWidget(FHeight);
  auto label = [this](const char* key) {
    auto* l = new QLabel(this);
    l->setObjectName(key);
    return l;
  };
  form_->addRow(label("lblTracePosX"), position);
  form_->addRow(label("lblTraceRotation"), FAngle);
  form_->addRow(label("lblBackdropDpi"), FDpi);
  form_->addRow(label("lblBackdropSize"), size);
  FOpacity = new QSlider(Qt::Horizontal, this);
  FOpacity->setObjectName("tbOpacity");
  FOpacity->setRange(0, 100);
  form_->addRow(label("lblBackdropOpacity"), FOpacity);
  main->addLayout(form_);
  FShow = new QCheckBox(this);
  FShow->setObjectName("chkOpacity");
  main->addWidget(FShow);
  auto* calibrate = new QPushButton(this);
  calibrate->setObjectName("btnBackdropCalibrate");
  main->addWidget(calibrate);
  FHint = new QLabel(this);
  FHint->setObjectName("lblBackdropHint");
  FHint->setWordWrap(true);
  FHint->hide();
  main->addWidget(FHint);
  main->addStretch(1);

  connect(add, &QPushButton::clicked, this, [this] { FForm.actAddBackdrop(); });
  connect(del, &QPushButton::clicked, this, [this] { FForm.btnDeleteBackdrop(); });
  connect(FTool, &QToolButton::toggled, this, [this](bool on) {
    FForm.setBackdropTool(on);
    refresh();
  });
  connect(FList, &QComboBox::currentIndexChanged, this, [this](int i) {
    if (!FRefreshing) FForm.selectBackdrop(i);
  });
  auto edited = [this](QDoubleSpinBox* box, auto apply) {
    connect(box, &QDoubleSpinBox::valueChanged, this, [this, apply](double v) {
      if (!FRefreshing) apply(v);
    });
  };
  edited(FX, [this](double v) {
    if (TBackdrop* b = FForm.selectedBackdrop()) FForm.moveBackdrop(TPointF(float(v), b->FLeftTop.y));
  });
  edited(FY, [this](double v) {
    if (TBackdrop* b = FForm.selectedBackdrop()) FForm.moveBackdrop(TPointF(b->FLeftTop.x, float(v)));
  });
  edited(FAngle, [this](double v) { FForm.rotateBackdrop(float(v)); });
  edited(FDpi, [this](double v) { FForm.setBackdropDpi(float(v)); });
  edited(FWidth, [this](double v) { FForm.setBackdropSize(float(v), 0); });
  edited(FHeight, [this](double v) {
    // The height alone: the width follows the picture's proportions.
    if (TBackdrop* b = FForm.selectedBackdrop(); b && b->FBitmap.FHeight > 0)
      FForm.setBackdropSize(float(v * b->FBitmap.FWidth / b->FBitmap.FHeight), 0);
  });
  connect(FOpacity, &QSlider::valueChanged, this, [this](int v) {
    if (!FRefreshing) FForm.setBackdropOpacity(v / 100.0f);
  });
  connect(FShow, &QCheckBox::toggled, this, [this](bool on) {
    if (!FRefreshing) FForm.setShowBackdrops(on);
  });
  connect(calibrate, &QPushButton::clicked, this, [this] {
    FTool->setChecked(true);
    FForm.startBackdropCalibration();
    refresh();
  });
  retranslate();
  refresh();
}

void TBackdropPanel::retranslate() {
  for (QWidget* w : findChildren<QWidget*>()) {
    const QByteArray key = w->objectName().toUtf8();
    if (key.isEmpty() || key.startsWith("nb") || key.startsWith("cmb") || key.startsWith("tb")) continue;
    const QString t = phraseOf(FForm, key.constData());
    if (auto* l = qobject_cast<QLabel*>(w)) l->setText(t);
    else if (auto* b = qobject_cast<QPushButton*>(w)) b->setText(t);
    else if (auto* c = qobject_cast<QCheckBox*>(w)) c->setText(t);
    else if (auto* tb = qobject_cast<QToolButton*>(w)) tb->setText(t);
  }
  FHint->setText(phraseOf(FForm, "BackdropCalibrateHint"));
}

void TBackdropPanel::refresh() {
  FRefreshing = true;
  FList->clear();
  for (const auto& b : FForm.FBackdrops) {
    const QString name = QFileInfo(QString::fromStdString(b->FFullPath)).fileName();
    FList->addItem(name.isEmpty() ? QString::fromStdString(b->FFullPath) : name);
  }
  FList->setCurrentIndex(FForm.FSelectedBackdrop);
  const TBackdrop* b = FForm.selectedBackdrop();
  for (QDoubleSpinBox* box : {FX, FY, FAngle, FDpi, FWidth, FHeight}) box->setEnabled(b != nullptr);
  if (b) {
    FX->setValue(b->FLeftTop.x);
    FY->setValue(b->FLeftTop.y);
    FAngle->setValue(b->FAngle);
    FDpi->setValue(b->FDpi);
    FWidth->setValue(b->FWidth);
    FHeight->setValue(b->FHeight);
  }
  FOpacity->setValue(int(std::lround(FForm.FBackdropAlpha * 100)));
  FShow->setChecked(FForm.FShowBackdrops);
  FTool->setChecked(FForm.FBackdropToolActive);
  FHint->setVisible(FForm.FCalibrating);
  FRefreshing = false;
}
