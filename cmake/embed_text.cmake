# Turns a text resource into a C++ source that returns it as a string_view.
#
#   cmake -DINPUT=<file> -DOUTPUT=<file.cpp> -DHEADER=<include> -DFUNCTION=<name>
#         -P embed_text.cmake
#
# The bytes are written as a hex array, so no character of the text (tabs,
# quotes, UTF-8) needs escaping. The output is rewritten only when it changes.
foreach(var INPUT OUTPUT HEADER FUNCTION)
  if(NOT DEFINED ${var})
    message(FATAL_ERROR "embed_text.cmake: ${var} is not set")
  endif()
endforeach()

file(READ "${INPUT}" hex HEX)
string(LENGTH "${hex}" hex_length)
math(EXPR size "${hex_length} / 2")
# Sixteen bytes to a line keep the generated file readable in an editor.
string(REGEX REPLACE "([0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f])"
       "\\1\n" hex "${hex}")
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${hex}")

get_filename_component(input_name "${INPUT}" NAME)
set(content "// Generated at build time from ${input_name}; edit that file, not this one.
#include \"${HEADER}\"

namespace {
const unsigned char kBytes[] = {
${bytes}
0x00};
}  // namespace

std::string_view ${FUNCTION}() {
  return std::string_view(reinterpret_cast<const char*>(kBytes), ${size});
}
")

if(EXISTS "${OUTPUT}")
  file(READ "${OUTPUT}" old)
  if(old STREQUAL content)
    return()
  endif()
endif()
file(WRITE "${OUTPUT}" "${content}")
