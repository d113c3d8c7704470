#include "platform/qt/dialog_parts.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>

QLabel* namedLabel(const char* name, const char* text, QWidget* parent) {
  auto* l = new QLabel(QString::fromUtf8(text), parent);
  l->setObjectName(name);
  return l;
}

QDialogButtonBox* okCancelButtons(QDialog* dialog, QWidget* parent) {
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, parent);
  buttons->button(QDialogButtonBox::Ok)->setObjectName("btnOK");
  buttons->button(QDialogButtonBox::Cancel)->setObjectName("btnCancel");
  QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
  return buttons;
}
