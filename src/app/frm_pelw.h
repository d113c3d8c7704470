// TfrmPelw: the controller. It owns the document, the view, the tools and
// the local API, and every command goes through it. It is a plain class;
// the window (or the headless runner) forwards events to it and provides
// the platform services.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "api/mcp_router.h"
#include "api/mcp_server.h"
#include "app/multi_lang.h"
#include "document/intersections.h"
#include "document/shape_list.h"
#include "platform/main_thread.h"

class TfrmPelw {
 public:
  TfrmPelw();
  ~TfrmPelw();
  TfrmPelw(const TfrmPelw&) = delete;
  TfrmPelw& operator=(const TfrmPelw&) = delete;

  // Start-up in its fixed order; the local API comes last. `args` are the
  // command line arguments left after the program's own options.
  void FormCreate(const std::vector<std::string>& args);
  // Shut-down: the server first, so no request is left hanging.
  void FormDestroy();

  // ---- document ----
  std::unique_ptr<TShapeList> PathList;
  std::unique_ptr<TIntersections> FIntersections;
  int FActiveLayer = 0;

  // ---- language ----
  std::unique_ptr<TMultiLang> FMultiLang;
  std::string FLangID = "en";

  // ---- shell ----
  // Set before FormCreate to use another folder; empty takes the default.
  std::string FAppDataPath;
  std::string optionsFileName() const;
  // Port of the local API; the command line may change it.
  int FApiPort = 7777;
  std::unique_ptr<TPWMCPServer> FMCPServer;

  // Calls from other threads onto the main (this object's) thread. The
  // platform drains it from its event loop.
  TMainThreadCalls& mainThreadCalls() { return FMainCalls; }

  // ---- local API ----
  // The server's handler: runs the router on the main thread and waits.
  std::string mcpDispatch(const std::string& method, const std::string& path,
                          const std::string& body, int& status, std::string& contentType);
  // Reads "EnableServer" of section "MCP" and starts the server when it is
  // true; a port that is taken leaves the program without a server, silently.
  void startMCPServerIfEnabled();
  void stopMCPServer();
  const TMcpRouter& router() const { return FRouter; }

 private:
  TMainThreadCalls FMainCalls;
  TMcpRouter FRouter;
  bool FCreated = false;
  bool FDestroyed = false;
};
