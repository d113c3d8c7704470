#include "api/mcp_router.h"

#include <exception>

#include "api/api_reply.h"
#include "api/api_request.h"
#include "api/mcp_server.h"

bool TMcpRoute::fits(const std::string& reqMethod, const std::string& reqPath) const {
  if (reqMethod != method) return false;
  switch (match) {
    case TMatch::Exact:
      return reqPath == path;
    case TMatch::Prefix:
      return reqPath.compare(0, path.size(), path) == 0;
    case TMatch::PrefixLongerThan8:
      return reqPath.size() > 8 && reqPath.compare(0, path.size(), path) == 0;
  }
  return false;
}

// Method and path go in as they came, without escaping.
std::string unknownEndpointBody(const std::string& method, const std::string& path) {
  return "{\"error\":\"unknown endpoint\",\"method\":\"" + method + "\",\"path\":\"" + path + "\"}";
}

std::string TMcpRouter::route(const std::string& method, const std::string& path,
                              const std::string& body, int& status) const {
  for (const auto& r : FRoutes) {
    if (!r.fits(method, path)) continue;
    try {
      return r.handler(path, body);
    } catch (const TApiRangeError& e) {
      // A worded refusal like the handlers' own: status 200.
      return errorReply(e.what());
    } catch (const std::exception& e) {
      status = 500;
      return mcpErrorBody(e.what());
    } catch (...) {
      status = 500;
      return mcpErrorBody("unknown error");
    }
  }
  status = 404;
  return unknownEndpointBody(method, path);
}
