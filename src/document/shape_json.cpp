// The shape object of project files, the clipboard file and repository
// parts: written in a fixed key order, read with the defaults of files that
// older versions wrote.
#include <array>
#include <cmath>
#include <string>
#include <string_view>
#include <unordered_map>

#include <nlohmann/json.hpp>

#include "document/json_text_writer.h"
#include "document/json_value_forms.h"
#include "document/number_text.h"
#include "document/pw_path.h"
#include "document/hole_iron.h"

void TPW_Path::toJson(TJsonTextWriter& w) const {
  const bool hole = FShapeType == "S_HOLE";
  w.beginObject();
  writeInt(w, "id", FID);
  w.stringField("type", FShapeType);
  writePt(w, "sp", FStartPt);
  writePt(w, "ep", FEndPt);
  writePt(w, "ct", FCenter);
  writeNum(w, "w", FWidth);
  writeNum(w, "h", FHeight);
  writeCol(w, "color", FColor);
  w.stringField("dash", strokeDashName(FDash));
  writeNum(w, "opc", FOpacity);
  w.stringField("path", FData.getData());
  writeNum(w, "rt", FRotation);
  w.stringField("st", FStitchType);
  writeBool(w, "inv", FStitchInversed);
  writePt(w, "bz1", FBezierCp1);
  writePt(w, "bz2", FBezierCp2);
  writeNum(w, "thk", FThickness);
  writeNum(w, "la", FLine_param_a);
  writeNum(w, "lb", FLine_param_b);
  writeBool(w, "iv", FIsVerticalLine);
  writeBool(w, "ih", FIsHorizontalLine);
  writeNum(w, "sta", FStartAngle);
  writeNum(w, "swa", FSweepAngle);
  if (FPrickingIron) {
    w.key("pr");
    w.beginObject();
    w.stringField("bt", FPrickingIron->FBladeType);
    writeNum(w, "p", FPrickingIron->FPitch);
    w.endObject();
  }
  w.stringField("tx", FText);
  writeNum(w, "fs", FFontSize);
  w.stringField("ff", FFontFamily);
  writeNum(w, "txst", FTextStretch);
  writeNum(w, "txrd", FTextRadius);
  w.stringField("guid", FGUID.toString());
  w.stringField("nm", FName);
  writeInt(w, "gid", FGroupID);
  writeBool(w, "dim", FIsDimensionLine);
  writeBool(w, "arst", FShowArrowSt);
  writeBool(w, "ared", FShowArrowEd);
  if (hole) {
    writePt(w, "StcIn", FStitchIn);
    writePt(w, "StcOut", FStitchOut);
    writeInt(w, "PrevStId", FPrevStitchID);
    writeInt(w, "NextStId", FNextStitchID);
  }
  if (FMandalaID > 0) {
    writeInt(w, "manid", FMandalaID);
    writeInt(w, "msecid", FMandalaSectionID);
    writePt(w, "mdrctr", FMandalaCenter);
    writeInt(w, "nummndl", FNumMandalaSections);
    writeNum(w, "mdrrtt", FMandalaRotation);
  }
  writeInt(w, "layer", FLayerID);
  writeInt(w, "plidx", FPalletIndex);
  if (!FCatalogGUID.isEmpty()) {
    w.stringField("ctlg", FCatalogGUID.toString());
    // Unlike the other numbers, the general form without a forced ".0".
    w.stringField("ctlgrt", floatToText(static_cast<double>(FCatalogRotation)));
  }
  if (FShowBezierOffsetSupport) writeBool(w, "sbzos", true);
  if (hole && FThreadColor != 0xFFFFFFFF) writeCol(w, "thcl", FThreadColor);
  if (hole) writeBool(w, "asss", FAlwaysShowStitchSimulator);
  if (std::fabs(double(FCatalogScale.x) - 1.0) >= 0.001 || std::fabs(double(FCatalogScale.y) - 1.0) >= 0.001)
    writePt(w, "ctlgscl", FCatalogScale);
  if (FShapeType == "TEXT" && !FTextFill) writeBool(w, "TxFl", false);
  w.endObject();
}

