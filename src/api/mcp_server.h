// The local API's transport: an HTTP server on the loopback interface only,
// a thread for each connection, that turns each request into one call of a
// handler and sends back what the handler returns. It knows nothing of the
// document; the controller's router does.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace httplib {
class Server;
}

// method, path, body (UTF-8) in; status and content type out (preset to 200
// and "application/json; charset=utf-8"); returns the response body.
using TPWMCPHandler = std::function<std::string(const std::string& method, const std::string& path,
                                                const std::string& body, int& status,
                                                std::string& contentType)>;

// `{"error":"` + message with every `"` as `\"` + `"}`: the body of a 500.
std::string mcpErrorBody(const std::string& message);

// The request body as UTF-8 text: invalid byte sequences become U+FFFD.
std::string decodeUtf8(const std::string& bytes);

class TPWMCPServer {
 public:
  static constexpr const char* kAddress = "127.0.0.1";

  // Port 0 takes any free port at Start (see boundPort). Does not listen yet.
  TPWMCPServer(int APort, TPWMCPHandler AHandler);
  // Stops first.
  ~TPWMCPServer();
  TPWMCPServer(const TPWMCPServer&) = delete;
  TPWMCPServer& operator=(const TPWMCPServer&) = delete;

  // Binds and starts listening, if not active. Throws std::runtime_error
  // when the port cannot be bound (another program holds it).
  void Start();
  // Refuses new requests, waits for the handler calls under way, closes the
  // port and ends the connection threads. The handler must be able to
  // finish meanwhile: whoever runs it must not be the caller blocked here.
  void Stop();
  bool isActive() const { return FActive; }
  int boundPort() const { return FBoundPort; }

 private:
  struct TShared;
  std::shared_ptr<httplib::Server> FServer;
  TPWMCPHandler FHandler;
  int FPort;
  int FBoundPort = 0;
  bool FActive = false;
  std::shared_ptr<TShared> FShared;
  std::thread FListenThread;
  void createServer();
};
