// The language of the window and its dialogs: widget texts from the phrase
// table by widget name, and the interface font of the language's script.
#pragma once

#include <QString>
#include <string>

class QWidget;
class TMultiLang;

// Every widget under `root` (and `root` itself, as the window title) whose
// object name is a key of the table takes that phrase; an empty phrase
// leaves the text as it is. Labels, buttons, group boxes and tab pages.
void translateWidgets(QWidget* root, const TMultiLang* lang, const std::string& langID);
// One phrase as a QString; empty when there is no table.
QString phraseOf(const TMultiLang* lang, const std::string& langID, const std::string& key);
// The application's font for the language (interfaceFontFamilies).
void applyInterfaceFont(const std::string& langID);
