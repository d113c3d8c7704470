#include "platform/qt/repository_panel.h"

#include <QDropEvent>
#include <QGridLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include "app/frm_pelw.h"
#include "platform/qt/qt_canvas.h"

namespace {

enum TRowKind { kFolderRow = 1, kTemplateRow = 2 };
constexpr int kKindRole = Qt::UserRole;
constexpr int kPointerRole = Qt::UserRole + 1;

template <typename T>
T* pointerOf(const QTreeWidgetItem* row, TRowKind kind) {
  if (!row || row->data(0, kKindRole).toInt() != kind) return nullptr;
  return reinterpret_cast<T*>(row->data(0, kPointerRole).value<quintptr>());
}

// The selected template's outline, fitted into the box.
class TTemplatePreview : public QWidget {
 public:
  explicit TTemplatePreview(TfrmRepository& panel) : QWidget(&panel), FPanel(panel) {
    setMinimumHeight(140);
    setObjectName("imgTemplatePreview");
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter p(this);
    p.fillRect(rect(), QColor(0x20, 0x20, 0x20));
    const TPW_Path* t = FPanel.getSelectedTemplate();
    if (!t) return;
    const QPainterPath path = toQPainterPath(t->FData);
    const QRectF b = path.boundingRect();
    if (b.width() <= 0 && b.height() <= 0) return;
    const double s = std::min((width() - 16) / std::max(b.width(), 1e-6), (height() - 16) / std::max(b.height(), 1e-6));
    p.setRenderHint(QPainter::Antialiasing);
    p.translate(width() / 2.0, height() / 2.0);
    p.scale(s, s);
    p.translate(-b.center());
    QPen pen(QColor(0x00, 0xE0, 0xFF));
    pen.setCosmetic(true);
    pen.setWidthF(1.5);
    p.setPen(pen);
    p.drawPath(path);
  }

 private:
  TfrmRepository& FPanel;
};

}  // namespace

void TRepositoryTreeWidget::dropEvent(QDropEvent* event) {
  QTreeWidgetItem* target = itemAt(event->position().toPoint());
  QTreeWidgetItem* dragged = currentItem();
  // The controller moves; the tree is built again from it.
  event->setDropAction(Qt::IgnoreAction);
  event->accept();
  if (FDropped && dragged && dragged != target) FDropped(dragged, target);
}

TfrmRepository::TfrmRepository(TfrmPelw& form, QWidget* parent) : QWidget(parent), FForm(form) {
  setObjectName("frmRepository");
  auto* main = new QVBoxLayout(this);
  main->setContentsMargins(4, 4, 4, 4);
  FTree = new TRepositoryTreeWidget(this);
  FTree->setObjectName("tvRepository");
  FTree->setHeaderHidden(true);
  FTree->setDragDropMode(QAbstractItemView::InternalMove);
  FTree->setSelectionMode(QAbstractItemView::SingleSelection);
  main->addWidget(FTree, 3);
  FPreview = new TTemplatePreview(*this);
  main->addWidget(FPreview, 1);
  FStatus = new QLabel(this);
  FStatus->setObjectName("lblRepositoryStatus");
  FStatus->setWordWrap(true);
  FStatus->hide();
  main->addWidget(FStatus);
  auto* buttons = new QGridLayout;
  auto add = [&](const char* key, int row, int col, auto slot) {
    auto* b = new QPushButton(this);
    b->setObjectName(key);
    buttons->addWidget(b, row, col);
    FTexts.emplace_back(b, key);
    connect(b, &QPushButton::clicked, this, slot);
  };
  add("sbAddToCanvas", 0, 0, [this] { sbAddToCanvasClick(); });
  add("sbRename", 0, 1, [this] { sbRenameClick(); });
  add("sbDelete", 0, 2, [this] { sbDeleteClick(); });
  add("sbRT_NewFolder", 1, 0, [this] { sbRT_NewFolderClick(); });
  add("sbRT_Move", 1, 1, [this] { sbRT_MoveClick(); });
  add("btnSortTemplate", 1, 2, [this] { btnSortTemplateClick(); });
  add("sbRT_Up", 2, 0, [this] { sbRT_UpClick(); });
  add("sbRT_Down", 2, 1, [this] { sbRT_DownClick(); });
  add("actImportRepository", 3, 0, [this] { FForm.actImportRepository(); });
  add("btnExportRepositoryFolder", 3, 1, [this] {
    if (TRepositoryTreeItem* f = selectedFolder()) FForm.actExportRepositoryFolder(*f);
  });
  main->addLayout(buttons);

  connect(FTree, &QTreeWidget::currentItemChanged, this, [this] {
    if (FRebuilding) return;
    FForm.FSelectedTemplate = getSelectedTemplate();
    FPreview->update();
  });
  connect(FTree, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* row) { rowClicked(row); });
  connect(FTree, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* row) {
    if (pointerOf<TPW_Path>(row, kTemplateRow)) sbAddToCanvasClick();
  });
  auto expansion = [this](QTreeWidgetItem* row, bool expanded) {
    if (FRebuilding) return;
    if (TRepositoryTreeItem* f = pointerOf<TRepositoryTreeItem>(row, kFolderRow)) {
      f->FIsExpanded = expanded;
      if (FForm.FRepository) FForm.FRepository->FChanged = true;
    }
  };
  connect(FTree, &QTreeWidget::itemExpanded, this, [expansion](QTreeWidgetItem* r) { expansion(r, true); });
  connect(FTree, &QTreeWidget::itemCollapsed, this, [expansion](QTreeWidgetItem* r) { expansion(r, false); });
  FTree->FDropped = [this](QTreeWidgetItem* dragged, QTreeWidgetItem* target) {
    moveTo(pointerOf<TPW_Path>(dragged, kTemplateRow), pointerOf<TRepositoryTreeItem>(dragged, kFolderRow), target);
  };
  retranslate();
  setRepositoryTree();
}

