#include "api/mcp_routes.h"

#include "app/frm_pelw.h"

const char* const kMcpInfoDocument =
    "{\"name\":\"Pelwright MCP\",\"phase\":1,\"endpoints\":[\"GET /paths\",\"GET /intersections\","
    "\"POST /ruler\",\"GET /doc\",\"GET /shapes/{id}\",\"POST /shapes/line\",\"POST /shapes/circle\","
    "\"POST /shapes/arc\",\"POST /shapes/bezier\",\"PUT /shapes/{id}\",\"POST /shapes/stitch_hole\","
    "\"POST /stitch/along_path\",\"POST /shapes/chamfer\",\"POST /shapes/offset\","
    "\"POST /shapes/offset/smart\",\"POST /shapes/smooth_chain\",\"POST /stitch/loop\","
    "\"POST /doc/new\",\"POST /viewport/fit\",\"DELETE /shapes/{id}\","
    "\"DELETE /shapes (body:{ids:[...]} for bulk, no body = clear all)\"]}";

// Rows whose endpoints are not built yet are left out, so that they answer
// as unknown endpoints instead of pretending.
std::vector<TMcpRoute> buildMcpRoutes(TfrmPelw& form) {
  using M = TMcpRoute::TMatch;
  (void)form;
  std::vector<TMcpRoute> t;
  t.push_back({"GET", "/", M::Exact,
               [](const std::string&, const std::string&) { return std::string(kMcpInfoDocument); }});
  return t;
}
