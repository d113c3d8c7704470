// A controller served on a port of its own, and a client that talks to it
// over real HTTP. The test's thread is the main thread: while a request is
// under way it serves the queued calls, so handlers run where they would in
// the program.
#pragma once

#include <httplib.h>

#include <future>
#include <string>

#include "app/frm_pelw.h"
#include "test_support.h"

struct THttpReply {
  int status = 0;  // 0: no reply at all
  std::string body;
};

class TApiController {
 public:
  TTempDir dir;
  TfrmPelw form;
  int port = freeLoopbackPort();
  int canvasRepaints = 0;
  int rulerRepaints = 0;

  TApiController() {
    writeTextFile(dir.file("pw_options.ini"), "[MCP]\nEnableServer=true\n");
    form.FAppDataPath = dir.path();
    form.FApiPort = port;
    form.FormCreate({});
    form.FViewHost.invalidateCanvas = [this] { ++canvasRepaints; };
    form.FViewHost.invalidateRulers = [this] { ++rulerRepaints; };
  }

  // Sends the request with a body (POST, PUT, DELETE) or without one
  // (`body` empty and `withBody` false).
  THttpReply request(const std::string& method, const std::string& path, const std::string& body = "",
                     bool withBody = true) {
    auto fut = std::async(std::launch::async, [&] {
      httplib::Client cli("127.0.0.1", port);
      cli.set_read_timeout(30, 0);
      const char* type = "application/json";
      auto send = [&]() -> httplib::Result {
        if (method == "POST") return withBody ? cli.Post(path, body, type) : cli.Post(path);
        if (method == "PUT") return withBody ? cli.Put(path, body, type) : cli.Put(path);
        if (method == "DELETE") return withBody ? cli.Delete(path, body, type) : cli.Delete(path);
        return cli.Get(path);
      };
      const httplib::Result res = send();
      THttpReply r;
      if (res) r = {res->status, res->body};
      return r;
    });
    while (fut.wait_for(std::chrono::milliseconds(0)) != std::future_status::ready)
      form.mainThreadCalls().waitAndDrain(2);
    return fut.get();
  }
  THttpReply get(const std::string& path) { return request("GET", path); }
  THttpReply post(const std::string& path, const std::string& body) { return request("POST", path, body); }
  THttpReply put(const std::string& path, const std::string& body) { return request("PUT", path, body); }
  THttpReply del(const std::string& path) { return request("DELETE", path, "", false); }
  THttpReply del(const std::string& path, const std::string& body) { return request("DELETE", path, body); }

  // Adds a shape straight to the document, as a tool would, without a
  // request.
  TPW_Path* addShape(std::unique_ptr<TPW_Path> s, int layer = 0) {
    return form.addShapeToDocument(std::move(s), layer);
  }
  size_t shapeCount() const { return form.PathList->Count(); }
};

inline std::unique_ptr<TPW_Path> newApiTestShape(int palletRow = 0) {
  return std::make_unique<TPW_Path>(palletRow, claWhite, 1.5f, TStrokeDash::Solid, 0);
}
