// The pieces every reply of the local API is made of: points, path data,
// a shape's centre as the API reports it, and the short command replies.
// All of them write through TJsonReply, so numbers and text come out the
// same way in every endpoint.
#pragma once

#include <string>
#include <string_view>

#include "api/json_reply.h"
#include "document/types.h"

class TPathData;
class TPW_Path;

// {"x":..,"y":..}
void writePoint(TJsonReply& r, const TPointF& p);
// [{"kind":"M","x":..,"y":..}, ...]: one item for each path point; a cubic
// gives three "C" items in a row.
void writePathData(TJsonReply& r, const TPathData& data);

// The centre that the API reports, refreshed and stored in FCenter: the
// middle of the ends of a line, the middle of the boundary of a Bezier;
// for a free outline the boundary is computed afresh and sets start, end
// and centre; any other shape keeps its stored centre.
TPointF apiShapeCenter(TPW_Path& shape);

// {"error":"<message>"}: a request the endpoint could not read.
std::string errorReply(std::string_view message);
// {"ok":false,"error":"<message>","id":<id>}: understood, but not done.
std::string failReply(std::string_view message, int id);
// {"ok":false,"error":"<message>"}
std::string failReply(std::string_view message);
// {"ok":true,"<name>":<value>}
std::string okReply(std::string_view name, int value);
// {"ok":true}
std::string okReply();
