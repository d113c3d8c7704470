// The unit word in labels: in inch mode every "mm" that stands alone in a
// caption reads "in"; back in millimetre mode the original caption returns.
#pragma once

#include <map>
#include <string>
#include <vector>

// A caption the unit switch may rewrite. The window wraps its labels in
// these; dialogs with lengths do the same.
class ICaptionLabel {
 public:
  virtual ~ICaptionLabel() = default;
  virtual std::string caption() const = 0;
  virtual void setCaption(const std::string& text) = 0;
};

// "Length (mm)" stays, "Length mm" -> "Length in", "mmm" stays: the word
// must stand alone between blanks or the ends of the text. Returns the text
// unchanged when nothing matched.
std::string replaceUnitWordWithInch(const std::string& caption);

// Label -> its caption before the switch to inches.
using TMmInchDict = std::map<const ICaptionLabel*, std::string>;

// Applies the unit to the labels. In inch mode a changed caption's original
// is kept in `dict`; in millimetre mode labels found in `dict` get theirs
// back and leave it.
void applyUnitToCaptions(const std::vector<ICaptionLabel*>& labels, bool isInch, TMmInchDict& dict);
