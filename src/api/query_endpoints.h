// The endpoints that read the open document: GET /paths, /intersections,
// /doc and /shapes/{id}. They change nothing but the centre a shape keeps
// (see apiShapeCenter). Each returns the reply text; refusals travel with
// HTTP status 200.
#pragma once

#include <string>

class TfrmPelw;

std::string apiGetPaths(TfrmPelw& form);
std::string apiGetIntersections(TfrmPelw& form);
std::string apiGetDoc(TfrmPelw& form);
std::string apiGetShape(TfrmPelw& form, const std::string& path);

// The row that new shapes take: the palette's current row, row 0 when none
// is marked.
int activePalletRow(const TfrmPelw& form);
