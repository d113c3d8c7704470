// The export options dialog as a user meets it: what shows for SVG and for
// DXF, the y flip that only R12 leaves to the user, and what comes back.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QDir>
#include <QDoubleSpinBox>
#include <QRadioButton>
#include <QTimer>

#include "platform/qt/qt_exchange_dialogs.h"

namespace {

// Runs `look` on the dialog once it is up, then presses OK.
void whenShown(const std::function<void(QDialog&)>& look) {
  QTimer::singleShot(0, [look] {
    auto* dlg = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dlg, nullptr);
    look(*dlg);
    const QByteArray folder = qgetenv("PELWRIGHT_SCREENSHOT_DIR");
    if (!folder.isEmpty())
      dlg->grab().save(QDir(QString::fromUtf8(folder)).filePath(dlg->windowTitle().section(' ', 0, 0).toLower() +
                                                                 "_export_options.png"));
    dlg->accept();
  });
}

template <class W>
W* child(QDialog& d, const char* name) {
  return d.findChild<W*>(name);
}

}  // namespace

TEST(ExportOptionsDialog, DxfVersionDecidesTheFlipAndValuesComeBack) {
  TQtExchangeDialogs dialogs;
  TExportDialogValues v;
  v.FUseR14 = true;
  v.FInvertY = false;
  whenShown([](QDialog& d) {
    EXPECT_EQ(d.windowTitle(), "DXF Export Options");
    auto* flip = child<QCheckBox>(d, "chkDXFExportFlipY");
    EXPECT_FALSE(flip->isEnabled());  // R14 always turns y upwards
    EXPECT_TRUE(flip->isChecked());
    child<QRadioButton>(d, "rbDxfR12")->setChecked(true);
    EXPECT_TRUE(flip->isEnabled());
    flip->setChecked(false);
    child<QRadioButton>(d, "rbHole_AsIs")->setChecked(true);
    child<QDoubleSpinBox>(d, "nbSVGDotRadius")->setValue(1.6);
  });
  ASSERT_TRUE(dialogs.exportOptions("DXF", nullptr, v));
  EXPECT_FALSE(v.FUseR14);
  EXPECT_FALSE(v.FInvertY);
  EXPECT_FALSE(v.FHolesAsDots);
  EXPECT_DOUBLE_EQ(v.FDotDiameter, 1.6);

  whenShown([](QDialog& d) {
    EXPECT_TRUE(child<QRadioButton>(d, "rbDxfR14")->isHidden());
    EXPECT_TRUE(child<QCheckBox>(d, "chkDXFExportFlipY")->isHidden());
    EXPECT_FALSE(child<QCheckBox>(d, "chkSVGOPT_DoNotOutputStrokeDash")->isHidden());
  });
  const std::map<std::string, std::string> texts{{"rbHole_AsDot", "Als Punkte"}};
  const TPhraseLookup phrase = [&](const std::string& key) {
    const auto it = texts.find(key);
    return it == texts.end() ? std::string() : it->second;
  };
  ASSERT_TRUE(dialogs.exportOptions("SVG", phrase, v));
  EXPECT_FALSE(v.FUseR14);  // DXF settings stay as they were
}
