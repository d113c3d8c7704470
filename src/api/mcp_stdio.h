// `pelwright --mcp`: the Model Context Protocol on standard input and
// output, for assistants. JSON-RPC 2.0, one message a line. Each tool call
// goes on to the running program's local API over loopback HTTP; the bridge
// itself holds no drawing and needs no window.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "api/mcp_tools.h"

namespace httplib {
class Client;
}

// The longest message read; a longer line is answered with an error and
// skipped to its end.
inline constexpr size_t kMaxMcpMessageBytes = size_t(16) << 20;

class TMcpBridge {
 public:
  explicit TMcpBridge(int apiPort);
  ~TMcpBridge();
  TMcpBridge(const TMcpBridge&) = delete;
  TMcpBridge& operator=(const TMcpBridge&) = delete;

  // One line of the client in; the line to answer with, or empty when none
  // is due (notifications, replies of the client, blank lines).
  std::string handleLine(const std::string& line);
  // The error line for a message longer than kMaxMcpMessageBytes.
  static std::string tooLargeLine();

 private:
  struct THttpOutcome {
    bool reached = false;
    int status = 0;
    std::string body;
    std::string failure;  // why the program could not be reached
  };
  int FPort;
  std::unique_ptr<httplib::Client> FClient;
  std::chrono::steady_clock::time_point FLastRequest;
  std::string FProtocolVersion;

  // The answer's line, or empty; the result's JSON text of one request.
  std::string handleMessage(const TMcpJson& msg);
  std::string dispatch(const std::string& method, const TMcpJson& params);
  TMcpJson initialize(const TMcpJson& params);
  TMcpJson listTools() const;
  std::string callTool(const TMcpJson& params);
  TMcpJson listResources() const;
  TMcpJson readResource(const TMcpJson& params);
  THttpOutcome send(const TForwardRequest& req);
  std::string unreachableText(const std::string& failure) const;
};

// Serves the protocol, reading `inFd` and writing `outFd`, until the input
// ends or the output closes. Returns the process's exit code.
int runMcpStdio(int apiPort, int inFd, int outFd);
// The same on standard input and output. Anything else the process might
// print goes to standard error, so that standard output carries nothing
// but protocol messages.
int runMcpOnStandardStreams(int apiPort);
