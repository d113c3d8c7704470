// The controller of a conversion: settings read from the options file
// (never written), no window, no timers, no server; and the input drawing
// loaded into it.
#pragma once

#include <string>

class TfrmPelw;
class TScriptedDialogs;

// Makes a constructed, not started controller ready to load and export:
// phrase tables, options and palette rows from the options file, the
// language, an empty document. Messages and questions go to `dialogs`,
// where the conversion reads them.
void prepareConversion(TfrmPelw& form, TScriptedDialogs& dialogs);

// Loads a project (.pwc) or an SVG drawing (.svg) into the document.
// Returns "" or the reason it could not be read.
std::string loadConversionInput(TfrmPelw& form, const std::string& input);
