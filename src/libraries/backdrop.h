// A backdrop: a picture laid under the drawing to trace, at its real size
// in millimetres (from its resolution or a size the user set), placed by
// its top left corner and turned about its centre. Its picture is stored
// inside the project as the base64 text of a ZIP archive. Each backdrop
// keeps its own undo of place, angle and resolution.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "document/path_data.h"
#include "document/types.h"
#include "platform/raster_image.h"

struct TBackdropUndoValues {
  TPointF LeftTop;
  float Angle = -1;
  float Dpi = -1;
};

// The name of the picture inside a backdrop's archive.
inline constexpr const char* kBackdropPictureEntry = "trace_image.bmp";
// The resolution a new picture is taken at.
inline constexpr float kDefaultBackdropDpi = 300.0f;

class TBackdrop {
 public:
  TBackdrop() = default;

  // ---- fields, in declared order ----
  TRasterImage FBitmap;
  float FWidth = 0;   // real size, mm
  float FHeight = 0;
  TPointF FLeftTop;
  float FAngle = 0;   // degrees, clockwise on the screen
  bool FIsSelected = false;
  float FDpi = kDefaultBackdropDpi;
  std::string FFullPath;
  std::string FBase64ZippedBitmap;
  TPointF FRotationCenter;
  std::vector<TBackdropUndoValues> FUndoList;
  std::vector<TBackdropUndoValues> FRedoList;

  // The object read from the file, so that keys of other writers and the
  // file's key order come back unchanged on saving.
  nlohmann::ordered_json FFileJson;
  // What the painter keeps for this picture (its reduced copies); made and
  // read by the painter only.
  std::shared_ptr<void> FPaintCache;

  // ---- undo of place, angle and resolution ----
  void addCurrentStateToUndo();
  // With fewer than two states (or no redo), Angle and Dpi are -1 and
  // nothing changes.
  TBackdropUndoValues performUndo();
  TBackdropUndoValues performRedo();
  int getUndoBufferCount() const { return static_cast<int>(FUndoList.size()); }

  // ---- size ----
  // From (0,0) to the picture's size in pixels.
  TRectF getBoundary() const;
  // w of 0: the height is h and the width comes out equal to h (the pixel
  // height stands in both terms of the scale, as it always has). Both set:
  // taken as given. h of 0: the width is w, the height follows. FDpi then
  // follows the width.
  void setRealSize(float w, float h);
  void setDPI(float dpi);

  // ---- place ----
  TPointF centre() const;
  // The four corners in the model, turned: top left, top right, bottom
  // right, bottom left of the picture.
  std::vector<TPointF> corners() const;
  // True when the point of the model lies on the picture.
  bool containsPoint(const TPointF& p) const;
  // Picture millimetres (from its unturned top left) to the model, and back.
  TMatrix pictureToModel() const;
  TPointF modelToPicture(const TPointF& p) const;
  // Scales the picture about a point of the model that stays where it is
  // (the first point of a calibration); the angle stays.
  void scaleAbout(const TPointF& fixed, double factor);
  void updateRotationCenter() { FRotationCenter = centre(); }

  // ---- the stored picture ----
  std::string convertBitmapToBase64Zip() const;
  // Replaces FBitmap; throws with a message for the user when the text is
  // no picture.
  void decodeZippedBitmap(const std::string& base64zip);
  // A new picture: FBitmap, setDPI(dpi), the stored form, the paint cache
  // dropped.
  void setPicture(const TRasterImage& picture, float dpi);

  // ---- the project file's object ----
  nlohmann::ordered_json ToJson() const;
  // Place, angle, resolution, size and stored picture text; the picture
  // itself is decoded by the caller. Throws TJsonFormError for a value of
  // the wrong kind.
  void loadJson(const nlohmann::ordered_json& jo);
  // After the picture is in: angles, places, resolutions and sizes that
  // are no numbers or beyond the drawing's limits are set right.
  void repairPlacement();
};
