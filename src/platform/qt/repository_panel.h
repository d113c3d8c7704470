// TfrmRepository: the parts repository's panel. The tree holds the folders
// and, in them, the templates (checked rows are what Delete takes); a
// preview shows the selected template. Every edit goes to the controller,
// and the tree is built again from it afterwards.
#pragma once

#include <QTreeWidget>
#include <QWidget>

class TfrmPelw;
class TPW_Path;
class TRepositoryTreeItem;
class QLabel;

// The tree: a row dropped on another moves there (the controller decides).
class TRepositoryTreeWidget : public QTreeWidget {
  Q_OBJECT
 public:
  using QTreeWidget::QTreeWidget;
  std::function<void(QTreeWidgetItem* dragged, QTreeWidgetItem* target)> FDropped;

 protected:
  void dropEvent(QDropEvent* event) override;
};

class TfrmRepository : public QWidget {
  Q_OBJECT
 public:
  TfrmRepository(TfrmPelw& form, QWidget* parent = nullptr);

  // The tree again, from the controller; the selection is kept by identity.
  void setRepositoryTree();
  TPW_Path* getSelectedTemplate() const;
  TRepositoryTreeItem* selectedFolder() const;
  TRepositoryTreeWidget* tree() const { return FTree; }
  // The buttons, by their phrase keys, for tests.
  void sbAddToCanvasClick();
  void sbDeleteClick();
  void sbRenameClick();
  void sbRT_NewFolderClick();
  void sbRT_UpClick();
  void sbRT_DownClick();
  void sbRT_MoveClick();
  void btnSortTemplateClick();
  void clearMoveStatus();
  void retranslate();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  TfrmPelw& FForm;
  TRepositoryTreeWidget* FTree = nullptr;
  QWidget* FPreview = nullptr;
  QLabel* FStatus = nullptr;
  std::vector<std::pair<QWidget*, const char*>> FTexts;
  bool FMoveMode = false;
  TPW_Path* FMoveTemplate = nullptr;
  TRepositoryTreeItem* FMoveFolder = nullptr;
  bool FRebuilding = false;
  void addFolderRows(QTreeWidgetItem* parent, TRepositoryTreeItem& folder);
  void rowClicked(QTreeWidgetItem* row);
  void moveTo(TPW_Path* templ, TRepositoryTreeItem* folder, QTreeWidgetItem* target);
  TRepositoryTreeItem* folderOfRow(QTreeWidgetItem* row) const;
};
