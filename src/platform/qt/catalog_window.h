// The leather catalog windows: TfrmCatalog lists shops, their groups and
// their leathers, exports and imports a shop, and fills the selected shapes
// with a leather; TfrmCatalogShop edits a shop or a group, TfrmCatalogItem
// a leather. Edits go to the controller, which marks the shop for writing.
#pragma once

#include <QDialog>

class TfrmPelw;
class TPW_Catalog;
class TPW_CatalogGroup;
class TPW_CatalogShop;
class QListWidget;
class QLabel;
class QDoubleSpinBox;
class QLineEdit;
class QPlainTextEdit;

class TfrmCatalog : public QDialog {
  Q_OBJECT
 public:
  TfrmCatalog(TfrmPelw& form, QWidget* parent = nullptr);
  // The lists again from the controller, keeping what was selected.
  void refresh();
  void retranslate();
  TPW_CatalogShop* selectedShop() const;
  TPW_CatalogGroup* selectedGroup() const;
  TPW_Catalog* selectedItem() const;
  QListWidget* FShops = nullptr;
  QListWidget* FGroups = nullptr;
  QListWidget* FItems = nullptr;

 private:
  TfrmPelw& FForm;
  QLabel* FPicture = nullptr;
  QDoubleSpinBox* FRotation = nullptr;
  QDoubleSpinBox* FScale = nullptr;
  bool FRefreshing = false;
  void fillGroups();
  void fillItems();
  void showPicture();
  void newClicked(int list);
  void editClicked(int list);
  void deleteClicked(int list);
};

// A shop or a group: name, address, memo.
class TfrmCatalogShop : public QDialog {
  Q_OBJECT
 public:
  TfrmCatalogShop(TfrmPelw& form, const QString& title, QWidget* parent = nullptr);
  QLineEdit* FName = nullptr;
  QLineEdit* FURL = nullptr;
  QPlainTextEdit* FMemo = nullptr;
};

// A leather: name, category, price, unit, address, memo, the picture and
// its resolution.
class TfrmCatalogItem : public QDialog {
  Q_OBJECT
 public:
  TfrmCatalogItem(TfrmPelw& form, TPW_Catalog& item, QWidget* parent = nullptr);
  // Writes the fields into the item.
  void apply();

 private:
  TfrmPelw& FForm;
  TPW_Catalog& FItem;
  QLineEdit* FName = nullptr;
  QLineEdit* FCategory = nullptr;
  QDoubleSpinBox* FPrice = nullptr;
  QLineEdit* FUnit = nullptr;
  QLineEdit* FURL = nullptr;
  QPlainTextEdit* FMemo = nullptr;
  QDoubleSpinBox* FDpi = nullptr;
  QLabel* FPicture = nullptr;
  void showPicture();
};
