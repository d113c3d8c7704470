#include "api/mcp_routes.h"

#include "api/doc_endpoints.h"
#include "api/query_endpoints.h"
#include "api/render_endpoint.h"
#include "api/ruler_endpoint.h"
#include "api/seam_endpoints.h"
#include "api/shape_edit_endpoints.h"
#include "api/stitch_endpoints.h"
#include "app/frm_pelw.h"

const char* const kMcpInfoDocument =
    "{\"name\":\"Pelwright MCP\",\"phase\":1,\"endpoints\":[\"GET /paths\",\"GET /intersections\","
    "\"POST /ruler\",\"GET /doc\",\"GET /shapes/{id}\",\"POST /shapes/line\",\"POST /shapes/circle\","
    "\"POST /shapes/arc\",\"POST /shapes/bezier\",\"PUT /shapes/{id}\",\"POST /shapes/stitch_hole\","
    "\"POST /stitch/along_path\",\"POST /shapes/chamfer\",\"POST /shapes/offset\","
    "\"POST /shapes/offset/smart\",\"POST /shapes/smooth_chain\",\"POST /stitch/loop\","
    "\"POST /doc/new\",\"POST /viewport/fit\",\"DELETE /shapes/{id}\","
    "\"DELETE /shapes (body:{ids:[...]} for bulk, no body = clear all)\"]}";

std::vector<TMcpRoute> buildMcpRoutes(TfrmPelw& form) {
  using M = TMcpRoute::TMatch;
  using S = const std::string&;
  TfrmPelw* f = &form;
  std::vector<TMcpRoute> t;
  t.push_back({"GET", "/paths", M::Exact, [f](S, S) { return apiGetPaths(*f); }});
  t.push_back({"GET", "/intersections", M::Exact, [f](S, S) { return apiGetIntersections(*f); }});
  t.push_back({"POST", "/ruler", M::Exact, [f](S, S body) { return apiRuler(*f, body); }});
  t.push_back({"GET", "/doc", M::Exact, [f](S, S) { return apiGetDoc(*f); }});
  t.push_back({"GET", "/shapes/", M::PrefixLongerThan8, [f](S path, S) { return apiGetShape(*f, path); }});
  t.push_back({"POST", "/shapes/line", M::Exact, [f](S, S body) { return apiCreateLine(*f, body); }});
  t.push_back({"POST", "/shapes/circle", M::Exact, [f](S, S body) { return apiCreateCircle(*f, body); }});
  t.push_back({"POST", "/shapes/arc", M::Exact, [f](S, S body) { return apiCreateArc(*f, body); }});
  t.push_back({"POST", "/shapes/bezier", M::Exact, [f](S, S body) { return apiCreateBezier(*f, body); }});
  // No length test: PUT /shapes/ reaches the handler and is refused there.
  t.push_back({"PUT", "/shapes/", M::Prefix, [f](S path, S body) { return apiUpdateShape(*f, path, body); }});
  t.push_back({"POST", "/shapes/stitch_hole", M::Exact, [f](S, S body) { return apiStitchHole(*f, body); }});
  t.push_back({"POST", "/stitch/along_path", M::Exact, [f](S, S body) { return apiStitchAlongPath(*f, body); }});
  t.push_back({"POST", "/shapes/chamfer", M::Exact, [f](S, S body) { return apiChamfer(*f, body); }});
  t.push_back({"POST", "/shapes/offset/smart", M::Exact, [f](S, S body) { return apiSmartOffset(*f, body); }});
  t.push_back({"POST", "/shapes/smooth_chain", M::Exact, [f](S, S body) { return apiSmoothChain(*f, body, false); }});
  t.push_back({"POST", "/shapes/smooth_chain_g2", M::Exact, [f](S, S body) { return apiSmoothChain(*f, body, true); }});
  t.push_back({"POST", "/shapes/trim", M::Exact, [f](S, S body) { return apiTrim(*f, body); }});
  t.push_back({"POST", "/shapes/offset", M::Exact, [f](S, S body) { return apiOffset(*f, body); }});
  t.push_back({"POST", "/stitch/loop", M::Exact, [f](S, S body) { return apiStitchLoop(*f, body); }});
  t.push_back({"POST", "/doc/new", M::Exact, [f](S, S) { return apiNewDocument(*f); }});
  t.push_back({"POST", "/viewport/fit", M::Exact, [f](S, S) { return apiFitViewport(*f); }});
  t.push_back({"DELETE", "/shapes", M::Exact, [f](S, S body) { return apiDeleteShapes(*f, body); }});
  t.push_back({"DELETE", "/shapes/", M::PrefixLongerThan8, [f](S path, S) { return apiDeleteShape(*f, path); }});
  // Beyond the published list: a picture of the drawing, read only.
  t.push_back({"POST", "/render", M::Exact, [f](S, S body) { return apiRender(*f, body); }});
  t.push_back({"GET", "/", M::Exact, [](S, S) { return std::string(kMcpInfoDocument); }});
  return t;
}
