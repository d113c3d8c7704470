// Backdrops: pictures and PDF pages laid under the drawing. Each change of
// place, angle or size is one step of the backdrop's own undo; the
// document's undo does not touch them, but the project holds them, so a
// change marks it changed.
#include <cmath>
#include <filesystem>

#include "app/frm_pelw.h"
#include "app/number_box.h"
#include "platform/safe_file.h"
#include "document/point_helpers.h"
#include "libraries/picture_codec.h"

namespace fs = std::filesystem;

namespace {

// A picture file of more than this is not read into memory at all.
constexpr uintmax_t kMaxPictureFileBytes = 512ull << 20;
// How many PDF pages one import may take, and the resolution they are
// rendered at (lowered for pages too large for the picture limit).
constexpr int kMaxPdfPagesAtOnce = 10;
constexpr double kPdfPageDpi = 200.0;
constexpr float kMaxBackdropMm = 1.0e6f;

bool finite(const TPointF& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

}  // namespace

// ---- the list ----

void TfrmPelw::clearBackdrops() {
  FBackdrops.clear();
  FSelectedBackdrop = -1;
  FDraggingBackdrop = nullptr;
  FBackdropLayerCache.reset();
  if (FLibraryHost.backdropsChanged) FLibraryHost.backdropsChanged();
}

TBackdrop* TfrmPelw::selectedBackdrop() const {
  return FSelectedBackdrop >= 0 && FSelectedBackdrop < int(FBackdrops.size()) ? FBackdrops[size_t(FSelectedBackdrop)].get()
                                                                              : nullptr;
}

void TfrmPelw::selectBackdrop(int index) {
  FSelectedBackdrop = index >= 0 && index < int(FBackdrops.size()) ? index : -1;
  for (size_t i = 0; i < FBackdrops.size(); ++i) FBackdrops[i]->FIsSelected = int(i) == FSelectedBackdrop;
  if (FLibraryHost.backdropsChanged) FLibraryHost.backdropsChanged();
  if (FProgramHost.undoStateChanged) FProgramHost.undoStateChanged();
  RepaintCanvas();
}

void TfrmPelw::setBackdropTool(bool on) {
  FBackdropToolActive = on;
  if (!on) FCalibrating = false;
  if (FProgramHost.undoStateChanged) FProgramHost.undoStateChanged();
  RepaintCanvas();
}

TBackdrop* TfrmPelw::addBackdrop(const TRasterImage& picture, float dpi, const std::string& source) {
  if (picture.isEmpty()) return nullptr;
  auto b = std::make_unique<TBackdrop>();
  b->FFullPath = source;
  b->setPicture(picture, dpi);
  // At the origin, unless the origin is out of sight: then where the user looks.
  const TRectF view = VisibleRealRect().normalized();
  if (FPboxWidth > 0 && !view.containsPoint(TPointF(0, 0)))
    b->FLeftTop = TPointF::fromDouble(view.Left + view.width() * 0.05, view.Top + view.height() * 0.05);
  b->updateRotationCenter();
  b->addCurrentStateToUndo();
  FBackdrops.push_back(std::move(b));
  setChanged(true);
  selectBackdrop(int(FBackdrops.size()) - 1);
  return FBackdrops.back().get();
}

void TfrmPelw::actAddBackdrop() {
  std::string folder;
  if (!FFilename.empty()) folder = fs::path(FFilename).parent_path().string();
  const std::string name = dialogs().openFileName(folder, ".png;.jpg;.jpeg;.bmp;.pdf");
  if (!name.empty()) addBackdropFromFile(name);
}

bool TfrmPelw::addBackdropFromFile(const std::string& filename) {
  std::string path = filename;
  std::error_code ec;
  if (!fs::is_regular_file(path, ec) && !FFilename.empty()) {
    const fs::path beside = fs::path(FFilename).parent_path() / fs::path(filename).filename();
    if (fs::is_regular_file(beside, ec)) path = beside.string();
  }
  if (!fs::is_regular_file(path, ec)) {
    showFault(phrase("FileNotFound") + filename);
    return false;
  }
  std::string ext = fs::path(path).extension().string();
  for (char& c : ext) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (ext == ".pdf") return addBackdropsFromPdf(path);
  if (fs::file_size(path, ec) > kMaxPictureFileBytes) {
    showFault(phrase("PictureTooLarge") + "\n" + path);
    return false;
  }
  std::string bytes;
  try {
    bytes = readWholeFile(path);
  } catch (const std::exception& e) {
    showFault(e.what());
    return false;
  }
  const TDecodedPicture picture = decodePicture(bytes);
  if (picture.FImage.isEmpty()) {
    showFault(phrase(picture.FProblem == TPictureProblem::TooLarge ? "PictureTooLarge" : "NotAPicture") + "\n" + path);
    return false;
  }
  // A reduced picture keeps the real size the whole one would have had.
  float dpi = kDefaultBackdropDpi;
  if (picture.FSourceWidth > picture.FImage.FWidth) {
    dpi = static_cast<float>(kDefaultBackdropDpi * picture.FImage.FWidth / double(picture.FSourceWidth));
    showFault(phrase("PictureReduced") + " " + std::to_string(picture.FSourceWidth) + " x " +
              std::to_string(picture.FSourceHeight) + " -> " + std::to_string(picture.FImage.FWidth) + " x " +
              std::to_string(picture.FImage.FHeight));
  }
  return addBackdrop(picture.FImage, dpi, path) != nullptr;
}

bool TfrmPelw::addBackdropsFromPdf(const std::string& filename) {
  IPdfReader* reader = pdfReader();
  if (!reader) {
    showFault(phrase("NotAPicture") + "\n" + filename);
    return false;
  }
  TPdfOpenState state = TPdfOpenState::NotPdf;
  std::string error;
  std::unique_ptr<IPdfPages> doc = reader->open(filename, "", state, error);
  for (int tries = 0; !doc && (state == TPdfOpenState::NeedsPassword || state == TPdfOpenState::WrongPassword) && tries < 3;
       ++tries) {
    if (state == TPdfOpenState::WrongPassword) showFault(phrase("WrongPassword"));
    const auto password = dialogs().inputPassword(phrase("Enter Password"), phrase("Password:"));
    if (!password) return false;
    doc = reader->open(filename, *password, state, error);
  }
  if (!doc) {
    showFault((state == TPdfOpenState::NotPdf ? phrase("NotAPicture") : phrase("WrongPassword")) + "\n" + filename);
    return false;
  }
  const std::vector<int> pages = dialogs().choosePdfPages(*doc, kMaxPdfPagesAtOnce);
  float nextLeft = 0;
  bool any = false;
  for (size_t i = 0; i < pages.size() && i < size_t(kMaxPdfPagesAtOnce); ++i) {
    const int page = pages[i];
    if (page < 0 || page >= doc->pageCount()) continue;
    const TPointF mm = doc->pageSizeMm(page);
    double dpi = kPdfPageDpi;
    const double pixels = double(mm.x) / 25.4 * dpi * double(mm.y) / 25.4 * dpi;
    if (pixels > double(kMaxPicturePixels)) dpi *= std::sqrt(double(kMaxPicturePixels) / pixels) * 0.999;
    const TRasterImage picture = doc->renderPage(page, dpi);
    if (picture.isEmpty()) {
      showFault(phrase("NotAPicture") + "\n" + filename + " p." + std::to_string(page + 1));
      continue;
    }
    // The real size from the rendering: the page's own millimetres.
    TBackdrop* b = addBackdrop(picture, static_cast<float>(picture.FWidth / (double(mm.x) / 25.4)),
                               filename + "#" + std::to_string(page + 1));
    if (!b) continue;
    // Pages side by side, 10 mm apart.
    if (any) {
      b->FLeftTop = TPointF(nextLeft, b->FLeftTop.y);
      b->updateRotationCenter();
      b->FUndoList.clear();
      b->addCurrentStateToUndo();
    }
    nextLeft = b->FLeftTop.x + b->FWidth + 10.0f;
    any = true;
  }
  RepaintCanvas();
  return any;
}

void TfrmPelw::btnDeleteBackdrop() {
  if (!selectedBackdrop()) return;
  if (dialogs().askYesNo(phrase("ok2delete?"), TDialogAnswer::No) != TDialogAnswer::Yes) return;
  FBackdrops.erase(FBackdrops.begin() + FSelectedBackdrop);
  FBackdropLayerCache.reset();
  setChanged(true);
  selectBackdrop(FBackdrops.empty() ? -1 : std::min<int>(FSelectedBackdrop, int(FBackdrops.size()) - 1));
}

// ---- the project file ----

std::vector<TBackdropData> TfrmPelw::backdropsForFile() const {
  std::vector<TBackdropData> out;
  out.reserve(FBackdrops.size());
  for (const auto& b : FBackdrops) out.push_back({b->ToJson()});
  return out;
}

void TfrmPelw::loadBackdropsOfProject(const std::vector<TBackdropData>& data, const std::string& projectFile) {
  FBackdrops.clear();
  FSelectedBackdrop = -1;
  FBackdropLayerCache.reset();
  const std::string savedName = FFilename;
  FFilename = projectFile;  // for pictures looked for beside the project
  std::vector<std::string> problems;
  for (const TBackdropData& d : data) {
    const std::string where = phrase("tabTop_Backdrop") + " " + std::to_string(&d - data.data() + 1) + ": ";
    auto b = std::make_unique<TBackdrop>();
    try {
      b->loadJson(d.FJson);
    } catch (const std::exception& e) {
      problems.push_back(where + e.what());
      continue;
    }
    // A picture that does not read leaves the backdrop without one, kept
    // as the file has it, so that saving loses nothing.
    try {
      if (!b->FBase64ZippedBitmap.empty()) {
        b->decodeZippedBitmap(b->FBase64ZippedBitmap);
      } else {
        // No picture in the file: the picture file, as when it was added.
        const size_t before = FBackdrops.size();
        if (addBackdropFromFile(b->FFullPath) && FBackdrops.size() > before) {
          const TBackdrop& opened = *FBackdrops.back();
          b->FBitmap = opened.FBitmap;
          b->FBase64ZippedBitmap = opened.FBase64ZippedBitmap;
        }
        FBackdrops.resize(before);
      }
    } catch (const std::exception& e) {
      problems.push_back(where + e.what());
    }
    b->repairPlacement();
    b->FUndoList.clear();
    b->addCurrentStateToUndo();
    FBackdrops.push_back(std::move(b));
  }
  FFilename = savedName;
  FSelectedBackdrop = FBackdrops.empty() ? -1 : 0;
  for (size_t i = 0; i < FBackdrops.size(); ++i) FBackdrops[i]->FIsSelected = i == 0;
  showLibraryProblems(problems);
  if (FLibraryHost.backdropsChanged) FLibraryHost.backdropsChanged();
}

// ---- changes, each one undo step of the backdrop ----

void TfrmPelw::backdropChanged(bool recordUndo) {
  TBackdrop* b = selectedBackdrop();
  if (!b) return;
  b->updateRotationCenter();
  if (recordUndo) b->addCurrentStateToUndo();
  FBackdropLayerCache.reset();
  setChanged(true);
  if (FLibraryHost.backdropsChanged) FLibraryHost.backdropsChanged();
  if (FProgramHost.undoStateChanged) FProgramHost.undoStateChanged();
  RepaintCanvas();
}

void TfrmPelw::moveBackdrop(const TPointF& leftTop) {
  TBackdrop* b = selectedBackdrop();
  if (!b || !finite(leftTop) || std::fabs(leftTop.x) > kMaxBackdropMm || std::fabs(leftTop.y) > kMaxBackdropMm) return;
  b->FLeftTop = leftTop;
  backdropChanged(true);
}

void TfrmPelw::rotateBackdrop(float angle) {
  TBackdrop* b = selectedBackdrop();
  if (!b || !std::isfinite(angle)) return;
  b->FAngle = static_cast<float>(std::fmod(double(angle), 360.0));
  backdropChanged(true);
}

void TfrmPelw::setBackdropDpi(float dpi) {
  TBackdrop* b = selectedBackdrop();
  if (!b || !std::isfinite(dpi) || dpi <= 0.01f || dpi > 1.0e6f) return;
  // The picture keeps its middle where it is.
  const TPointF c = b->centre();
  b->setDPI(dpi);
  b->FLeftTop = TPointF::fromDouble(c.x - b->FWidth / 2.0, c.y - b->FHeight / 2.0);
  backdropChanged(true);
}

void TfrmPelw::setBackdropSize(float width, float height) {
  TBackdrop* b = selectedBackdrop();
  auto ok = [](float v) { return std::isfinite(v) && v >= 0 && v <= kMaxBackdropMm; };
  if (!b || !ok(width) || !ok(height) || (width == 0 && height == 0)) return;
  const TPointF c = b->centre();
  b->setRealSize(width, height);
  b->FLeftTop = TPointF::fromDouble(c.x - b->FWidth / 2.0, c.y - b->FHeight / 2.0);
  backdropChanged(true);
}

bool TfrmPelw::calibrateBackdrop(const TPointF& p1, const TPointF& p2, float distance) {
  TBackdrop* b = selectedBackdrop();
  if (!b || !finite(p1) || !finite(p2) || !std::isfinite(distance) || distance <= 0 || distance > kMaxBackdropMm)
    return false;
  const double measured = distanceOf(p1, p2);
  if (measured < 1e-6) return false;
  b->scaleAbout(p1, distance / measured);
  backdropChanged(true);
  return true;
}

void TfrmPelw::setBackdropOpacity(float alpha) {
  if (!std::isfinite(alpha)) return;
  FBackdropAlpha = std::clamp(alpha, 0.0f, 1.0f);
  FBackdropLayerCache.reset();
  RepaintCanvas();
}

void TfrmPelw::setShowBackdrops(bool show) {
  FShowBackdrops = show;
  RepaintCanvas();
}

void TfrmPelw::backdropUndo() {
  TBackdrop* b = selectedBackdrop();
  if (!b) return;
  if (b->performUndo().Dpi > 0) backdropChanged(false);
}

void TfrmPelw::backdropRedo() {
  TBackdrop* b = selectedBackdrop();
  if (!b) return;
  if (b->performRedo().Dpi > 0) backdropChanged(false);
}

// ---- the backdrop tool's pointer ----

void TfrmPelw::startBackdropCalibration() {
  FCalibrating = selectedBackdrop() != nullptr;
  FCalibrationPoints.clear();
}

bool TfrmPelw::backdropMouseDown(const TPointF& pixel) {
  if (!FBackdropToolActive) return false;
  FDraggingBackdrop = nullptr;
  if (FCalibrating) return true;
  const TPointF real = ScreenToReal(pixel);
  for (size_t i = FBackdrops.size(); i-- > 0;)
    if (FBackdrops[i]->containsPoint(real)) {
      FDraggingBackdrop = FBackdrops[i].get();
      FBackDropOrgTopLeft = FDraggingBackdrop->FLeftTop;
      FBackdropDragStart = real;
      if (int(i) != FSelectedBackdrop) selectBackdrop(int(i));
      return true;
    }
  return false;
}

bool TfrmPelw::backdropMouseMove(const TPointF& pixel) {
  if (!FDraggingBackdrop) return false;
  const TPointF real = ScreenToReal(pixel);
  FDraggingBackdrop->FLeftTop = FBackDropOrgTopLeft + (real - FBackdropDragStart);
  FDraggingBackdrop->updateRotationCenter();
  FBackdropLayerCache.reset();
  RepaintCanvas();
  return true;
}

bool TfrmPelw::backdropMouseUp(const TPointF& pixel) {
  if (FCalibrating && FBackdropToolActive) {
    FCalibrationPoints.push_back(ScreenToReal(pixel, true));
    RepaintCanvas();
    if (FCalibrationPoints.size() < 2) return true;
    FCalibrating = false;
    const TPointF p1 = FCalibrationPoints[0], p2 = FCalibrationPoints[1];
    FCalibrationPoints.clear();
    const auto text = dialogs().inputText(phrase("BackdropCalibrate"), phrase("BackdropCalibrateBody"), "");
    if (text) {
      // Read as a length box reads what is typed: the unit, expressions.
      TPlainNumberBox box;
      box.FEditing = true;
      box.FEditText = *text;
      box.FValue = -1;
      const float mm = static_cast<float>(ReadLengthBox(box, FIsInch));
      if (!calibrateBackdrop(p1, p2, mm)) showFault(phrase("BackdropCalibrateBody"));
    }
    if (FLibraryHost.backdropsChanged) FLibraryHost.backdropsChanged();
    RepaintCanvas();
    return true;
  }
  if (!FDraggingBackdrop) return false;
  TBackdrop* b = FDraggingBackdrop;
  FDraggingBackdrop = nullptr;
  if (!b->FLeftTop.identical(FBackDropOrgTopLeft)) {
    b->addCurrentStateToUndo();
    setChanged(true);
  }
  if (FLibraryHost.backdropsChanged) FLibraryHost.backdropsChanged();
  RepaintCanvas();
  return true;
}
