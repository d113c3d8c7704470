// Texts the canvas and its window show, looked up by phrase key in the
// program's language. The English words stand beside each key for the
// moments when no phrase table is loaded or it lacks the key: a banner
// should never come up empty.
#pragma once

#include <string>

class TMultiLang;

struct TPhraseKey {
  const char* key;
  const char* english;
};

std::string viewPhrase(const TMultiLang* lang, const std::string& langID, const TPhraseKey& phrase);

// Banner texts.
namespace ViewPhrase {
inline constexpr TPhraseKey SelectNextStitchingHole{
    "selectNextStitchingHoleMode", "Please click the next stitching hole. (Press ESC key to exit)"};
inline constexpr TPhraseKey LayerIsNotVisible{
    "LayerIsNotVisible",
    "Warning: The selected layer is set as invisible. Nothing will be shown even if you draw something."};
inline constexpr TPhraseKey LayerIgnored{"LayerIgnored", "Warning: Layer ignore mode"};
#ifdef __APPLE__
inline constexpr TPhraseKey CancelLayerIgnored{"Cancel_LayerIgnored_mac", "Press Command + Option + i to cancel"};
#else
inline constexpr TPhraseKey CancelLayerIgnored{"Cancel_LayerIgnored_win", "Press Ctrl + Alt + i to cancel"};
#endif
inline constexpr TPhraseKey IndependentLayer{"IndependentLayer", "Independent Layer"};
// Menu texts of the window.
inline constexpr TPhraseKey MenuView{"miView", "View"};
inline constexpr TPhraseKey ResetView{"actResetView", "Reset view"};
inline constexpr TPhraseKey ShowHideGrid{"actShowHideGrid", "Show/hide grid"};
inline constexpr TPhraseKey ShowHideStitchingSimulator{"actShowHideStitchingSimulator",
                                                       "Show/hide stitching simulator"};
inline constexpr TPhraseKey BlackBackground{"rbBlackBG", "Black"};
inline constexpr TPhraseKey WhiteBackground{"rbWhiteBG", "White"};
}  // namespace ViewPhrase
