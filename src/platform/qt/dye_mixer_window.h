// TfrmDyeSimulator: the dye mixer's window. "Mix" predicts the colour of a
// recipe on natural leather, "Find a recipe" searches the mixes of two,
// three and four dyes nearest a wanted colour, "Dyes" lists the chart.
// All colour work is the dye mixer's (simulators/dye_mixer.h).
#pragma once

#include <QDialog>
#include <array>
#include <optional>

#include "simulators/dye_mixer.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTabWidget;
class QTableWidget;
class TfrmPelw;

// A patch of leather grain tinted with a colour; with a second colour the
// right half shows it, for the predicted and wanted colour side by side.
class TLeatherSwatch : public QWidget {
 public:
  explicit TLeatherSwatch(QWidget* parent = nullptr);
  void setColours(const QColor& left, const std::optional<QColor>& right = std::nullopt);
  QColor leftColour() const { return FLeft; }

 protected:
  void paintEvent(QPaintEvent*) override;

 private:
  QColor FLeft{187, 142, 123};
  std::optional<QColor> FRight;
};

class TfrmDyeSimulator : public QDialog {
  Q_OBJECT
 public:
  static constexpr int kRecipeRows = 4;
  explicit TfrmDyeSimulator(TfrmPelw& form, QWidget* parent = nullptr);

  QComboBox* cmbDye_System = nullptr;
  QTabWidget* FTabs = nullptr;
  // Mix
  std::array<QComboBox*, kRecipeRows> cmbDye_Dye{};
  std::array<QLineEdit*, kRecipeRows> nbDye_Amount{};
  QLineEdit* nbDye_Dilution = nullptr;
  TLeatherSwatch* FPredicted = nullptr;
  QLabel* lblDye_PredictedHex = nullptr;
  // Find a recipe
  QLineEdit* edtDye_Target = nullptr;
  QPushButton* btnDye_PickColour = nullptr;
  QCheckBox* chkDye_AllowDiluent = nullptr;
  QPushButton* btnDye_Search = nullptr;
  std::array<QGroupBox*, 3> FResultBoxes{};
  std::array<TLeatherSwatch*, 3> FResultSwatches{};
  std::array<QLabel*, 3> FResultTexts{};
  // Dyes
  QTableWidget* FLibTable = nullptr;

  // The recipe and dilution in the boxes into the prediction; a refused
  // number gets a message, and the boxes and prediction stay as they were.
  bool updatePrediction();
  // The search for the wanted colour, under a busy cursor. A colour that
  // cannot be read gets a message and leaves the results as they were.
  bool search();
  // Texts in the program's language.
  void retranslate();
  const TInverseResults& results() const { return FResults; }

 private:
  TfrmPelw& FForm;
  TInverseResults FResults;
  bool FHaveResults = false;
  // The last accepted box texts, put back when a number is refused.
  std::array<QString, kRecipeRows> FGoodAmounts;
  QString FGoodDilution;
  TDyeRGB FTarget{139, 90, 60};

  TDyeSystem system() const;
  std::string dyeLabel(const std::string& id) const;
  QString phrase(const char* key) const;
  void tell(const std::string& key);
  void fillDyeLists();
  void fillLibrary();
  void showResults();
  QWidget* buildMixTab();
  QWidget* buildSearchTab();
};