namespace {

// The keys a shape object may hold, so that one pass over the object finds
// them all (the object keeps its keys in a list, and a search per key
// would walk it forty times).
constexpr const char* kShapeKeys[] = {
    "id", "type", "sp", "ep", "ct", "w", "h", "color",
    "dash", "opc", "path", "rt", "st", "inv", "bz1", "bz2",
    "thk", "la", "lb", "iv", "ih", "sta", "swa", "tx",
    "fs", "ff", "txst", "txrd", "guid", "nm", "gid", "dim",
    "arst", "ared", "StcIn", "StcOut", "PrevStId", "NextStId", "manid", "msecid",
    "mdrctr", "nummndl", "mdrrtt", "layer", "plidx", "ctlg", "ctlgrt", "sbzos",
    "thcl", "asss", "ctlgscl", "TxFl",
};
constexpr size_t kKeyCount = std::size(kShapeKeys);

// The position of a key in the list above, worked out by the compiler.
constexpr size_t slotOf(std::string_view key) {
  for (size_t i = 0; i < std::size(kShapeKeys); ++i)
    if (key == kShapeKeys[i]) return i;
  return std::size(kShapeKeys);
}

// Evaluated at compile time, so a misspelt key fails the build.
template <size_t N>
constexpr size_t checkedSlot() {
  static_assert(N < std::size(kShapeKeys), "not a key of the shape object");
  return N;
}
#define SLOT(key) checkedSlot<slotOf(key)>()

size_t keyIndex(const std::string& key) {
  static const std::unordered_map<std::string_view, size_t> index = [] {
    std::unordered_map<std::string_view, size_t> m;
    for (size_t i = 0; i < kKeyCount; ++i) m.emplace(kShapeKeys[i], i);
    return m;
  }();
  const auto it = index.find(key);
  return it == index.end() ? kKeyCount : it->second;
}

}  // namespace

static_assert(slotOf("TxFl") + 1 == kKeyCount);

