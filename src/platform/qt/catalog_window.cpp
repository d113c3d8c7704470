#include "platform/qt/catalog_window.h"

#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/frm_pelw.h"

namespace {

QString text(const TfrmPelw& f, const char* key) {
  return f.FMultiLang ? QString::fromStdString(f.FMultiLang->getTranslation(f.FLangID, key)) : QString(key);
}

// A picture shown in a label of the given size.
void showIn(QLabel* label, TPW_Catalog* item) {
  label->clear();
  if (!item) return;
  const TRasterImage& r = item->bitmap();
  if (r.isEmpty()) return;
  const QImage img(reinterpret_cast<const uchar*>(r.FPixels->data()), r.FWidth, r.FHeight, r.FWidth * 4,
                   QImage::Format_ARGB32);
  label->setPixmap(QPixmap::fromImage(img.scaled(label->size(), Qt::KeepAspectRatio, Qt::SmoothTransformation)));
}

void select(QListWidget* list, const void* which) {
  for (int i = 0; i < list->count(); ++i)
    if (reinterpret_cast<const void*>(list->item(i)->data(Qt::UserRole).value<quintptr>()) == which) {
      list->setCurrentRow(i);
      return;
    }
  if (list->count() > 0) list->setCurrentRow(0);
}

template <typename T>
T* pointerAt(const QListWidget* list) {
  const QListWidgetItem* row = list->currentItem();
  return row ? reinterpret_cast<T*>(row->data(Qt::UserRole).value<quintptr>()) : nullptr;
}

QListWidgetItem* rowFor(QListWidget* list, const std::string& name, const void* p) {
  auto* row = new QListWidgetItem(QString::fromStdString(name), list);
  row->setData(Qt::UserRole, QVariant::fromValue(reinterpret_cast<quintptr>(p)));
  return row;
}

}  // namespace

TfrmCatalog::TfrmCatalog(TfrmPelw& form, QWidget* parent) : QDialog(parent), FForm(form) {
  setObjectName("frmCatalog");
  auto* main = new QVBoxLayout(this);
  auto* lists = new QGridLayout;
  const char* titles[3] = {"lblCT_Shops", "lblCT_Groups", "lblCT_Items"};
  QListWidget** boxes[3] = {&FShops, &FGroups, &FItems};
  const char* names[3] = {"lbShops", "lbGroups", "lbItems"};
  for (int i = 0; i < 3; ++i) {
    auto* title = new QLabel(this);
    title->setObjectName(titles[i]);
    lists->addWidget(title, 0, i);
    *boxes[i] = new QListWidget(this);
    (*boxes[i])->setObjectName(names[i]);
    lists->addWidget(*boxes[i], 1, i);
    auto* row = new QHBoxLayout;
    for (const char* key : {"btnCT_New", "btnCT_Edit", "sbDelete"}) {
      auto* b = new QPushButton(this);
      b->setObjectName(QString(key) + "_" + QString::number(i));
      b->setProperty("phrase", key);
      row->addWidget(b);
      const std::string k = key;
      connect(b, &QPushButton::clicked, this, [this, i, k] {
        if (k == "btnCT_New") newClicked(i);
        else if (k == "btnCT_Edit") editClicked(i);
        else deleteClicked(i);
      });
    }
    lists->addLayout(row, 2, i);
  }
  main->addLayout(lists);
  auto* bottom = new QHBoxLayout;
  FPicture = new QLabel(this);
  FPicture->setObjectName("imgLeather");
  FPicture->setFixedSize(160, 120);
  FPicture->setAlignment(Qt::AlignCenter);
  FPicture->setStyleSheet("background: #303030");
  bottom->addWidget(FPicture);
  auto* fill = new QFormLayout;
  FRotation = new QDoubleSpinBox(this);
  FRotation->setObjectName("nbCT_Rotation");
  FRotation->setRange(-360, 360);
  FScale = new QDoubleSpinBox(this);
  FScale->setObjectName("nbCT_Scale");
  FScale->setRange(0.01, 100);
  FScale->setValue(1);
  FScale->setSingleStep(0.1);
  auto* rotationLabel = new QLabel(this);
  rotationLabel->setObjectName("lblCT_Rotation");
  auto* scaleLabel = new QLabel(this);
  scaleLabel->setObjectName("lblCT_Scale");
  fill->addRow(rotationLabel, FRotation);
  fill->addRow(scaleLabel, FScale);
  bottom->addLayout(fill);
  auto* actions = new QVBoxLayout;
  for (const char* key : {"btnCT_Apply", "btnCT_Clear", "actExportCatalog", "actImportCatalog"}) {
    auto* b = new QPushButton(this);
    b->setObjectName(key);
    b->setProperty("phrase", key);
    actions->addWidget(b);
    const std::string k = key;
    connect(b, &QPushButton::clicked, this, [this, k] {
      if (k == "btnCT_Apply") {
        const float s = static_cast<float>(FScale->value());
        FForm.applyCatalogToSelection(selectedItem(), static_cast<float>(FRotation->value()), TPointF(s, s));
      } else if (k == "btnCT_Clear") {
        FForm.applyCatalogToSelection(nullptr);
      } else if (k == "actExportCatalog") {
        if (TPW_CatalogShop* shop = selectedShop()) FForm.actExportCatalog(*shop);
      } else {
        FForm.actImportCatalog();
      }
    });
  }
  bottom->addLayout(actions);
  main->addLayout(bottom);
  connect(FShops, &QListWidget::currentRowChanged, this, [this] {
    if (!FRefreshing) fillGroups();
  });
  connect(FGroups, &QListWidget::currentRowChanged, this, [this] {
    if (!FRefreshing) fillItems();
  });
  connect(FItems, &QListWidget::currentRowChanged, this, [this] { showPicture(); });
  connect(FItems, &QListWidget::itemDoubleClicked, this, [this] { editClicked(2); });
  retranslate();
  refresh();
  resize(760, 480);
}

