// TfrmPDFViewer: the pages of a PDF to check, with a preview of the page
// under the cursor, for taking pages as backdrops. Only the previewed page
// is rendered, so a document of a thousand pages opens at once.
#pragma once

#include <QDialog>
#include <vector>

class IPdfPages;
class QListWidget;
class QLabel;

class TfrmPDFViewer : public QDialog {
  Q_OBJECT
 public:
  TfrmPDFViewer(QWidget* parent, const QString& title, const QString& pagesLabel, const QString& pageWord);
  // The document to show; borrowed while the dialog runs. At most maxPages
  // can be checked.
  void setPDF(IPdfPages& document, int maxPages);
  std::vector<int> checkedPages() const;

 private:
  IPdfPages* FDocument = nullptr;
  QListWidget* FPages = nullptr;
  QLabel* FPreview = nullptr;
  int FMaxPages = 1;
  QString FPageWord;
  void showPreview(int page);
  void keepWithinLimit();
};
