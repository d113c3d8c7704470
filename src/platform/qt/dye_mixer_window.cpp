#include "platform/qt/dye_mixer_window.h"

#include <QApplication>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPainter>
#include <QPixmap>
#include <QIcon>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QVBoxLayout>
#include <random>

#include "app/expression_parser.h"
#include "app/frm_pelw.h"
#include "app/length_format.h"
#include "platform/qt/qt_language.h"

namespace {

QColor qcolor(const TDyeRGB& c) { return QColor(c[0], c[1], c[2]); }

// Pale grain with scattered pores, drawn once; multiplied over a colour it
// reads as dyed leather rather than a flat patch.
const QImage& leatherGrain() {
  static const QImage grain = [] {
    QImage img(192, 192, QImage::Format_RGB32);
    std::mt19937 gen(1);
    std::uniform_int_distribution<int> noise(0, 14), pore(0, 60);
    for (int y = 0; y < img.height(); ++y)
      for (int x = 0; x < img.width(); ++x) {
        int v = 255 - noise(gen);
        if (pore(gen) == 0) v -= 45;
        img.setPixel(x, y, qRgb(v, v, v));
      }
    return img;
  }();
  return grain;
}

template <class W>
W* named(W* w, const char* name) {
  w->setObjectName(name);
  return w;
}

}  // namespace

// ---- swatch ----

TLeatherSwatch::TLeatherSwatch(QWidget* parent) : QWidget(parent) { setMinimumSize(160, 90); }

void TLeatherSwatch::setColours(const QColor& left, const std::optional<QColor>& right) {
  FLeft = left;
  FRight = right;
  update();
}

void TLeatherSwatch::paintEvent(QPaintEvent*) {
  QPainter p(this);
  const QRect r = rect().adjusted(0, 0, -1, -1);
  if (FRight) {
    const int half = r.width() / 2;
    p.fillRect(QRect(r.left(), r.top(), half, r.height()), FLeft);
    p.fillRect(QRect(r.left() + half, r.top(), r.width() - half, r.height()), *FRight);
  } else {
    p.fillRect(r, FLeft);
  }
  p.setCompositionMode(QPainter::CompositionMode_Multiply);
  static const QPixmap grain = QPixmap::fromImage(leatherGrain());
  p.drawTiledPixmap(r, grain);
  p.setCompositionMode(QPainter::CompositionMode_SourceOver);
  p.setPen(palette().color(QPalette::Mid));
  p.drawRect(r);
}

// ---- window ----

TfrmDyeSimulator::TfrmDyeSimulator(TfrmPelw& form, QWidget* parent) : QDialog(parent), FForm(form) {
  setObjectName("frmDyeSimulator");
  setWindowTitle("Dye mixer");
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  auto* top = new QVBoxLayout(this);
  auto* systemRow = new QHBoxLayout;
  systemRow->addWidget(named(new QLabel("Dye range:", this), "lblDye_System"));
  cmbDye_System = named(new QComboBox(this), "cmbDye_System");
  for (TDyeSystem s : {TDyeSystem::dsREN, TDyeSystem::dsCrafters})
    cmbDye_System->addItem(QString::fromStdString(dyeSystemInfo(s).LabelJa));
  systemRow->addWidget(cmbDye_System, 1);
  top->addLayout(systemRow);

  FTabs = new QTabWidget(this);
  FTabs->addTab(buildMixTab(), "Mix");
  FTabs->addTab(buildSearchTab(), "Find a recipe");
  FLibTable = new QTableWidget(this);
  FLibTable->setObjectName("tabLib");
  FLibTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
  FLibTable->verticalHeader()->hide();
  FTabs->addTab(FLibTable, "Dyes");
  top->addWidget(FTabs, 1);

  connect(cmbDye_System, &QComboBox::currentIndexChanged, this, [this] {
    fillDyeLists();
    fillLibrary();
    FHaveResults = false;
    showResults();
    updatePrediction();
  });
  fillDyeLists();
  fillLibrary();
  retranslate();
  updatePrediction();
  resize(560, 520);
}

