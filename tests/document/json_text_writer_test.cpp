// The one JSON text writer: how each class of character is spelled in the
// two fixed formats (project files and API replies), and where the commas
// go however values are nested or put in.
#include <gtest/gtest.h>

#include <cctype>
#include <utility>

#include "api/json_reply.h"
#include "document/json_text_writer.h"

namespace {

std::string projectText(std::string_view s) { return jsonAsciiString(s); }
std::string replyText(std::string_view s) { return TJsonReply().text(s).str(); }

struct TEscapeCase {
  const char* name;
  std::string input;
  std::string projectFile;
  std::string apiReply;
};

TEST(JsonTextEscapes, EachClassOfCharacterInBothFormats) {
  const TEscapeCase cases[] = {
      {"plain, slash kept", "a/b ~", R"("a/b ~")", R"("a/b ~")"},
      {"quote and backslash", "\"\\", R"("\"\\")", R"("\"\\")"},
      {"controls", std::string("\0\x1F", 2), R"("\u0000\u001F")", R"("\u0000\u001f")"},
      {"DEL", "x\x7Fy", R"("x\u007Fy")", "\"x\x7Fy\""},
      {"two bytes", "\xC2\x80\xDF\xBF", R"("\u0080\u07FF")", R"("\u0080\u07ff")"},
      {"three bytes", "\xE0\xA0\x80\xEF\xBF\xBF", R"("\u0800\uFFFF")", R"("\u0800\uffff")"},
      {"first beyond the basic plane", "\xF0\x90\x80\x80", R"("\uD800\uDC00")", R"("\ud800\udc00")"},
      {"last code point", "\xF4\x8F\xBF\xBF", R"("\uDBFF\uDFFF")", R"("\udbff\udfff")"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(projectText(c.input), c.projectFile) << c.name;
    EXPECT_EQ(replyText(c.input), c.apiReply) << c.name;
  }
}

TEST(JsonTextEscapes, EachBadByteBecomesOneReplacementAndTheRestIsReadAfresh) {
  const std::pair<std::string, std::string> cases[] = {
      {"\x80z", R"("\uFFFDz")"},                                    // stray continuation
      {"\xC1\xBF", R"("\uFFFD\uFFFD")"},                            // overlong two-byte lead
      {"\xE0\x9F\xBF", R"("\uFFFD\uFFFD\uFFFD")"},                  // overlong three bytes
      {"\xED\xA0\x80", R"("\uFFFD\uFFFD\uFFFD")"},                  // an encoded surrogate
      {"\xF4\x90\x80\x80", R"("\uFFFD\uFFFD\uFFFD\uFFFD")"},        // past U+10FFFF
      {"\xF5", R"("\uFFFD")"},                                      // never a lead byte
      {"\xE6\x97" "z", R"("\uFFFD\uFFFDz")"},                       // cut short by ASCII
      {"\xF0\x9F\x98", R"("\uFFFD\uFFFD\uFFFD")"},                  // cut short by the end
      {"\xC3\xE6\x97\xA5", R"("\uFFFD\u65E5")"},                    // a good one right after
  };
  for (const auto& [in, want] : cases) {
    EXPECT_EQ(projectText(in), want);
    std::string lower = want;
    for (char& ch : lower) ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
    EXPECT_EQ(replyText(in), lower);
  }
}

TEST(JsonTextWriter, CommasFollowNestingWhateverWritesTheValue) {
  TJsonTextWriter w;
  w.beginArray();
  w.beginArray();
  w.beginArray();
  w.endArray();
  w.endArray();
  w.beginObject();
  w.key("k");
  w.beginObject();
  w.endObject();
  w.key("l");
  w.beginArray();
  w.appendValue() += "1.5";
  w.appendValue() += R"({"x":[1,2]})";
  w.nullValue();
  w.endArray();
  w.endObject();
  w.appendValue() += "\"raw\"";
  w.stringValue("s");
  w.endArray();
  EXPECT_EQ(w.text(), R"([[[]],{"k":{},"l":[1.5,{"x":[1,2]},null]},"raw","s"])");

  // A key's value takes no comma, even when it is put in by hand.
  TJsonReply r;
  r.beginObject().key("a").appendValue() += "[]";
  r.key("b");
  r.appendValue() += "2";
  r.fieldSingle("c", 0.5f).endObject();
  EXPECT_EQ(r.str(), R"({"a":[],"b":2,"c":0.5})");
}

}  // namespace
