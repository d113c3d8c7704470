#include "stitching/iron_press.h"

int nextHoleCount(int blades, int stitchingCount, bool reduceOneBlade) {
  if (blades < 2) return blades;
  return (stitchingCount != 1 && !reduceOneBlade) ? blades : blades - 1;
}

TPressRange pressRange(int blades, int stitchingCount, bool preview, bool shiftOrSkip) {
  TPressRange r;
  if (blades < 2) {
    if (preview) r = stitchingCount < 2 ? TPressRange{0, 0} : TPressRange{1, 1};
    else r = stitchingCount < 3 ? TPressRange{0, 1} : TPressRange{1, 1};
  } else {
    // The preview shows the press that the next click makes.
    const bool firstPress = preview ? stitchingCount == 1 : stitchingCount == 2;
    r = firstPress ? TPressRange{0, blades - 1} : TPressRange{1, blades};
  }
  if (shiftOrSkip) ++r.FFirst;
  return r;
}

std::vector<TPointF> pressPositions(const TPointF& lastPos, const TPointF& direction, double pitch, int reach) {
  std::vector<TPointF> out;
  for (int i = 0; i <= reach; ++i)
    out.push_back(TPointF::fromDouble(lastPos.x + double(direction.x) * pitch * i,
                                      lastPos.y + double(direction.y) * pitch * i));
  return out;
}