QWidget* TfrmDyeSimulator::buildMixTab() {
  auto* page = named(new QWidget(this), "tabSim");
  auto* grid = new QGridLayout(page);
  grid->addWidget(named(new QLabel("Recipe (parts):", page), "lblDye_Recipe"), 0, 0, 1, 2);
  for (int i = 0; i < kRecipeRows; ++i) {
    cmbDye_Dye[i] = new QComboBox(page);
    cmbDye_Dye[i]->setObjectName(QString("cmbDye_Dye%1").arg(i));
    nbDye_Amount[i] = new QLineEdit(i == 0 ? "1" : "0", page);
    nbDye_Amount[i]->setObjectName(QString("nbDye_Amount%1").arg(i));
    nbDye_Amount[i]->setMaximumWidth(90);
    nbDye_Amount[i]->setAlignment(Qt::AlignRight);
    grid->addWidget(cmbDye_Dye[i], i + 1, 0);
    grid->addWidget(nbDye_Amount[i], i + 1, 1);
    connect(cmbDye_Dye[i], &QComboBox::activated, this, [this] { updatePrediction(); });
    connect(nbDye_Amount[i], &QLineEdit::editingFinished, this, [this] { updatePrediction(); });
  }
  grid->addWidget(named(new QLabel("Dilution (1 = pure dye, 2 = one to one):", page), "lblDye_Dilution"),
                  kRecipeRows + 1, 0);
  nbDye_Dilution = named(new QLineEdit("2", page), "nbDye_Dilution");
  nbDye_Dilution->setMaximumWidth(90);
  nbDye_Dilution->setAlignment(Qt::AlignRight);
  connect(nbDye_Dilution, &QLineEdit::editingFinished, this, [this] { updatePrediction(); });
  grid->addWidget(nbDye_Dilution, kRecipeRows + 1, 1);
  grid->addWidget(named(new QLabel("Predicted colour", page), "lblDye_Predicted"), kRecipeRows + 2, 0, 1, 2);
  FPredicted = new TLeatherSwatch(page);
  grid->addWidget(FPredicted, kRecipeRows + 3, 0, 1, 2);
  lblDye_PredictedHex = new QLabel(page);
  lblDye_PredictedHex->setTextInteractionFlags(Qt::TextSelectableByMouse);
  grid->addWidget(lblDye_PredictedHex, kRecipeRows + 4, 0, 1, 2);
  auto* note = named(new QLabel("As predicted on natural vegetable-tanned leather.", page), "dye_leather_note");
  note->setWordWrap(true);
  grid->addWidget(note, kRecipeRows + 5, 0, 1, 2);
  grid->setRowStretch(kRecipeRows + 6, 1);
  grid->setColumnStretch(0, 1);
  for (int i = 0; i < kRecipeRows; ++i) FGoodAmounts[i] = nbDye_Amount[i]->text();
  FGoodDilution = nbDye_Dilution->text();
  return page;
}

QWidget* TfrmDyeSimulator::buildSearchTab() {
  auto* page = named(new QWidget(this), "tabInv");
  auto* v = new QVBoxLayout(page);
  auto* row = new QHBoxLayout;
  row->addWidget(named(new QLabel("Wanted colour:", page), "lblDye_Target"));
  edtDye_Target = named(new QLineEdit(QString::fromStdString(dyeHexText(FTarget)), page), "edtDye_Target");
  row->addWidget(edtDye_Target, 1);
  btnDye_PickColour = named(new QPushButton("Pick...", page), "btnDye_PickColour");
  row->addWidget(btnDye_PickColour);
  v->addLayout(row);
  auto* row2 = new QHBoxLayout;
  chkDye_AllowDiluent = named(new QCheckBox("Allow diluent", page), "chkDye_AllowDiluent");
  chkDye_AllowDiluent->setChecked(true);
  row2->addWidget(chkDye_AllowDiluent, 1);
  btnDye_Search = named(new QPushButton("Search", page), "btnDye_Search");
  btnDye_Search->setDefault(true);
  row2->addWidget(btnDye_Search);
  v->addLayout(row2);
  auto* results = new QHBoxLayout;
  for (int k = 0; k < 3; ++k) {
    FResultBoxes[k] = new QGroupBox(page);
    auto* box = new QVBoxLayout(FResultBoxes[k]);
    FResultSwatches[k] = new TLeatherSwatch(FResultBoxes[k]);
    FResultSwatches[k]->setMinimumSize(120, 70);
    FResultTexts[k] = new QLabel(FResultBoxes[k]);
    FResultTexts[k]->setWordWrap(true);
    FResultTexts[k]->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    FResultTexts[k]->setTextInteractionFlags(Qt::TextSelectableByMouse);
    box->addWidget(FResultSwatches[k]);
    box->addWidget(FResultTexts[k], 1);
    results->addWidget(FResultBoxes[k], 1);
  }
  v->addLayout(results, 1);
  connect(btnDye_PickColour, &QPushButton::clicked, this, [this] {
    TDyeRGB start = FTarget;
    parseDyeColour(edtDye_Target->text().toStdString(), start);
    const QColor c = QColorDialog::getColor(qcolor(start), this);
    if (!c.isValid()) return;
    edtDye_Target->setText(QString::fromStdString(
        dyeHexText({static_cast<std::uint8_t>(c.red()), static_cast<std::uint8_t>(c.green()),
                    static_cast<std::uint8_t>(c.blue())})));
    search();
  });
  connect(btnDye_Search, &QPushButton::clicked, this, [this] { search(); });
  connect(edtDye_Target, &QLineEdit::returnPressed, this, [this] { search(); });
  return page;
}

