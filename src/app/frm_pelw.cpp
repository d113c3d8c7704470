#include "app/frm_pelw.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "api/mcp_routes.h"
#include "app/app_paths.h"
#include "app/ini_file.h"

// Start-up and shut-down are in frm_pelw_startup.cpp; this file holds the
// local API's side of the controller.

TfrmPelw::TfrmPelw() = default;

void TfrmPelw::startMCPServerIfEnabled() {
  bool enabled = false;
  std::string origins;
  try {
    const std::string file = optionsFileName();
    if (std::filesystem::exists(file)) {
      const TIniFile ini(file);
      enabled = ini.ReadBool("MCP", "EnableServer", enabled);
      origins = ini.ReadString("MCP", "AllowedOrigins", "");
    }
  } catch (...) {
    // An unreadable options file leaves the server off.
  }
  FMCPServerError.clear();
  if (!enabled) return;
  try {
    FMCPServer = std::make_unique<TPWMCPServer>(
        FApiPort, [this](const std::string& method, const std::string& path, const std::string& body,
                         int& status, std::string& contentType) {
          return mcpDispatch(method, path, body, status, contentType);
        });
    std::vector<std::string> allowed;
    for (size_t from = 0; from <= origins.size();) {
      const size_t comma = std::min(origins.find(',', from), origins.size());
      allowed.push_back(origins.substr(from, comma - from));
      from = comma + 1;
    }
    FMCPServer->setAllowedOrigins(std::move(allowed));
    FMCPServer->Start();
  } catch (...) {
    // The port is taken, most likely by another copy of the program: go on
    // without a server, and say so.
    FMCPServer.reset();
    FMCPServerError = phrase("ApiPortTaken") + " 127.0.0.1:" + std::to_string(FApiPort);
    std::fprintf(stderr, "pelwright: %s\n", FMCPServerError.c_str());
  }
}

void TfrmPelw::stopMCPServer() {
  if (!FMCPServer) return;
  // Requests already waiting are answered, later ones refused; then the
  // server can close without waiting on a request that waits on us.
  FMainCalls.close();
  FMainCalls.drain();
  FMainCalls.cancelPending();
  FMCPServer->Stop();
  FMCPServer.reset();
}

std::string TfrmPelw::mcpDispatch(const std::string& method, const std::string& path,
                                  const std::string& body, int& status, std::string& contentType) {
  // The call record lives for this one request.
  struct TCallRecord {
    std::string body, result, path, method;
    int status = 200;
  } record{body, {}, path, method, 200};
  status = 200;
  contentType = "application/json; charset=utf-8";
  const bool ran = FMainCalls.runSync([this, &record] {
    record.result = FRouter.route(record.method, record.path, record.body, record.status);
  });
  if (!ran) {
    status = 503;
    return mcpErrorBody("server is shutting down");
  }
  status = record.status;
  return std::move(record.result);
}