void TfrmRepository::retranslate() {
  if (!FForm.FMultiLang) return;
  for (auto& [w, key] : FTexts)
    if (auto* b = qobject_cast<QPushButton*>(w))
      b->setText(QString::fromStdString(FForm.FMultiLang->getTranslation(FForm.FLangID, key)));
  if (FMoveMode)
    FStatus->setText(QString::fromStdString(FForm.FMultiLang->getTranslation(FForm.FLangID, "RT_SelectMoveDestination")));
}

void TfrmRepository::addFolderRows(QTreeWidgetItem* parent, TRepositoryTreeItem& folder) {
  for (const auto& sub : folder.FTreeItems) {
    auto* row = parent ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(FTree);
    row->setText(0, QString::fromStdString(sub->FName));
    row->setIcon(0, style()->standardIcon(QStyle::SP_DirIcon));
    row->setData(0, kKindRole, kFolderRow);
    row->setData(0, kPointerRole, QVariant::fromValue(reinterpret_cast<quintptr>(sub.get())));
    row->setFlags(row->flags() | Qt::ItemIsUserCheckable | Qt::ItemIsDropEnabled | Qt::ItemIsDragEnabled);
    row->setCheckState(0, Qt::Unchecked);
    addFolderRows(row, *sub);
    row->setExpanded(sub->FIsExpanded);
  }
  for (TPW_Path* t : folder.FShapes) {
    auto* row = parent ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(FTree);
    row->setText(0, QString::fromStdString(t->FName.empty() ? t->FGUID.toString() : t->FName));
    row->setData(0, kKindRole, kTemplateRow);
    row->setData(0, kPointerRole, QVariant::fromValue(reinterpret_cast<quintptr>(t)));
    row->setFlags((row->flags() | Qt::ItemIsUserCheckable | Qt::ItemIsDragEnabled) & ~Qt::ItemIsDropEnabled);
    row->setCheckState(0, Qt::Unchecked);
  }
}

void TfrmRepository::setRepositoryTree() {
  const quintptr current = FTree->currentItem() ? FTree->currentItem()->data(0, kPointerRole).value<quintptr>() : 0;
  FRebuilding = true;
  FTree->clear();
  if (FForm.FRepository) addFolderRows(nullptr, *FForm.FRepository->FRootRepositoryTreeItem);
  // The row of the same template or folder as before, if it is still there.
  for (QTreeWidgetItemIterator it(FTree); *it; ++it)
    if (current && (*it)->data(0, kPointerRole).value<quintptr>() == current) {
      FTree->setCurrentItem(*it);
      break;
    }
  FRebuilding = false;
  FForm.FSelectedTemplate = getSelectedTemplate();
  FPreview->update();
}

TPW_Path* TfrmRepository::getSelectedTemplate() const { return pointerOf<TPW_Path>(FTree->currentItem(), kTemplateRow); }