void TPW_Path::loadJson(const nlohmann::ordered_json& jo, TPrickingIron* pr) {
  if (!jo.is_object()) throw TJsonFormError("a shape is not a JSON object");
  std::array<const nlohmann::ordered_json*, kKeyCount> values{};
  for (auto it = jo.begin(); it != jo.end(); ++it) {
    const size_t k = keyIndex(it.key());
    if (k < kKeyCount) values[k] = &it.value();
  }
  auto req = [&](const nlohmann::ordered_json* v, const char* key) -> const nlohmann::ordered_json& {
    if (!v) throw TJsonFormError(std::string("shape: the required key \"") + key + "\" is missing");
    return *v;
  };
  auto at = [](const char* key) { return std::string("key \"") + key + "\""; };
  FID = readInt(req(values[SLOT("id")], "id"), at("id"));
  FShapeType = readText(req(values[SLOT("type")], "type"), at("type"));
  FStartPt = readPt(req(values[SLOT("sp")], "sp"), at("sp"));
  FEndPt = readPt(req(values[SLOT("ep")], "ep"), at("ep"));
  FCenter = readPt(req(values[SLOT("ct")], "ct"), at("ct"));
  FWidth = readNum(req(values[SLOT("w")], "w"), at("w"));
  FHeight = readNum(req(values[SLOT("h")], "h"), at("h"));
  FColor = readCol(req(values[SLOT("color")], "color"), at("color"));
  FDash = readDash(req(values[SLOT("dash")], "dash"), at("dash"));
  if (const auto* v = values[SLOT("opc")]) FOpacity = readNum(*v, at("opc"));
  FData.setData(readText(req(values[SLOT("path")], "path"), at("path")));
  FRotation = readNum(req(values[SLOT("rt")], "rt"), at("rt"));
  FStitchType = readText(req(values[SLOT("st")], "st"), at("st"));
  FStitchInversed = readBool(req(values[SLOT("inv")], "inv"), at("inv"));
  FBezierCp1 = readPt(req(values[SLOT("bz1")], "bz1"), at("bz1"));
  FBezierCp2 = readPt(req(values[SLOT("bz2")], "bz2"), at("bz2"));
  FThickness = readNum(req(values[SLOT("thk")], "thk"), at("thk"));
  FLine_param_a = readNum(req(values[SLOT("la")], "la"), at("la"));
  FLine_param_b = readNum(req(values[SLOT("lb")], "lb"), at("lb"));
  FIsVerticalLine = readBool(req(values[SLOT("iv")], "iv"), at("iv"));
  FIsHorizontalLine = readBool(req(values[SLOT("ih")], "ih"), at("ih"));
  FStartAngle = readNum(req(values[SLOT("sta")], "sta"), at("sta"));
  FSweepAngle = readNum(req(values[SLOT("swa")], "swa"), at("swa"));
  FPrickingIron = pr;
  if (const auto* v = values[SLOT("tx")]) FText = readText(*v, at("tx"));
  if (const auto* v = values[SLOT("fs")]) FFontSize = readNum(*v, at("fs"));
  if (const auto* v = values[SLOT("ff")]) FFontFamily = readText(*v, at("ff"));
  if (const auto* v = values[SLOT("txst")]) FTextStretch = readNum(*v, at("txst"));
  if (const auto* v = values[SLOT("txrd")]) FTextRadius = readNum(*v, at("txrd"));
  if (const auto* v = values[SLOT("guid")]) FGUID = readGuid(*v);
  if (const auto* v = values[SLOT("nm")]) FName = readText(*v, at("nm"));
  if (const auto* v = values[SLOT("gid")]) FGroupID = readInt(*v, at("gid"));
  if (const auto* v = values[SLOT("dim")]) FIsDimensionLine = readBool(*v, at("dim"));
  if (const auto* v = values[SLOT("arst")]) FShowArrowSt = readBool(*v, at("arst"));
  if (const auto* v = values[SLOT("ared")]) FShowArrowEd = readBool(*v, at("ared"));
  if (const auto* v = values[SLOT("StcIn")]) FStitchIn = readPt(*v, at("StcIn"));
  if (const auto* v = values[SLOT("StcOut")]) FStitchOut = readPt(*v, at("StcOut"));
  if (const auto* v = values[SLOT("PrevStId")]) FPrevStitchID = readInt(*v, at("PrevStId"));
  if (const auto* v = values[SLOT("NextStId")]) FNextStitchID = readInt(*v, at("NextStId"));
  if (const auto* v = values[SLOT("manid")]) FMandalaID = readInt(*v, at("manid"));
  if (const auto* v = values[SLOT("msecid")]) FMandalaSectionID = readInt(*v, at("msecid"));
  if (const auto* v = values[SLOT("mdrctr")]) FMandalaCenter = readPt(*v, at("mdrctr"));
  if (const auto* v = values[SLOT("nummndl")]) FNumMandalaSections = readInt(*v, at("nummndl"));
  if (const auto* v = values[SLOT("mdrrtt")]) FMandalaRotation = readNum(*v, at("mdrrtt"));
  if (const auto* v = values[SLOT("layer")]) FLayerID = readInt(*v, at("layer"));
  FPalletIndex = -1;
  if (const auto* v = values[SLOT("plidx")]) FPalletIndex = readInt(*v, at("plidx"));
  FCatalogGUID = TGUID::empty();
  if (const auto* v = values[SLOT("ctlg")]) {
    TGUID g;
    if (v->is_string() && TGUID::tryParse(v->get_ref<const std::string&>(), g)) FCatalogGUID = g;
  }
  if (const auto* v = values[SLOT("ctlgrt")]) FCatalogRotation = readNum(*v, at("ctlgrt"));
  if (const auto* v = values[SLOT("sbzos")]) FShowBezierOffsetSupport = readBool(*v, at("sbzos"));
  if (const auto* v = values[SLOT("thcl")]) FThreadColor = readCol(*v, at("thcl"));
  if (const auto* v = values[SLOT("asss")]) FAlwaysShowStitchSimulator = readBool(*v, at("asss"));
  if (const auto* v = values[SLOT("ctlgscl")]) FCatalogScale = readPt(*v, at("ctlgscl"));
  if (const auto* v = values[SLOT("TxFl")]) FTextFill = readBool(*v, at("TxFl"));
  resetBoundary();
}
