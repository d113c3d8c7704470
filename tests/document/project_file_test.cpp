// The project file's text: the value forms, the key order and the keys
// written only when they matter, the ASCII escapes, and the file around it.
#include <gtest/gtest.h>

#include "document/json_text_writer.h"
#include "document/json_value_forms.h"
#include "document/project_json.h"
#include "document/shape_list.h"
#include "stitching/pricking_iron.h"

namespace {

std::string shapeText(const TPW_Path& s) {
  TJsonTextWriter w;
  s.toJson(w);
  return w.text();
}

std::unique_ptr<TPW_Path> lineShape() {
  auto s = std::make_unique<TPW_Path>(2, 0xFFFF0000, 1.5f, TStrokeDash::Dash, 7);
  s->drawLinePath(TPointF(10, 0.1f), TPointF(20, 0.1f));
  s->FGUID = TGUID{};
  TGUID::tryParse("{0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9}", s->FGUID);
  return s;
}

TEST(ProjectValueForms, NumbersFlagsPointsAndColours) {
  EXPECT_EQ(numText(10.0f), "10.0");
  EXPECT_EQ(numText(0.1f), "0.100000001490116");
  EXPECT_EQ(numText(-2.5f), "-2.5");
  EXPECT_EQ(numText(0.0f), "0.0");
  EXPECT_EQ(numText(1e-6f), "9.99999997475243E-7");
  EXPECT_EQ(numText(3e20f), "3.00000006012263E20");
  EXPECT_EQ(ptNumberText(std::numeric_limits<float>::quiet_NaN()), "0.0");
  EXPECT_EQ(colorToText(0xFFFF0000), "Red");
  EXPECT_EQ(colorToText(0xFF000000), "Black");
  EXPECT_EQ(colorToText(0xFFFFFFFF), "White");
  EXPECT_EQ(colorToText(0xFF00FFFF), "Aqua");  // first of Aqua and Cyan
  EXPECT_EQ(colorToText(0xFFA9A9A9), "Darkgray");
  EXPECT_EQ(colorToText(0x80FF0000), "#80FF0000");
  EXPECT_EQ(colorToText(0xFF123456), "#FF123456");
  TAlphaColor c = 0;
  ASSERT_TRUE(colorFromText("red", c));
  EXPECT_EQ(c, 0xFFFF0000u);
  ASSERT_TRUE(colorFromText("Cyan", c));
  EXPECT_EQ(c, 0xFF00FFFFu);
  ASSERT_TRUE(colorFromText("#80ff0000", c));
  EXPECT_EQ(c, 0x80FF0000u);
  ASSERT_TRUE(colorFromText("#123456", c));
  EXPECT_EQ(c, 0xFF123456u);
  EXPECT_FALSE(colorFromText("Reddish", c));
  EXPECT_FALSE(colorFromText("#12345", c));
}

TEST(ProjectValueForms, TolerantReading) {
  using json = nlohmann::ordered_json;
  EXPECT_FLOAT_EQ(readNum(json("3,5"), "x"), 3.5f);
  EXPECT_FLOAT_EQ(readNum(json(2.25), "x"), 2.25f);
  EXPECT_TRUE(std::isnan(readNum(json("NAN"), "x")));
  EXPECT_TRUE(readBool(json("-1"), "x"));
  EXPECT_FALSE(readBool(json("0"), "x"));
  EXPECT_TRUE(readBool(json(true), "x"));
  EXPECT_TRUE(readBool(json("True"), "x"));
  EXPECT_EQ(readInt(json("-1"), "x"), -1);
  EXPECT_EQ(readInt(json(12), "x"), 12);
  EXPECT_THROW(readInt(json("1.5"), "x"), TJsonFormError);
  EXPECT_THROW(readInt(json("99999999999"), "x"), TJsonFormError);
  EXPECT_THROW(readNum(json("ten"), "key \"w\""), TJsonFormError);
  EXPECT_THROW(readPt(json::array({1}), "x"), TJsonFormError);
  EXPECT_THROW(readNum(json::object(), "x"), TJsonFormError);
  try {
    readNum(json("ten"), "shape 3, key \"w\"");
    FAIL();
  } catch (const TJsonFormError& e) {
    EXPECT_STREQ(e.what(), "shape 3, key \"w\": \"ten\" is not a number");
  }
}

TEST(ProjectShapeObject, ConditionalKeys) {
  TPrickingIron iron;
  iron.FBladeType = "D";
  iron.FPitch = 3.85f;
  TPW_Path hole(36, 0xFFFFFFFF, 1, TStrokeDash::Dot, 3);
  hole.FShapeType = "S_HOLE";
  hole.FPrickingIron = &iron;
  hole.FPrevStitchID = 2;
  std::string t = shapeText(hole);
  EXPECT_NE(t.find(",\"swa\":\"0.0\",\"pr\":{\"bt\":\"D\",\"p\":\"3.84999990463257\"},\"tx\":"), std::string::npos);
  EXPECT_NE(t.find(",\"StcIn\":[0.0,0.0],\"StcOut\":[0.0,0.0],\"PrevStId\":\"2\",\"NextStId\":\"-1\",\"layer\":"),
            std::string::npos);
  EXPECT_EQ(t.find("\"thcl\""), std::string::npos);  // white thread is not written
  EXPECT_NE(t.find(",\"plidx\":\"36\",\"asss\":\"0\"}"), std::string::npos);
  hole.FThreadColor = 0xFFFF0000;
  hole.FMandalaID = 4;
  hole.FCatalogScale = TPointF(1.0005f, 1);
  t = shapeText(hole);
  EXPECT_NE(t.find("\"manid\":\"4\",\"msecid\":\"0\",\"mdrctr\":[0.0,0.0],\"nummndl\":\"0\",\"mdrrtt\":\"0.0\",\"layer\""),
            std::string::npos);
  EXPECT_NE(t.find(",\"thcl\":\"Red\",\"asss\":\"0\"}"), std::string::npos);  // scale within 0.001 of 1: absent

  TPW_Path text(0, 0xFF000000, 1, TStrokeDash::Solid, 4);
  text.FShapeType = "TEXT";
  text.FTextFill = false;
  text.FShowBezierOffsetSupport = true;
  TGUID::tryParse("{00000000-0000-0000-0000-000000000001}", text.FCatalogGUID);
  text.FCatalogRotation = 90;
  text.FCatalogScale = TPointF(2, 1);
  t = shapeText(text);
  EXPECT_NE(t.find(",\"plidx\":\"0\",\"ctlg\":\"{00000000-0000-0000-0000-000000000001}\",\"ctlgrt\":\"90\","
                   "\"sbzos\":\"-1\",\"ctlgscl\":[2.0,1.0],\"TxFl\":\"0\"}"),
            std::string::npos);
  EXPECT_EQ(t.find("StcIn"), std::string::npos);
}

TEST(ProjectFileText, WholeFileShape) {
  TShapeList list(nullptr, "en");
  list.FLayerDict[0] = "Layer 1";
  list.FMemo = "two\r\nlines";
  list.add(lineShape(), 0);
  const std::string text = projectFileText(list, {});
  ASSERT_GE(text.size(), 5u);
  EXPECT_EQ(text.substr(0, 3), "\xEF\xBB\xBF");
  EXPECT_EQ(text.substr(text.size() - 2), "\r\n");
  const std::string body = text.substr(3, text.size() - 5);
  EXPECT_EQ(body.find('\n'), std::string::npos);
  for (unsigned char c : body) EXPECT_TRUE(c >= 32 && c < 127);
  EXPECT_EQ(body.rfind(
            "{\"meta\":{\"file_type\":\"Pelwright\",\"version\":\"3.6.1\",\"memo\":\"two\\u000D\\u000Alines\"},"
            "\"layers\":[{\"id\":0,\"chk\":\"-1\",\"nam\":\"Layer 1\",\"indp\":\"0\"}],\"shapes\":[{\"id\":\"7\"", 0),
            0u);
  EXPECT_NE(body.find("],\"backdrops\":[],\"printareas\":[{\"offset\":[0.0,0.0],\"target\":true,\"scalepos\":0}]}"),
            std::string::npos);
}

TEST(ProjectFileText, CopiedShapesFileHoldsMetaAndShapesOnly) {
  const auto s = lineShape();
  const std::string text = copiedShapesFileText({s.get()});
  EXPECT_EQ(text.rfind(
            "\xEF\xBB\xBF{\"meta\":{\"file_type\":\"Pelwright_Copied_Shapes\",\"version\":\"3.6.1\"},\"shapes\":[{\"id\"", 0),
            0u);
  EXPECT_EQ(text.find("layers"), std::string::npos);
}

TEST(ProjectFileParse, RefusesWhatIsNoObject) {
  EXPECT_EQ(parseJsonFileText("").FState, TJsonTextState::NotJson);
  EXPECT_EQ(parseJsonFileText("not json").FState, TJsonTextState::NotJson);
  EXPECT_EQ(parseJsonFileText("[1,2]").FState, TJsonTextState::NotObject);
  EXPECT_EQ(parseJsonFileText("\xEF\xBB\xBF{}").FState, TJsonTextState::Object);
  EXPECT_EQ(parseJsonFileText(std::string(500, '[') + std::string(500, ']')).FState, TJsonTextState::NotJson);
  EXPECT_EQ(parseJsonFileText("{\"a\":1e999}").FState, TJsonTextState::NotJson);
  // Brackets inside strings do not count as nesting.
  EXPECT_EQ(parseJsonFileText("{\"a\":\"" + std::string(500, '[') + "\"}").FState, TJsonTextState::Object);
  const TParsedJsonText bad = parseJsonFileText("{\"memo\":\"caf\xE9\"}");
  ASSERT_EQ(bad.FState, TJsonTextState::Object);
  EXPECT_EQ(bad.FRoot["memo"], "caf\xEF\xBF\xBD");
}

TEST(ProjectFileText, BackdropsWrittenBackInTheirOrder) {
  const auto root = parseJsonFileText(
      "{\"b\":{\"type\":1,\"fullpath\":\"/x.png\",\"topleft\":[1.5,2.0],\"angle\":\"0.0\",\"rotc\":[0.0,0.0],"
      "\"dpi\":\"300.0\",\"w\":\"10.0\",\"h\":\"20.0\",\"zipbmp\":\"UEsDBA==\",\"extra\":7}}");
  TJsonTextWriter w;
  writeJsonValue(w, root.FRoot["b"]);
  EXPECT_EQ(w.text(),
            "{\"type\":1,\"fullpath\":\"/x.png\",\"topleft\":[1.5,2.0],\"angle\":\"0.0\",\"rotc\":[0.0,0.0],"
            "\"dpi\":\"300.0\",\"w\":\"10.0\",\"h\":\"20.0\",\"zipbmp\":\"UEsDBA==\",\"extra\":7}");
}

}  // namespace