void TfrmCatalog::retranslate() {
  setWindowTitle(text(FForm, "frmCatalog"));
  for (QLabel* l : findChildren<QLabel*>())
    if (l->objectName().startsWith("lbl")) l->setText(text(FForm, l->objectName().toUtf8().constData()));
  for (QPushButton* b : findChildren<QPushButton*>())
    b->setText(text(FForm, b->property("phrase").toByteArray().constData()));
}

TPW_CatalogShop* TfrmCatalog::selectedShop() const { return pointerAt<TPW_CatalogShop>(FShops); }
TPW_CatalogGroup* TfrmCatalog::selectedGroup() const { return pointerAt<TPW_CatalogGroup>(FGroups); }
TPW_Catalog* TfrmCatalog::selectedItem() const { return pointerAt<TPW_Catalog>(FItems); }

void TfrmCatalog::refresh() {
  const void* shop = selectedShop();
  FRefreshing = true;
  FShops->clear();
  if (FForm.FCatalogDict)
    for (const auto& s : FForm.FCatalogDict->FShops) rowFor(FShops, s->FName, s.get());
  select(FShops, shop);
  FRefreshing = false;
  fillGroups();
}

void TfrmCatalog::fillGroups() {
  const void* group = selectedGroup();
  FRefreshing = true;
  FGroups->clear();
  if (TPW_CatalogShop* shop = selectedShop())
    for (const auto& g : shop->FGroups) rowFor(FGroups, g->FName, g.get());
  select(FGroups, group);
  FRefreshing = false;
  fillItems();
}

void TfrmCatalog::fillItems() {
  const void* item = selectedItem();
  FItems->clear();
  if (TPW_CatalogGroup* group = selectedGroup())
    for (const auto& i : group->FItems) rowFor(FItems, i->FName, i.get());
  select(FItems, item);
  showPicture();
}

void TfrmCatalog::showPicture() { showIn(FPicture, selectedItem()); }

void TfrmCatalog::newClicked(int list) {
  if (list == 0) {
    TfrmCatalogShop dialog(FForm, text(FForm, "frmCatalogShop"), this);
    if (dialog.exec() != QDialog::Accepted) return;
    TPW_CatalogShop* shop = FForm.addCatalogShop(dialog.FName->text().toStdString());
    if (!shop) return;
    shop->FURL = dialog.FURL->text().toStdString();
    shop->FMemo = dialog.FMemo->toPlainText().toStdString();
    refresh();
    select(FShops, shop);
  } else if (list == 1) {
    TPW_CatalogShop* shop = selectedShop();
    if (!shop) return;
    TfrmCatalogShop dialog(FForm, text(FForm, "frmCatalogGroup"), this);
    if (dialog.exec() != QDialog::Accepted) return;
    TPW_CatalogGroup* group = FForm.addCatalogGroup(*shop, dialog.FName->text().toStdString());
    group->FURL = dialog.FURL->text().toStdString();
    group->FMemo = dialog.FMemo->toPlainText().toStdString();
    fillGroups();
    select(FGroups, group);
  } else {
    TPW_CatalogGroup* group = selectedGroup();
    if (!group) return;
    TPW_Catalog* item = FForm.addCatalogItem(*group, "");
    TfrmCatalogItem dialog(FForm, *item, this);
    if (dialog.exec() == QDialog::Accepted) dialog.apply();
    else FForm.FCatalogDict->deleteCatalog(item);
    FForm.catalogEdited(FForm.FCatalogDict->findShopByGroup(group));
    fillItems();
  }
}

