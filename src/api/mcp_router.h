// The router of the local API: a table of routes tested in order, the first
// that fits answers. Runs on the main thread.
#pragma once

#include <functional>
#include <string>
#include <vector>

struct TMcpRoute {
  enum class TMatch {
    Exact,             // the whole path, case counts
    Prefix,            // the path begins with `path`
    PrefixLongerThan8  // begins with `path` and is longer than 8 characters
  };
  std::string method;
  std::string path;
  TMatch match = TMatch::Exact;
  // Gets the request path and body; returns the reply text. Handlers never
  // set the HTTP status: their own refusals travel with 200.
  std::function<std::string(const std::string& path, const std::string& body)> handler;

  bool fits(const std::string& reqMethod, const std::string& reqPath) const;
};

class TMcpRouter {
 public:
  void setRoutes(std::vector<TMcpRoute> routes) { FRoutes = std::move(routes); }
  const std::vector<TMcpRoute>& routes() const { return FRoutes; }

  // Runs the first fitting route. No route: 404 with the unknown-endpoint
  // body. A handler that raises: 500 with its message, or for a number out
  // of range (TApiRangeError) 200 with {"error":...}.
  std::string route(const std::string& method, const std::string& path, const std::string& body,
                    int& status) const;

 private:
  std::vector<TMcpRoute> FRoutes;
};

std::string unknownEndpointBody(const std::string& method, const std::string& path);
