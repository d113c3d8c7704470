// Fuzzing the project reader: any bytes as a project file. The reader must
// refuse or read them without a crash, a hang or undefined behaviour, and
// whatever it read must write out as a file it reads again.
#include <cstdint>
#include <string>

#include "app/project_reader.h"
#include "document/json_value_forms.h"
#include "document/project_json.h"
#include "document/shape_normalise.h"
#include "libraries/draw_pallet.h"
#include "stitching/iron_groups.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  TPrickingIronGroups irons;
  TPalletList pallet;
  TProjectReadContext context;
  context.FIrons = &irons;
  context.FPallet = &pallet;
  try {
    TJsonTextState state = TJsonTextState::NotJson;
    TProjectContent content = readProjectFileText(bytes, context, state);
    if (state != TJsonTextState::Object) return 0;
    repairStitchLinks(*content.FList);
    content.FList->restoreLayers();
    findDuplicates(*content.FList);
    const std::string again = projectFileText(*content.FList, content.FBackdrops);
    if (parseJsonFileText(again).FState != TJsonTextState::Object) __builtin_trap();
  } catch (const TJsonFormError&) {
  }
  return 0;
}
