// Pieces every dialog of the window builds the same way: labels named by
// their phrase key, and the OK and Cancel buttons.
#pragma once

class QDialog;
class QDialogButtonBox;
class QLabel;
class QWidget;

// A label whose object name is its phrase key; `text` until translated.
QLabel* namedLabel(const char* name, const char* text, QWidget* parent);

// OK ("btnOK") and Cancel ("btnCancel") wired to the dialog's accept and
// reject.
QDialogButtonBox* okCancelButtons(QDialog* dialog, QWidget* parent);
