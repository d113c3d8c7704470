// The shape object of project files, the clipboard file and repository
// parts: written in a fixed key order, read with the defaults of files that
// older versions wrote.
#include <cmath>
#include <string>

#include <nlohmann/json.hpp>

#include "document/json_text_writer.h"
#include "document/json_value_forms.h"
#include "document/number_text.h"
#include "document/pw_path.h"
#include "stitching/pricking_iron.h"

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

void TPW_Path::loadJson(const nlohmann::ordered_json& jo, TPrickingIron* pr) {
  if (!jo.is_object()) throw TJsonFormError("a shape is not a JSON object");
  const std::string where = "shape";
  auto req = [&](const char* key) -> const nlohmann::ordered_json& { return requireKey(jo, key, where); };
  auto at = [](const char* key) { return std::string("key \"") + key + "\""; };

  FID = readInt(req("id"), at("id"));
  FShapeType = readText(req("type"), at("type"));
  FStartPt = readPt(req("sp"), at("sp"));
  FEndPt = readPt(req("ep"), at("ep"));
  FCenter = readPt(req("ct"), at("ct"));
  FWidth = readNum(req("w"), at("w"));
  FHeight = readNum(req("h"), at("h"));
  FColor = readCol(req("color"), at("color"));
  FDash = readDash(req("dash"), at("dash"));
  if (const auto* v = findKey(jo, "opc")) FOpacity = readNum(*v, at("opc"));
  FData.setData(readText(req("path"), at("path")));
  FRotation = readNum(req("rt"), at("rt"));
  FStitchType = readText(req("st"), at("st"));
  FStitchInversed = readBool(req("inv"), at("inv"));
  FBezierCp1 = readPt(req("bz1"), at("bz1"));
  FBezierCp2 = readPt(req("bz2"), at("bz2"));
  FThickness = readNum(req("thk"), at("thk"));
  FLine_param_a = readNum(req("la"), at("la"));
  FLine_param_b = readNum(req("lb"), at("lb"));
  FIsVerticalLine = readBool(req("iv"), at("iv"));
  FIsHorizontalLine = readBool(req("ih"), at("ih"));
  FStartAngle = readNum(req("sta"), at("sta"));
  FSweepAngle = readNum(req("swa"), at("swa"));
  FPrickingIron = pr;
  if (const auto* v = findKey(jo, "tx")) FText = readText(*v, at("tx"));
  if (const auto* v = findKey(jo, "fs")) FFontSize = readNum(*v, at("fs"));
  if (const auto* v = findKey(jo, "ff")) FFontFamily = readText(*v, at("ff"));
  if (const auto* v = findKey(jo, "txst")) FTextStretch = readNum(*v, at("txst"));
  if (const auto* v = findKey(jo, "txrd")) FTextRadius = readNum(*v, at("txrd"));
  if (const auto* v = findKey(jo, "guid")) FGUID = readGuid(*v);
  if (const auto* v = findKey(jo, "nm")) FName = readText(*v, at("nm"));
  if (const auto* v = findKey(jo, "gid")) FGroupID = readInt(*v, at("gid"));
  if (const auto* v = findKey(jo, "dim")) FIsDimensionLine = readBool(*v, at("dim"));
  if (const auto* v = findKey(jo, "arst")) FShowArrowSt = readBool(*v, at("arst"));
  if (const auto* v = findKey(jo, "ared")) FShowArrowEd = readBool(*v, at("ared"));
  if (const auto* v = findKey(jo, "StcIn")) FStitchIn = readPt(*v, at("StcIn"));
  if (const auto* v = findKey(jo, "StcOut")) FStitchOut = readPt(*v, at("StcOut"));
  if (const auto* v = findKey(jo, "PrevStId")) FPrevStitchID = readInt(*v, at("PrevStId"));
  if (const auto* v = findKey(jo, "NextStId")) FNextStitchID = readInt(*v, at("NextStId"));
  if (const auto* v = findKey(jo, "manid")) FMandalaID = readInt(*v, at("manid"));
  if (const auto* v = findKey(jo, "msecid")) FMandalaSectionID = readInt(*v, at("msecid"));
  if (const auto* v = findKey(jo, "mdrctr")) FMandalaCenter = readPt(*v, at("mdrctr"));
  if (const auto* v = findKey(jo, "nummndl")) FNumMandalaSections = readInt(*v, at("nummndl"));
  if (const auto* v = findKey(jo, "mdrrtt")) FMandalaRotation = readNum(*v, at("mdrrtt"));
  if (const auto* v = findKey(jo, "layer")) FLayerID = readInt(*v, at("layer"));
  FPalletIndex = -1;
  if (const auto* v = findKey(jo, "plidx")) FPalletIndex = readInt(*v, at("plidx"));
  FCatalogGUID = TGUID::empty();
  if (const auto* v = findKey(jo, "ctlg")) {
    TGUID g;
    if (v->is_string() && TGUID::tryParse(v->get_ref<const std::string&>(), g)) FCatalogGUID = g;
  }
  if (const auto* v = findKey(jo, "ctlgrt")) FCatalogRotation = readNum(*v, at("ctlgrt"));
  if (const auto* v = findKey(jo, "sbzos")) FShowBezierOffsetSupport = readBool(*v, at("sbzos"));
  if (const auto* v = findKey(jo, "thcl")) FThreadColor = readCol(*v, at("thcl"));
  if (const auto* v = findKey(jo, "asss")) FAlwaysShowStitchSimulator = readBool(*v, at("asss"));
  if (const auto* v = findKey(jo, "ctlgscl")) FCatalogScale = readPt(*v, at("ctlgscl"));
  if (const auto* v = findKey(jo, "TxFl")) FTextFill = readBool(*v, at("TxFl"));
  resetBoundary();
}
