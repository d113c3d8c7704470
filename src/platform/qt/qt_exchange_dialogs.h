// The export options dialog, the import width box and the file dialogs of
// SVG and DXF, with Qt.
#pragma once

#include <QPointer>
#include <QWidget>

#include "platform/exchange_dialogs.h"

class TQtExchangeDialogs : public IExchangeDialogs {
 public:
  void setParent(QWidget* parent) { FParent = parent; }

  bool exportOptions(const std::string& type, const TPhraseLookup& phrase, TExportDialogValues& values) override;
  bool askNumber(const std::string& caption, const std::string& body, double& value) override;
  std::string saveFileName(const std::string& title, const std::string& filter, const std::string& folder,
                           const std::string& name, const std::string& extension) override;
  std::string openFileName(const std::string& filter, const std::string& folder) override;
  void setBusy(bool busy) override;

 private:
  QPointer<QWidget> FParent;
};
