// Message boxes, questions and native file dialogs of the window.
#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>

#include "platform/dialogs.h"

class TQtDialogs : public IDialogs {
 public:
  // The window the dialogs belong to; none before it exists.
  void setParent(QWidget* parent) { FParent = parent; }
  // Title of message boxes ("Pelwright").
  void setTitle(const QString& title) { FTitle = title; }
  // The filter text of file dialogs, e.g. "Pelwright project (*.pwc)".
  void setProjectFilter(const QString& filter) { FFilter = filter; }

  void showMessage(const std::string& text) override;
  TDialogAnswer askYesNo(const std::string& text, TDialogAnswer keepsData) override;
  TDialogAnswer askYesNoCancel(const std::string& text, TDialogAnswer keepsData) override;
  std::string openFileName(const std::string& folder, const std::string& extension) override;
  std::string saveFileName(const std::string& folder, const std::string& name,
                           const std::string& extension) override;
  std::optional<std::string> inputPassword(const std::string& caption, const std::string& prompt) override;
  std::string chooseFolder(const std::string& title, const std::string& start) override;
  std::vector<int> choosePdfPages(IPdfPages& document, int maxPages) override;
  // Texts of the PDF page dialog (the program's language).
  std::function<QString(const char* key)> FPhrase;
  std::optional<std::string> inputText(const std::string& caption, const std::string& prompt,
                                       const std::string& preset) override;

 private:
  QPointer<QWidget> FParent;
  QString FTitle = "Pelwright";
  QString FFilter;
  QString filterFor(const std::string& extension) const;
};
