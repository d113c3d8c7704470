// The route table of the local API, in the order the router tests it.
#pragma once

#include <vector>

#include "api/mcp_router.h"

class TfrmPelw;

// The reply of GET /: a fixed text. It lists the endpoints as published,
// which leaves out two that are routed all the same.
extern const char* const kMcpInfoDocument;

std::vector<TMcpRoute> buildMcpRoutes(TfrmPelw& form);