TDyeSystem TfrmDyeSimulator::system() const {
  return cmbDye_System->currentIndex() == 1 ? TDyeSystem::dsCrafters : TDyeSystem::dsREN;
}

std::string TfrmDyeSimulator::dyeLabel(const std::string& id) const {
  const TDyePigment* p = findDyePigment(system(), id);
  if (!p) return id;
  return FForm.FLangID == "ja" ? p->LabelJa : p->LabelEn;
}

QString TfrmDyeSimulator::phrase(const char* key) const { return phraseOf(FForm.FMultiLang.get(), FForm.FLangID, key); }

void TfrmDyeSimulator::tell(const std::string& key) {
  const std::string text = phrase(key.c_str()).toStdString();
  if (FForm.FDialogs) FForm.FDialogs->showMessage(text);
  else QMessageBox::information(this, windowTitle(), QString::fromStdString(text));
}

void TfrmDyeSimulator::fillDyeLists() {
  const std::vector<const TDyePigment*> dyes = dyePigmentList(system());
  for (int i = 0; i < kRecipeRows; ++i) {
    QComboBox* c = cmbDye_Dye[i];
    const int keep = c->currentIndex();
    c->clear();
    c->addItem("-");
    for (const TDyePigment* p : dyes) {
      QPixmap chip(14, 14);
      chip.fill(qcolor(p->RGB));
      c->addItem(QIcon(chip), QString::fromStdString(dyeLabel(p->Id)), QString::fromStdString(p->Id));
    }
    c->setCurrentIndex(keep >= 0 && keep < c->count() ? keep : (i == 0 ? 1 : 0));
  }
}

void TfrmDyeSimulator::fillLibrary() {
  const std::vector<const TDyePigment*> all = dyeAllPigments(system());
  FLibTable->clear();
  FLibTable->setColumnCount(5);
  FLibTable->setRowCount(static_cast<int>(all.size()));
  FLibTable->setHorizontalHeaderLabels({"", "", "id", "sRGB", "K/S"});
  for (int r = 0; r < static_cast<int>(all.size()); ++r) {
    const TDyePigment& p = *all[r];
    auto* chip = new QTableWidgetItem;
    chip->setBackground(qcolor(p.RGB));
    FLibTable->setItem(r, 0, chip);
    FLibTable->setItem(r, 1, new QTableWidgetItem(QString::fromStdString(dyeLabel(p.Id))));
    FLibTable->setItem(r, 2, new QTableWidgetItem(QString::fromStdString(p.Id)));
    FLibTable->setItem(r, 3, new QTableWidgetItem(QString::fromStdString(dyeHexText(p.RGB))));
    FLibTable->setItem(r, 4, new QTableWidgetItem(QString::fromStdString(
                                 formatFixedDecimals(p.KOverS[0], 3) + "  " + formatFixedDecimals(p.KOverS[1], 3) +
                                 "  " + formatFixedDecimals(p.KOverS[2], 3))));
  }
  FLibTable->setColumnWidth(0, 28);
  FLibTable->horizontalHeader()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
  FLibTable->horizontalHeader()->setStretchLastSection(true);
}