TRepositoryTreeItem* TfrmRepository::folderOfRow(QTreeWidgetItem* row) const {
  if (!FForm.FRepository) return nullptr;
  if (TRepositoryTreeItem* f = pointerOf<TRepositoryTreeItem>(row, kFolderRow)) return f;
  if (TPW_Path* t = pointerOf<TPW_Path>(row, kTemplateRow))
    return FForm.FRepository->FRootRepositoryTreeItem->findTreeItemByShape(t);
  return FForm.FRepository->FRootRepositoryTreeItem.get();
}

TRepositoryTreeItem* TfrmRepository::selectedFolder() const { return folderOfRow(FTree->currentItem()); }

void TfrmRepository::sbAddToCanvasClick() {
  if (TPW_Path* t = getSelectedTemplate()) FForm.placeTemplate(*t);
}

void TfrmRepository::sbDeleteClick() {
  std::vector<TPW_Path*> templates;
  std::vector<TRepositoryTreeItem*> folders;
  for (QTreeWidgetItemIterator it(FTree, QTreeWidgetItemIterator::Checked); *it; ++it) {
    if (TPW_Path* t = pointerOf<TPW_Path>(*it, kTemplateRow)) templates.push_back(t);
    if (TRepositoryTreeItem* f = pointerOf<TRepositoryTreeItem>(*it, kFolderRow)) folders.push_back(f);
  }
  if (templates.empty() && folders.empty()) {
    if (TPW_Path* t = getSelectedTemplate()) templates.push_back(t);
    else if (TRepositoryTreeItem* f = pointerOf<TRepositoryTreeItem>(FTree->currentItem(), kFolderRow)) folders.push_back(f);
  }
  FForm.deleteRepositoryItems(templates, folders);
}

void TfrmRepository::sbRenameClick() {
  if (TPW_Path* t = getSelectedTemplate()) FForm.renameRepositoryTemplate(t);
  else if (TRepositoryTreeItem* f = pointerOf<TRepositoryTreeItem>(FTree->currentItem(), kFolderRow))
    FForm.renameRepositoryFolder(f);
}

void TfrmRepository::sbRT_NewFolderClick() {
  TRepositoryTreeItem* parent = pointerOf<TRepositoryTreeItem>(FTree->currentItem(), kFolderRow);
  FForm.newRepositoryFolder(parent);
}

void TfrmRepository::sbRT_UpClick() {
  if (!FForm.FRepository) return;
  if (TPW_Path* t = getSelectedTemplate()) FForm.FRepository->shiftTemplate(t, -1);
  else if (auto* f = pointerOf<TRepositoryTreeItem>(FTree->currentItem(), kFolderRow)) FForm.FRepository->shiftFolder(f, -1);
  setRepositoryTree();
}

void TfrmRepository::sbRT_DownClick() {
  if (!FForm.FRepository) return;
  if (TPW_Path* t = getSelectedTemplate()) FForm.FRepository->shiftTemplate(t, 1);
  else if (auto* f = pointerOf<TRepositoryTreeItem>(FTree->currentItem(), kFolderRow)) FForm.FRepository->shiftFolder(f, 1);
  setRepositoryTree();
}

void TfrmRepository::btnSortTemplateClick() {
  if (!FForm.FRepository) return;
  FForm.FRepository->sortTemplates(selectedFolder());
  setRepositoryTree();
}

void TfrmRepository::sbRT_MoveClick() {
  FMoveTemplate = getSelectedTemplate();
  FMoveFolder = pointerOf<TRepositoryTreeItem>(FTree->currentItem(), kFolderRow);
  if (!FMoveTemplate && !FMoveFolder) return;
  FMoveMode = true;
  FStatus->show();
  retranslate();
}

void TfrmRepository::clearMoveStatus() {
  FMoveMode = false;
  FMoveTemplate = nullptr;
  FMoveFolder = nullptr;
  FStatus->hide();
}

void TfrmRepository::rowClicked(QTreeWidgetItem* row) {
  if (!FMoveMode) return;
  TPW_Path* t = FMoveTemplate;
  TRepositoryTreeItem* f = FMoveFolder;
  clearMoveStatus();
  moveTo(t, f, row);
}

void TfrmRepository::moveTo(TPW_Path* templ, TRepositoryTreeItem* folder, QTreeWidgetItem* target) {
  TRepositoryTreeItem* destination = folderOfRow(target);
  if (!destination) return;
  if (!FForm.moveRepositoryItem(templ, folder, destination)) setRepositoryTree();
}

void TfrmRepository::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && FMoveMode) {
    clearMoveStatus();
    return;
  }
  QWidget::keyPressEvent(event);
}
