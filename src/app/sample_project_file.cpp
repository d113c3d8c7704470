#include "app/sample_project_file.h"

#include <cstdio>

#include "app/multi_lang.h"
#include "app/sample_card_holder.h"
#include "document/project_json.h"
#include "document/shape_normalise.h"
#include "document/shape_list.h"
#include "stitching/iron_groups.h"
#include "stitching/system_irons.h"

std::string cardHolderSampleGuidText(int id) {
  // A version 4 form with the id in the last group; random identifiers
  // would change every line of the file each time it is written.
  char text[40];
  std::snprintf(text, sizeof text, "{C4D0A1E5-2B7F-4C3A-9E61-%012X}", static_cast<unsigned>(id));
  return text;
}

std::string cardHolderSampleFileText(const std::string& langID) {
  TPrickingIronGroups irons;
  irons.append(buildSystemIronGroups(langID));
  // A new list is a new project's document: one layer named from the phrase
  // table, the print area lists.
  TMultiLang phrases;
  phrases.loadBuiltinPhrases();
  TShapeList list(&phrases, langID);
  buildCardHolderSample(list, irons.findIron(kCardHolderIronBlade, kCardHolderIronPitch), langID);
  for (const auto& shape : list) {
    TGUID::tryParse(cardHolderSampleGuidText(shape->FID), shape->FGUID);
    // As every change of the program leaves a line: ends and centre rounded.
    normaliseLine(*shape);
  }
  return projectFileText(list, {});
}