bool TfrmDyeSimulator::updatePrediction() {
  const TExpressionParser parser('.', 6);
  auto read = [&](const QLineEdit* box, double& v) {
    const std::string text = box->text().trimmed().replace(',', '.').toStdString();
    if (text.empty()) {
      v = 0;
      return true;
    }
    try {
      v = parser.ParseExpressionToFloat(text);
      return true;
    } catch (const std::exception&) {
      return false;
    }
  };
  auto refuse = [&](const std::string& key) {
    for (int i = 0; i < kRecipeRows; ++i) nbDye_Amount[i]->setText(FGoodAmounts[i]);
    nbDye_Dilution->setText(FGoodDilution);
    tell(key);
    return false;
  };
  std::vector<TDyeRecipeEntry> recipe;
  for (int i = 0; i < kRecipeRows; ++i) {
    double w = 0;
    if (!read(nbDye_Amount[i], w)) return refuse("dye_bad_amount");
    const std::string id = cmbDye_Dye[i]->currentData().toString().toStdString();
    if (!id.empty() || w != 0) recipe.push_back({id, w});
  }
  double dilution = 0;
  if (!read(nbDye_Dilution, dilution)) return refuse("dye_bad_dilution");
  if (const std::string why = checkDyeRecipe(recipe, dilution); !why.empty()) return refuse(why);
  // Amounts typed for no dye count for nothing.
  std::erase_if(recipe, [](const TDyeRecipeEntry& e) { return e.PigmentId.empty(); });
  const TDyeMix mix = dyeForwardMix(dyeWithDilution(recipe, system(), dilution), system());
  FPredicted->setColours(qcolor(mix.RGB));
  lblDye_PredictedHex->setText(QString::fromStdString(dyeHexText(mix.RGB)));
  for (int i = 0; i < kRecipeRows; ++i) FGoodAmounts[i] = nbDye_Amount[i]->text();
  FGoodDilution = nbDye_Dilution->text();
  return true;
}

bool TfrmDyeSimulator::search() {
  TDyeRGB target{};
  if (!parseDyeColour(edtDye_Target->text().toStdString(), target)) {
    edtDye_Target->setText(QString::fromStdString(dyeHexText(FTarget)));
    tell("dye_bad_colour");
    return false;
  }
  FTarget = target;
  QApplication::setOverrideCursor(Qt::WaitCursor);
  FResults = dyeInverseSearch(target, system(), chkDye_AllowDiluent->isChecked());
  QApplication::restoreOverrideCursor();
  FHaveResults = true;
  showResults();
  return true;
}

void TfrmDyeSimulator::showResults() {
  for (int k = 0; k < 3; ++k) {
    FResultBoxes[k]->setTitle(QString::fromStdString(fillPhrase(phrase("dye_dyes").toStdString(), {std::to_string(k + 2)})));
    const TInverseResult& r = FResults[k];
    if (!FHaveResults) {
      FResultSwatches[k]->setColours(qcolor(dyeBaseColour().RGB));
      FResultTexts[k]->clear();
      continue;
    }
    if (!r.HasResult) {
      FResultSwatches[k]->setColours(qcolor(dyeBaseColour().RGB), qcolor(FTarget));
      FResultTexts[k]->setText(phrase("dye_no_candidate"));
      continue;
    }
    FResultSwatches[k]->setColours(qcolor(r.PredictedRGB), qcolor(FTarget));
    std::string text = "ΔE " + formatFixedDecimals(r.DeltaE, 2) + "   " + dyeHexText(r.PredictedRGB) + "\n";
    for (const TInverseRecipeEntry& e : r.Recipe)
      text += dyeLabel(e.PigmentId) + "  " + formatFixedDecimals(e.Fraction * 100, 1) + " %\n";
    text += fillPhrase(phrase("dye_dilution").toStdString(), {formatFixedDecimals(r.Dilution, 2)});
    if (r.OutOfGamut)
      text += "\n" + fillPhrase(phrase("dye_out_of_gamut").toStdString(), {formatFixedDecimals(r.DeltaE, 1)});
    FResultTexts[k]->setText(QString::fromStdString(text));
  }
}

void TfrmDyeSimulator::retranslate() {
  translateWidgets(this, FForm.FMultiLang.get(), FForm.FLangID);
  fillDyeLists();
  fillLibrary();
  showResults();
}
