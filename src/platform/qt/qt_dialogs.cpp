#include "platform/qt/qt_dialogs.h"

#include <QDir>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>

#include "platform/qt/pdf_viewer.h"

QString TQtDialogs::filterFor(const std::string& extension) const {
  if (extension == ".ctlg") return "Pelwright Catalog Data (*.ctlg)";
  if (extension.find(';') != std::string::npos) {
    // A list of extensions: pictures (and PDF).
    QStringList patterns;
    for (const QString& e : QString::fromStdString(extension).split(';', Qt::SkipEmptyParts)) patterns << "*" + e;
    return QString("Pictures (%1);;All files (*)").arg(patterns.join(' '));
  }
  if (!FFilter.isEmpty()) return FFilter;
  const QString ext = QString::fromStdString(extension);
  if (ext == ".stl") return "STL files (*.stl)";
  if (ext != ".pwc") return QString("%1 (*%1);;* (*)").arg(ext);
  return QString("Pelwright project (*%1)").arg(ext);
}

void TQtDialogs::showMessage(const std::string& text) {
  QMessageBox::information(FParent, FTitle, QString::fromStdString(text));
}

TDialogAnswer TQtDialogs::askYesNo(const std::string& text, TDialogAnswer keepsData) {
  const auto def = keepsData == TDialogAnswer::Yes ? QMessageBox::Yes : QMessageBox::No;
  const auto r = QMessageBox::question(FParent, FTitle, QString::fromStdString(text),
                                       QMessageBox::Yes | QMessageBox::No, def);
  return r == QMessageBox::Yes ? TDialogAnswer::Yes : TDialogAnswer::No;
}

TDialogAnswer TQtDialogs::askYesNoCancel(const std::string& text, TDialogAnswer keepsData) {
  const auto def = keepsData == TDialogAnswer::Yes  ? QMessageBox::Yes
                   : keepsData == TDialogAnswer::No ? QMessageBox::No
                                                    : QMessageBox::Cancel;
  const auto r = QMessageBox::question(FParent, FTitle, QString::fromStdString(text),
                                       QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, def);
  if (r == QMessageBox::Yes) return TDialogAnswer::Yes;
  if (r == QMessageBox::No) return TDialogAnswer::No;
  return TDialogAnswer::Cancel;
}

std::string TQtDialogs::openFileName(const std::string& folder, const std::string& extension) {
  const QString start = folder.empty() ? QDir::homePath() : QString::fromStdString(folder);
  return QFileDialog::getOpenFileName(FParent, QString(), start, filterFor(extension)).toStdString();
}

std::string TQtDialogs::saveFileName(const std::string& folder, const std::string& name,
                                     const std::string& extension) {
  QString start = folder.empty() ? QDir::homePath() : QString::fromStdString(folder);
  if (!name.empty()) start = QDir(start).filePath(QString::fromStdString(name));
  QFileDialog dialog(FParent, QString(), start, filterFor(extension));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(QString::fromStdString(extension).remove(0, 1));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  return dialog.selectedFiles().first().toStdString();
}

std::optional<std::string> TQtDialogs::inputPassword(const std::string& caption, const std::string& prompt) {
  bool ok = false;
  const QString text = QInputDialog::getText(FParent, QString::fromStdString(caption), QString::fromStdString(prompt),
                                             QLineEdit::Password, QString(), &ok);
  if (!ok) return std::nullopt;
  return text.toStdString();
}

std::string TQtDialogs::chooseFolder(const std::string& title, const std::string& start) {
  const QString from = start.empty() ? QDir::homePath() : QString::fromStdString(start);
  return QFileDialog::getExistingDirectory(FParent, QString::fromStdString(title), from).toStdString();
}

std::vector<int> TQtDialogs::choosePdfPages(IPdfPages& document, int maxPages) {
  auto text = [this](const char* key, const char* english) {
    const QString t = FPhrase ? FPhrase(key) : QString();
    return t.isEmpty() ? QString(english) : t;
  };
  TfrmPDFViewer viewer(FParent, text("frmPDFViewer", "PDF pages"), text("lblPDF_Pages", "Pages to use as backdrops:"),
                       text("PDF_Page", "Page"));
  viewer.setPDF(document, maxPages);
  if (viewer.exec() != QDialog::Accepted) return {};
  return viewer.checkedPages();
}
std::optional<std::string> TQtDialogs::inputText(const std::string& caption, const std::string& prompt,
                                                 const std::string& preset) {
  bool ok = false;
  const QString text = QInputDialog::getText(FParent, QString::fromStdString(caption), QString::fromStdString(prompt),
                                             QLineEdit::Normal, QString::fromStdString(preset), &ok);
  if (!ok) return std::nullopt;
  return text.toStdString();
}
