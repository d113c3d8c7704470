// The local API's transport: an HTTP server on the loopback interface only,
// a thread for each connection (up to a limit), that turns each request
// into one call of a handler and sends back what the handler returns. It
// knows nothing of the document; the controller's router does. Requests
// from a web page (a foreign Host or Origin) are refused before the handler.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

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

// Empty when a request may reach the handler, else why it is refused (403).
// The Host, when given, must be 127.0.0.1, localhost or [::1], with or
// without a port; an Origin, when given, must be http://127.0.0.1 or
// http://localhost with any port, or one of `allowedOrigins`. A web page
// cannot send a request without an Origin or with a loopback Host of its
// own choosing, so scripts and assistants pass and pages do not.
std::string foreignRequestRefusal(const std::string* host, const std::string* origin,
                                  const std::vector<std::string>& allowedOrigins);

class TPWMCPServer {
 public:
  static constexpr const char* kAddress = "127.0.0.1";

  // Port 0 takes any free port at Start (see boundPort). Does not listen yet.
  TPWMCPServer(int APort, TPWMCPHandler AHandler);
  // Stops first.
  ~TPWMCPServer();
  TPWMCPServer(const TPWMCPServer&) = delete;
  TPWMCPServer& operator=(const TPWMCPServer&) = delete;

  // Origins besides the loopback ones that may send requests, such as
  // "http://192.168.1.5:8080"; before Start.
  void setAllowedOrigins(std::vector<std::string> origins);
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
  std::vector<std::string> FAllowedOrigins;
  int FPort;
  int FBoundPort = 0;
  bool FActive = false;
  std::shared_ptr<TShared> FShared;
  std::thread FListenThread;
  void createServer();
};
