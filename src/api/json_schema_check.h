// Checking a JSON value against the small part of JSON Schema that the
// assistant tools use: type (object, array, string, number, integer,
// boolean), properties, required, additionalProperties false, minimum,
// maximum, enum, items, minItems, maxItems.
#pragma once

#include <string>

#include "api/mcp_tools.h"

// Empty when `value` fits `schema`; else what does not fit, naming the
// place, e.g. "startPoint.x: expected a number".
std::string schemaMismatch(const TMcpJson& schema, const TMcpJson& value, const std::string& where = "");
