#include "platform/qt/qt_exchange_dialogs.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

QString text(const TPhraseLookup& phrase, const char* key, const char* english) {
  const std::string t = phrase ? phrase(key) : std::string();
  return QString::fromStdString(t.empty() ? english : t);
}

template <class W>
W* named(W* w, const char* name) {
  w->setObjectName(name);
  return w;
}

}  // namespace

bool TQtExchangeDialogs::exportOptions(const std::string& type, const TPhraseLookup& phrase,
                                       TExportDialogValues& v) {
  QDialog dlg(FParent);
  dlg.setObjectName("frmSVGExportOptions");
  dlg.setWindowTitle(QString::fromStdString(type) + " Export Options");
  auto* layout = new QVBoxLayout(&dlg);

  auto* holes = named(new QGroupBox(text(phrase, "gbSVG_StitchingHole", "Stitching Holes Shape"), &dlg),
                      "gbSVG_StitchingHole");
  auto* holesLayout = new QVBoxLayout(holes);
  holesLayout->addWidget(new QLabel(text(phrase, "lblSVG_HoleShape", "Stitching hole shape:"), holes));
  auto* asIs = named(new QRadioButton(text(phrase, "rbHole_AsIs", "Export as is"), holes), "rbHole_AsIs");
  auto* asDot = named(new QRadioButton(text(phrase, "rbHole_AsDot", "Export as dots"), holes), "rbHole_AsDot");
  auto* holeShapes = new QButtonGroup(&dlg);
  holeShapes->addButton(asIs);
  holeShapes->addButton(asDot);
  (v.FHolesAsDots ? asDot : asIs)->setChecked(true);
  holesLayout->addWidget(asIs);
  auto* dotRow = new QHBoxLayout;
  dotRow->addWidget(asDot);
  dotRow->addWidget(new QLabel(text(phrase, "lblSVG_Diameter", "Diameter:"), holes));
  auto* diameter = named(new QDoubleSpinBox(holes), "nbSVGDotRadius");
  diameter->setRange(0.01, 100.0);
  diameter->setDecimals(2);
  diameter->setSingleStep(0.1);
  diameter->setSuffix(" mm");
  diameter->setValue(v.FDotDiameter);
  dotRow->addWidget(diameter);
  holesLayout->addLayout(dotRow);
  auto* hint = named(new QLabel(text(phrase, "lblSVG_BladeAsLine",
                                     "A stitching hole comes out as a line when the blade width of its pricking "
                                     "iron is set to 0 mm."),
                                holes),
                     "lblSVG_BladeAsLine");
  hint->setWordWrap(true);
  holesLayout->addWidget(hint);
  layout->addWidget(holes);

  auto* options = named(new QGroupBox(text(phrase, "gbSVG_Options", "Export Options"), &dlg), "gbSVG_Options");
  auto* optionsLayout = new QVBoxLayout(options);
  auto check = [&](const char* key, const char* english, bool on) {
    auto* c = named(new QCheckBox(text(phrase, key, english), options), key);
    c->setChecked(on);
    optionsLayout->addWidget(c);
    return c;
  };
  auto* withText = check("chkSVG_Out_Text", "Include text shapes to SVG/DXF", v.FWithText);
  auto* withTemplates = check("chkSVG_Out_Template", "Include repository templates to SVG/DXF", v.FWithTemplates);
  auto* noDash = check("chkSVGOPT_DoNotOutputStrokeDash", "Do not include stroke dash information in SVG export",
                       v.FNoStrokeDash);
  auto* onlySelected =
      check("chkSVGOPT_ExportOnlySelected", "Export only the selected shapes to SVG/DXF.", v.FOnlySelected);
  auto* skipHidden = check("chkSVGOPT_DoNotExportHiddenLineType", "Do not export the shapes with hidden line type(s).",
                           v.FSkipHiddenLineTypes);
  layout->addWidget(options);

  const bool dxf = type == "DXF";
  auto* r12 = named(new QRadioButton(text(phrase, "rbDxfR12", "DXF R12 (lines and circles)"), &dlg), "rbDxfR12");
  auto* r14 = named(new QRadioButton(text(phrase, "rbDxfR14", "DXF R14 (arcs, ellipses, splines)"), &dlg), "rbDxfR14");
  auto* flipY = named(new QCheckBox(text(phrase, "chkDXFExportFlipY", "Invert Y-Axis when exporting as DXF"), &dlg),
                      "chkDXFExportFlipY");
  auto* versions = new QButtonGroup(&dlg);
  versions->addButton(r12);
  versions->addButton(r14);
  (v.FUseR14 ? r14 : r12)->setChecked(true);
  flipY->setChecked(v.FInvertY);
  // R14 always turns y upwards; the switch speaks for R12 alone.
  auto followVersion = [flipY, r14] {
    flipY->setEnabled(!r14->isChecked());
    if (r14->isChecked()) flipY->setChecked(true);
  };
  QObject::connect(r14, &QRadioButton::toggled, &dlg, followVersion);
  followVersion();
  for (QWidget* w : {static_cast<QWidget*>(r12), static_cast<QWidget*>(r14), static_cast<QWidget*>(flipY)}) {
    w->setVisible(dxf);
    if (dxf) layout->addWidget(w);
  }

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dlg);
  buttons->button(QDialogButtonBox::Ok)->setText(text(phrase, "btnOK", "OK"));
  buttons->button(QDialogButtonBox::Cancel)->setText(text(phrase, "btnCancel", "Cancel"));
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dlg, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dlg, &QDialog::reject);
  layout->addWidget(buttons);
  if (dlg.exec() != QDialog::Accepted) return false;

  v.FHolesAsDots = asDot->isChecked();
  v.FDotDiameter = diameter->value();
  v.FWithText = withText->isChecked();
  v.FWithTemplates = withTemplates->isChecked();
  v.FNoStrokeDash = noDash->isChecked();
  v.FOnlySelected = onlySelected->isChecked();
  v.FSkipHiddenLineTypes = skipHidden->isChecked();
  if (dxf) {
    v.FUseR14 = r14->isChecked();
    v.FInvertY = flipY->isChecked();
  }
  return true;
}

bool TQtExchangeDialogs::askNumber(const std::string& caption, const std::string& body, double& value) {
  bool ok = false;
  const double v = QInputDialog::getDouble(FParent, QString::fromStdString(caption), QString::fromStdString(body),
                                           value, 0.001, 1000000.0, 3, &ok);
  if (ok) value = v;
  return ok;
}

std::string TQtExchangeDialogs::saveFileName(const std::string& title, const std::string& filter,
                                             const std::string& folder, const std::string& name,
                                             const std::string& extension) {
  QString start = folder.empty() ? QDir::homePath() : QString::fromStdString(folder);
  if (!name.empty()) start = QDir(start).filePath(QString::fromStdString(name));
  QFileDialog dialog(FParent, QString::fromStdString(title), start, QString::fromStdString(filter));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(QString::fromStdString(extension).remove(0, 1));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  return dialog.selectedFiles().first().toStdString();
}

std::string TQtExchangeDialogs::openFileName(const std::string& filter, const std::string& folder) {
  const QString start = folder.empty() ? QDir::homePath() : QString::fromStdString(folder);
  return QFileDialog::getOpenFileName(FParent, QString(), start, QString::fromStdString(filter)).toStdString();
}

void TQtExchangeDialogs::setBusy(bool busy) {
  if (busy) QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  else QGuiApplication::restoreOverrideCursor();
}
