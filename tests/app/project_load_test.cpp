// Opening projects through the controller: round trips, files of older
// versions, every repair and normalisation of the load, and bad input.
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/safe_file.h"
#include "program_fixture.h"
#include "stitching/pricking_iron.h"

namespace {

using json = nlohmann::ordered_json;

// A shape object with the required keys only, as an old version wrote it.
json oldShape(int id, const std::string& type, TPointF sp, TPointF ep, TPointF ct = {}, float w = 0, float h = 0) {
  return json{{"id", std::to_string(id)}, {"type", type},   {"sp", {sp.x, sp.y}}, {"ep", {ep.x, ep.y}},
              {"ct", {ct.x, ct.y}},       {"w", std::to_string(w)}, {"h", std::to_string(h)},
              {"color", "Aqua"},          {"dash", "Solid"}, {"path", ""},          {"rt", "0"},
              {"st", ""},                 {"inv", "0"},      {"bz1", {0, 0}},       {"bz2", {0, 0}},
              {"thk", "1.5"},             {"la", "0"},       {"lb", "0"},           {"iv", "0"},
              {"ih", "0"},                {"sta", "0"},      {"swa", "0"}};
}

json lineShape(int id, TPointF a, TPointF b) {
  json s = oldShape(id, "LINE", a, b);
  s["path"] = "M" + std::to_string(a.x) + "," + std::to_string(a.y) + " L" + std::to_string(b.x) + "," +
              std::to_string(b.y);
  return s;
}

class ProjectLoad : public ::testing::Test {
 protected:
  TProgram program;
  TfrmPelw* f = nullptr;
  void SetUp() override { f = &program.start(); }
  std::string writeProject(const json& root, const std::string& name = "p.pwc") {
    const std::string file = program.file(name);
    writeTextFile(file, root.dump());
    return file;
  }
  TPW_Path* shape(size_t i) { return (*f->PathList)[i]; }
};

TEST_F(ProjectLoad, SaveLoadSaveGivesTheSameBytes) {
  auto line = makeLine(TPointF(0.1f, 0.2f), TPointF(30.7f, 12.3f));
  f->addShapeToDocument(std::move(line), 0);
  auto arc = std::make_unique<TPW_Path>(1, 0xFF00FF00, 1.5f, TStrokeDash::Solid, 0);
  arc->drawArcPath(TPointF(20, 20), TPointF(10, 10), TPointF(30, 20), TPointF(20, 30), 90);
  f->addShapeToDocument(std::move(arc), 0);
  auto curve = std::make_unique<TPW_Path>(3, 0xFFFFFF00, 1.1f, TStrokeDash::Dash, 0);
  curve->drawBezierPath(TPointF(0, 0), TPointF(5, 20), TPointF(25, 20), TPointF(30, 0));
  curve->FName = "flap ü";
  f->addShapeToDocument(std::move(curve), 0);
  auto circle = std::make_unique<TPW_Path>(2, 0xFFFFFFFF, 1.2f, TStrokeDash::Solid, 0);
  circle->drawEllipsePath(TPointF(50, 50), 20, 20);
  f->addShapeToDocument(std::move(circle), 0);
  auto hole = std::make_unique<TPW_Path>(36, 0xFFFFFFFF, 1, TStrokeDash::Dot, 0);
  hole->createStichPath(TPointF(10, 5), false, f->FPrickingIronGroups[0]->FPrickingIron.get(), 30, 0);
  hole->FThreadColor = 0xFF8B4513;
  f->addShapeToDocument(std::move(hole), 0);
  f->PathList->addLayer(-1, "", true);
  f->PathList->SetLayerName(1, "Lining \"inner\"");
  f->PathList->SetIsIndependentLayer(1, true);
  f->addShapeToDocument(makeLine(TPointF(0, 40), TPointF(10, 40)), 1);
  f->PathList->FMemo = "Card holder\r\n名刺入れ";
  f->finishDocumentChange();

  const std::string first = program.file("a.pwc"), second = program.file("b.pwc");
  f->writeProjectFile(first);
  ASSERT_TRUE(f->loadProject(first));
  EXPECT_EQ(f->PathList->Count(), 6u);
  EXPECT_EQ(f->PathList->FMemo, "Card holder\r\n名刺入れ");
  EXPECT_EQ(f->PathList->GetLayerName(1), "Lining \"inner\"");
  EXPECT_TRUE(f->PathList->GetIsIndependentLayer(1));
  EXPECT_FALSE(f->PathList->FIsChanged);
  f->writeProjectFile(second);
  EXPECT_EQ(readWholeFile(first), readWholeFile(second));
}

TEST_F(ProjectLoad, OldFilesTakeTheDefaults) {
  json root{{"meta", {{"file_type", "Pelwright"}, {"version", "2.0.8"}}},
            {"shapes", {lineShape(1, TPointF(0, 0), TPointF(10, 0))}}};
  root["shapes"][0]["color"] = "#FF00FF00";  // palette row 1 on the dark background, thickness 1.5
  ASSERT_TRUE(f->loadProject(writeProject(root)));
  ASSERT_EQ(f->PathList->Count(), 1u);
  TPW_Path* s = shape(0);
  EXPECT_FALSE(s->FGUID.isEmpty());
  EXPECT_EQ(s->FPalletIndex, 1);  // repaired from colour, thickness and dash
  // No "layers": one default layer; no "printareas": the default page.
  EXPECT_EQ(f->PathList->FLayers, std::vector<int>{0});
  EXPECT_EQ(f->PathList->FPrintOffset.size(), 1u);
  EXPECT_EQ(f->FUndoList.size(), 1u);
}

TEST_F(ProjectLoad, NormalisationsOfTheLoad) {
  json shapes = json::array();
  shapes.push_back(lineShape(5, TPointF(0, 0), TPointF(10, 0)));
  shapes.push_back(lineShape(5, TPointF(0, 10), TPointF(10, 10)));       // same id: renumbered
  shapes.push_back(lineShape(-3, TPointF(0, 20), TPointF(10, 20)));      // negative: renumbered
  shapes.push_back(lineShape(8, TPointF(4, 4), TPointF(4.004f, 4.001f)));  // zero length: dropped
  shapes.push_back(oldShape(9, "ELLIPSE", TPointF(40, 50), TPointF(40, 50), TPointF(50, 50), 20, 10));
  shapes.push_back(oldShape(10, "ELLIPSE", TPointF(60, 50), TPointF(60, 50), TPointF(70, 50), 20, 20.005f));
  json hole = oldShape(11, "S_HOLE", TPointF(2e6f, 3), TPointF(2e6f, 3), TPointF(2e6f, 3), 1, 2);
  hole["pr"] = {{"bt", "D"}, {"p", "3.7"}};
  hole["PrevStId"] = "5";
  shapes.push_back(hole);
  json orphan = oldShape(12, "S_HOLE", TPointF(1, 1), TPointF(1, 1), TPointF(1, 1), 1, 2);
  orphan["PrevStId"] = "77";
  orphan["layer"] = "2";
  shapes.push_back(orphan);
  shapes[0]["gid"] = "40";
  ASSERT_TRUE(f->loadProject(writeProject(json{{"shapes", shapes}})));

  std::vector<std::string> types;
  for (const auto& s : *f->PathList) types.push_back(s->FShapeType);
  EXPECT_EQ(types, (std::vector<std::string>{"LINE", "LINE", "LINE", "BEZIER", "BEZIER", "BEZIER", "BEZIER",
                                             "ELLIPSE", "S_HOLE", "S_HOLE"}));
  // The first of an id keeps it; the others follow the largest id or group.
  EXPECT_EQ(shape(0)->FID, 5);
  EXPECT_EQ(shape(1)->FID, 41);
  EXPECT_EQ(shape(2)->FID, 42);
  EXPECT_EQ(shape(3)->FID, 43);
  EXPECT_EQ(shape(7)->FID, 10);
  // The true ellipse came back as four curves round its box.
  const TRectF box = TRectF(shape(3)->getBoundary(false));
  EXPECT_NEAR(box.Right, 60, 0.01);
  EXPECT_NEAR(shape(5)->FStartPt.x, 40, 0.01);
  // The hole in outer space is put at the origin as a 10 mm square.
  TPW_Path* h = shape(8);
  EXPECT_EQ(h->FStartPt, TPointF(0, 0));
  EXPECT_EQ(h->FCenter, TPointF(0, 0));
  EXPECT_EQ(h->FData.getData(), "M0,0 L10,0 L10,10 L0,10 Z ");
  EXPECT_EQ(h->FPalletIndex, 36);
  ASSERT_NE(h->FPrickingIron, nullptr);
  EXPECT_EQ(h->FPrickingIron->FName, "Unknown 3.7mm");
  // Stitch links: the previous hole learns its next one; a missing one is cut.
  EXPECT_EQ(shape(0)->FNextStitchID, 11);
  EXPECT_EQ(shape(9)->FPrevStitchID, -1);
  // A layer named only by a shape is made, "Layer " and its number.
  EXPECT_EQ(f->PathList->GetLayerName(2), "Layer 3");
  EXPECT_TRUE(program.dialogs.FMessages.empty());
}

TEST_F(ProjectLoad, TheActiveLayerIsOneTheFileHas) {
  // A file whose layers lack id 0: new shapes must not go to a layer that
  // is not there.
  json root{{"layers", {{{"id", 4}, {"chk", "-1"}, {"nam", "Lining"}}, {{"id", 7}, {"chk", "-1"}, {"nam", "Out"}}}},
            {"shapes", {lineShape(1, TPointF(0, 0), TPointF(10, 0)),
                        oldShape(2, "ELLIPSE", TPointF(30, 5), TPointF(30, 5), TPointF(40, 5), 20, 10)}}};
  root["shapes"][0]["layer"] = "7";
  f->FActiveLayer = 0;
  ASSERT_TRUE(f->loadProject(writeProject(root)));
  EXPECT_EQ(f->FActiveLayer, 4);
  EXPECT_EQ(f->PathList->FLayers, (std::vector<int>{4, 7}));
  for (const auto& s : *f->PathList) EXPECT_TRUE(f->PathList->hasLayer(s->FLayerID)) << s->FShapeType;
}

TEST_F(ProjectLoad, DuplicatesAreAskedAbout) {
  json shapes = json::array({lineShape(1, TPointF(0, 0), TPointF(10, 0)), lineShape(2, TPointF(10, 0), TPointF(0, 0)),
                             lineShape(3, TPointF(0, 0), TPointF(10, 0)), lineShape(4, TPointF(0, 5), TPointF(9, 5))});
  shapes[2]["layer"] = "1";  // another layer: no duplicate
  const std::string file = writeProject(json{{"shapes", shapes}});
  // Without a person (no answer given) nothing is deleted.
  ASSERT_TRUE(f->loadProject(file));
  EXPECT_EQ(f->PathList->Count(), 4u);
  ASSERT_EQ(program.dialogs.FQuestions.size(), 1u);
  EXPECT_EQ(program.dialogs.FQuestions[0],
            "There exists duplicates at the same location on the same layer: 1\r\nDo you want to delete them?");
  program.dialogs.FAnswers = {TDialogAnswer::Yes};
  ASSERT_TRUE(f->loadProject(file));
  EXPECT_EQ(f->PathList->Count(), 3u);
  EXPECT_EQ(f->PathList->findByID(2), nullptr);
  EXPECT_EQ(program.dialogs.FMessages.back(), "Number of deleted duplicates: 1");
  // The deletion is an undo level of its own.
  EXPECT_TRUE(f->PathList->FIsChanged);
  f->actUndo();
  EXPECT_EQ(f->PathList->Count(), 4u);
}

TEST_F(ProjectLoad, FileOfAnotherKindGivesAnEmptyDocument) {
  ASSERT_TRUE(f->loadProject(writeProject(json{{"name", "a catalog"}, {"items", json::array()}})));
  EXPECT_TRUE(f->PathList->empty());
  EXPECT_EQ(f->PathList->FLayers.size(), 1u);
  EXPECT_TRUE(program.dialogs.FMessages.empty());
}

class ProjectLoadBadInput : public ProjectLoad {
 protected:
  std::string kept;
  void SetUp() override {
    ProjectLoad::SetUp();
    f->addShapeToDocument(makeLine(TPointF(0, 0), TPointF(5, 5)), 0);
    f->finishDocumentChange();
    kept = f->PathList->items()[0]->FGUID.toString();
  }
  void expectDocumentKept() {
    ASSERT_EQ(f->PathList->Count(), 1u);
    EXPECT_EQ(shape(0)->FGUID.toString(), kept);
  }
};

TEST_F(ProjectLoadBadInput, TextThatIsNoJsonObject) {
  for (const std::string& text : {std::string("not json at all"), std::string("[1,2,3]"),
                                  std::string("{\"shapes\":[1e999]}"), std::string(100000, '[')}) {
    program.dialogs.FMessages.clear();
    const std::string file = program.file("bad.pwc");
    writeTextFile(file, text);
    EXPECT_FALSE(f->loadProject(file));
    ASSERT_EQ(program.dialogs.FMessages.size(), 1u);
    EXPECT_EQ(program.dialogs.FMessages[0], "Not a Pelwright file or the file is corrupted.\n" + file);
    // The drawing and its name stay: a save never writes over the file.
    expectDocumentKept();
    EXPECT_TRUE(f->FFilename.empty());
  }
}

TEST_F(ProjectLoadBadInput, MissingKeyOrWrongTypeNamesTheFileAndKeepsTheDocument) {
  json missing = lineShape(1, TPointF(0, 0), TPointF(1, 1));
  missing.erase("thk");
  std::string file = writeProject(json{{"shapes", {lineShape(1, TPointF(0, 0), TPointF(2, 2)), missing}}});
  EXPECT_FALSE(f->loadProject(file));
  ASSERT_EQ(program.dialogs.FMessages.size(), 1u);
  EXPECT_EQ(program.dialogs.FMessages[0], file + ": shape 2: the required key \"thk\" is missing");
  expectDocumentKept();
  EXPECT_TRUE(f->FFilename.empty());

  json wrong = lineShape(1, TPointF(0, 0), TPointF(1, 1));
  wrong["sp"] = "far away";
  file = writeProject(json{{"shapes", {wrong}}});
  EXPECT_FALSE(f->loadProject(file));
  EXPECT_EQ(program.dialogs.FMessages.back(), file + ": shape 1, key \"sp\": \"far away\" is not a point [x, y]");
  expectDocumentKept();

  json huge = lineShape(99999999999LL > 0 ? 1 : 0, TPointF(0, 0), TPointF(1, 1));
  huge["id"] = "99999999999";
  file = writeProject(json{{"shapes", {huge}}});
  EXPECT_FALSE(f->loadProject(file));
  EXPECT_EQ(program.dialogs.FMessages.back(), file + ": shape 1, key \"id\": \"99999999999\" is out of range");
  expectDocumentKept();

  // The element that is not a shape object is named by its own place.
  file = writeProject(json{{"shapes", {lineShape(1, TPointF(0, 0), TPointF(2, 2)), 5, lineShape(2, TPointF(0, 0), TPointF(3, 3))}}});
  EXPECT_FALSE(f->loadProject(file));
  EXPECT_EQ(program.dialogs.FMessages.back(), file + ": shape 2 is not a JSON object");
  expectDocumentKept();

  file = writeProject(json{{"layers", {{{"id", 0}, {"chk", "-1"}}}}});
  EXPECT_FALSE(f->loadProject(file));
  EXPECT_EQ(program.dialogs.FMessages.back(), file + ": layer 1: the required key \"nam\" is missing");
  expectDocumentKept();
}

TEST_F(ProjectLoadBadInput, UnreadableFileAndInvalidUtf8) {
  EXPECT_FALSE(f->loadProject(program.file("missing.pwc")));
  EXPECT_NE(program.dialogs.FMessages.back().find(program.file("missing.pwc")), std::string::npos);
  expectDocumentKept();
  // Bytes that are not UTF-8 are read as U+FFFD; the rest of the file stays.
  json root{{"meta", {{"memo", "X"}}}, {"shapes", {lineShape(3, TPointF(0, 0), TPointF(4, 0))}}};
  std::string text = root.dump();
  text.replace(text.find("\"X\""), 3, "\"caf\xE9\"");
  const std::string file = program.file("latin.pwc");
  writeTextFile(file, text);
  ASSERT_TRUE(f->loadProject(file));
  EXPECT_EQ(f->PathList->FMemo, "caf\xEF\xBF\xBD");
  EXPECT_EQ(f->PathList->Count(), 1u);
}

TEST_F(ProjectLoad, BackdropsAndPrintAreasSurviveLoadAndSave) {
  const std::string backdrop =
      "{\"fullpath\":\"/home/u/scan.png\",\"topleft\":[1.5,-2.25],\"angle\":\"12.5\",\"rotc\":[0.0,0.0],"
      "\"dpi\":\"300.0\",\"w\":\"210.0\",\"h\":\"297.0\",\"zipbmp\":\"UEsDBBQAAAAIAA==\"}";
  const std::string text = "\xEF\xBB\xBF{\"meta\":{\"file_type\":\"Pelwright\",\"version\":\"3.6.1\",\"memo\":\"\"},"
                           "\"layers\":[{\"id\":0,\"chk\":\"-1\",\"nam\":\"Layer 1\",\"indp\":\"0\"}],\"shapes\":[],"
                           "\"backdrops\":[" + backdrop + "],\"printareas\":[{\"offset\":[0.0,0.0],\"target\":true,"
                           "\"scalepos\":0},{\"offset\":[190.5,0.0],\"target\":false,\"scalepos\":2}]}\r\n";
  const std::string file = program.file("b.pwc");
  writeTextFile(file, text);
  ASSERT_TRUE(f->loadProject(file));
  EXPECT_EQ(f->PathList->FPrintOffset.size(), 2u);
  EXPECT_EQ(f->PathList->FPrintScalePos[1], 2);
  EXPECT_FALSE(f->PathList->FPrintTarget[1]);
  f->writeProjectFile(program.file("c.pwc"));
  EXPECT_EQ(readWholeFile(program.file("c.pwc")), text);
}

TEST_F(ProjectLoad, ClipboardFileCarriesShapesToAnotherInstance) {
  f->FCopyBuffer.push_back(makeLine(TPointF(1, 2), TPointF(3, 4), 17));
  f->writeCopiedShapesFile();
  TProgram other;
  TfrmPelw& g = other.start();
  g.FAppDataPath = f->FAppDataPath;
  ASSERT_TRUE(g.readCopiedShapesFile());
  ASSERT_EQ(g.FCopyBuffer.size(), 1u);
  EXPECT_EQ(g.FCopyBuffer[0]->FID, 17);
  EXPECT_EQ(g.FCopyBuffer[0]->FEndPt, TPointF(3, 4));
}

}  // namespace