void TfrmCatalog::editClicked(int list) {
  if (list == 2) {
    TPW_Catalog* item = selectedItem();
    if (!item) return;
    TfrmCatalogItem dialog(FForm, *item, this);
    if (dialog.exec() != QDialog::Accepted) return;
    dialog.apply();
    FForm.catalogEdited(FForm.FCatalogDict->findShopByCatalogItem(item));
    fillItems();
    return;
  }
  TPW_CatalogShop* shop = selectedShop();
  TPW_CatalogGroup* group = list == 1 ? selectedGroup() : nullptr;
  if (!shop || (list == 1 && !group)) return;
  TfrmCatalogShop dialog(FForm, text(FForm, list == 0 ? "frmCatalogShop" : "frmCatalogGroup"), this);
  std::string& name = group ? group->FName : shop->FName;
  std::string& url = group ? group->FURL : shop->FURL;
  std::string& memo = group ? group->FMemo : shop->FMemo;
  dialog.FName->setText(QString::fromStdString(name));
  dialog.FURL->setText(QString::fromStdString(url));
  dialog.FMemo->setPlainText(QString::fromStdString(memo));
  if (dialog.exec() != QDialog::Accepted) return;
  name = dialog.FName->text().toStdString();
  url = dialog.FURL->text().toStdString();
  memo = dialog.FMemo->toPlainText().toStdString();
  if (list == 0) FForm.FCatalogDict->FShopListChanged = true;
  FForm.catalogEdited(shop);
  refresh();
}

void TfrmCatalog::deleteClicked(int list) {
  if (list == 0) FForm.deleteCatalogShop(selectedShop());
  else if (list == 1) FForm.deleteCatalogGroup(selectedGroup());
  else FForm.deleteCatalogItem(selectedItem());
  refresh();
}

TfrmCatalogShop::TfrmCatalogShop(TfrmPelw& form, const QString& title, QWidget* parent) : QDialog(parent) {
  setObjectName("frmCatalogShop");
  setWindowTitle(title);
  auto* layout = new QFormLayout(this);
  FName = new QLineEdit(this);
  FURL = new QLineEdit(this);
  FMemo = new QPlainTextEdit(this);
  layout->addRow(text(form, "lblCT_Name"), FName);
  layout->addRow(text(form, "lblCT_URL"), FURL);
  layout->addRow(text(form, "lblCT_Memo"), FMemo);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  layout->addRow(buttons);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

TfrmCatalogItem::TfrmCatalogItem(TfrmPelw& form, TPW_Catalog& item, QWidget* parent)
    : QDialog(parent), FForm(form), FItem(item) {
  setObjectName("frmCatalogItem");
  setWindowTitle(text(form, "frmCatalogItem"));
  auto* layout = new QFormLayout(this);
  FName = new QLineEdit(QString::fromStdString(item.FName), this);
  FCategory = new QLineEdit(QString::fromStdString(item.FCategory), this);
  FPrice = new QDoubleSpinBox(this);
  FPrice->setRange(0, 1e9);
  FPrice->setDecimals(2);
  FPrice->setValue(item.FUnitPrice);
  FUnit = new QLineEdit(QString::fromStdString(item.FUnitStr), this);
  FURL = new QLineEdit(QString::fromStdString(item.FURL), this);
  FMemo = new QPlainTextEdit(QString::fromStdString(item.FMemo), this);
  FDpi = new QDoubleSpinBox(this);
  FDpi->setRange(1, 100000);
  FDpi->setDecimals(1);
  FDpi->setValue(item.FImageDPI);
  FPicture = new QLabel(this);
  FPicture->setFixedSize(200, 150);
  FPicture->setAlignment(Qt::AlignCenter);
  FPicture->setStyleSheet("background: #303030");
  auto* load = new QPushButton(text(form, "btnCT_Picture"), this);
  layout->addRow(text(form, "lblCT_Name"), FName);
  layout->addRow(text(form, "lblCT_Category"), FCategory);
  layout->addRow(text(form, "lblCT_Price"), FPrice);
  layout->addRow(text(form, "lblCT_Unit"), FUnit);
  layout->addRow(text(form, "lblCT_URL"), FURL);
  layout->addRow(text(form, "lblCT_Memo"), FMemo);
  layout->addRow(text(form, "lblCT_Dpi"), FDpi);
  layout->addRow(load, FPicture);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  layout->addRow(buttons);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(load, &QPushButton::clicked, this, [this] {
    const QString file = QFileDialog::getOpenFileName(this, QString(), QString(),
                                                      "Pictures (*.png *.jpg *.jpeg *.bmp);;All files (*)");
    if (file.isEmpty()) return;
    if (FForm.loadCatalogPicture(FItem, file.toStdString())) FDpi->setValue(FItem.FImageDPI);
    showPicture();
  });
  showPicture();
}

void TfrmCatalogItem::showPicture() { showIn(FPicture, &FItem); }

void TfrmCatalogItem::apply() {
  FItem.FName = FName->text().toStdString();
  FItem.FCategory = FCategory->text().toStdString();
  FItem.FUnitPrice = static_cast<float>(FPrice->value());
  FItem.FUnitStr = FUnit->text().toStdString();
  FItem.FURL = FURL->text().toStdString();
  FItem.FMemo = FMemo->toPlainText().toStdString();
  FItem.FImageDPI = static_cast<float>(FDpi->value());
  FItem.fixBitmap();
}
