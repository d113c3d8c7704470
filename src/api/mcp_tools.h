// The local API as tools for an assistant: one tool for each endpoint, with
// a description a model can act on and a JSON Schema of its input. The MCP
// bridge (mcp_stdio.h) lists them and forwards each call to its endpoint.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

struct TMcpRoute;

// Keys keep the order they were written in, so that a model reads x before y.
using TMcpJson = nlohmann::ordered_json;

struct TMcpTool {
  std::string name;
  std::string title;
  std::string method;  // of the endpoint
  std::string path;    // "{id}" stands for the "id" argument
  std::string description;
  TMcpJson inputSchema;
  bool readOnly = false;
  bool destructive = false;
  bool idempotent = false;
  // The reply carries a PNG picture ("png", base64).
  bool picture = false;
  // At least one of these arguments must be given (beyond what the schema says).
  std::vector<std::string> oneOfRequired;
};

// Every tool, in the order of the route table.
const std::vector<TMcpTool>& mcpTools();
const TMcpTool* findMcpTool(const std::string& name);
// The tool that serves a row of the route table, or null.
const TMcpTool* mcpToolForRoute(const TMcpRoute& route);

// The HTTP request a call becomes: the path with its id put in, and the
// body (empty for endpoints that take none). `problem` is set instead
// when the arguments cannot make one.
struct TForwardRequest {
  std::string method;
  std::string path;
  std::string body;
};
TForwardRequest forwardRequestFor(const TMcpTool& tool, const TMcpJson& arguments, std::string& problem);

// What the bridge tells a model about the drawing at the handshake.
extern const char* const kMcpInstructions;
