#include "platform/qt/qt_language.h"

#include <QAbstractButton>
#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QStringList>
#include <QTabWidget>

#include "app/interface_fonts.h"
#include "app/multi_lang.h"

QString phraseOf(const TMultiLang* lang, const std::string& langID, const std::string& key) {
  return lang ? QString::fromStdString(lang->getTranslation(langID, key)) : QString();
}

void translateWidgets(QWidget* root, const TMultiLang* lang, const std::string& langID) {
  if (!root || !lang) return;
  auto text = [&](const QObject* o) { return phraseOf(lang, langID, o->objectName().toStdString()); };
  if (const QString t = text(root); !t.isEmpty() && root->isWindow()) root->setWindowTitle(t);
  for (QWidget* w : root->findChildren<QWidget*>()) {
    if (auto* tabs = qobject_cast<QTabWidget*>(w)) {
      // A tab's text is its page's.
      for (int i = 0; i < tabs->count(); ++i)
        if (const QString t = text(tabs->widget(i)); !t.isEmpty()) tabs->setTabText(i, t);
      continue;
    }
    if (w->objectName().isEmpty()) continue;
    const QString t = text(w);
    if (t.isEmpty()) continue;
    if (auto* label = qobject_cast<QLabel*>(w)) label->setText(t);
    else if (auto* button = qobject_cast<QAbstractButton*>(w)) button->setText(t);
    else if (auto* group = qobject_cast<QGroupBox*>(w)) group->setTitle(t);
  }
}

void applyInterfaceFont(const std::string& langID) {
  QStringList families;
  for (const std::string& f : interfaceFontFamilies(langID)) families << QString::fromStdString(f);
  QFont font = QApplication::font();
  font.setFamilies(families);
  QApplication::setFont(font);
}
