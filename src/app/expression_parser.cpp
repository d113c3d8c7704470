#include "app/expression_parser.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <vector>

#include "app/length_format.h"

namespace {

struct TOperatorRow {
  char op;
  int priority;
  int opClass;
};

// The operator table: character, priority, class.
constexpr TOperatorRow kOperators[] = {
    {'^', 4, 2}, {'*', 3, 1}, {'/', 3, 1}, {'+', 2, 1}, {'-', 2, 1}, {'(', 1, 0}, {')', 1, 0},
};

int priorityOf(char op) {
  for (const auto& row : kOperators)
    if (row.op == op) return row.priority;
  throw TExpressionError("Invalid operator!");
}

bool isOperatorChar(char c) {
  for (const auto& row : kOperators)
    if (row.op == c) return true;
  return false;
}

void replaceAll(std::string& s, const std::string& from, const std::string& to) {
  size_t pos = 0;
  while ((pos = s.find(from, pos)) != std::string::npos) {
    s.replace(pos, from.size(), to);
    pos += to.size();
  }
}

// The text between the bracket that follows `from` and its partner.
std::string balancedArgument(const std::string& s, size_t from) {
  const size_t open = s.find('(', from);
  if (open == std::string::npos) throw TExpressionError("'(' expected");
  int depth = 0;
  for (size_t i = open; i < s.size(); ++i) {
    if (s[i] == '(') ++depth;
    else if (s[i] == ')' && --depth == 0) return s.substr(open + 1, i - open - 1);
  }
  throw TExpressionError("')' expected");
}

// Whole-number reading: a decimal point or anything else is a failure.
long long readWholeNumber(const std::string& text) {
  const char* first = text.data();
  const char* last = first + text.size();
  if (first != last && *first == '+') ++first;
  long long v = 0;
  const auto res = std::from_chars(first, last, v);
  if (first == last || res.ec != std::errc() || res.ptr != last)
    throw TExpressionError("'" + text + "' is not a valid integer value");
  if (v < INT32_MIN || v > INT32_MAX) throw TExpressionError("'" + text + "' is out of range");
  return v;
}

double checked(double v) {
  if (!std::isfinite(v)) throw TExpressionError("Invalid floating point operation");
  return v;
}

}  // namespace

TExpressionParser::TExpressionParser(char ADecimalSeperator, int AMaxDecimals)
    : FDecimalSeperator(ADecimalSeperator), FMaxDec(AMaxDecimals) {
  FFormat.DecimalSeparator = FDecimalSeperator;
}

double TExpressionParser::ParseExpressionToFloat(const std::string& Expression) const {
  if (!Expression.empty() && Expression[0] == '-') return evaluate("0" + Expression);
  return evaluate(Expression);
}

std::string TExpressionParser::ParseExpressionToString(const std::string& Expression) const {
  return formatOptionalDecimals(evaluate(Expression), FMaxDec);
}

double TExpressionParser::evaluate(const std::string& Expression) const {
  return evaluatePostfix(toPostfix(expandFunctions(Expression)));
}

std::string TExpressionParser::expandFunctions(const std::string& Expression) const {
  std::string s = Expression;
  replaceAll(s, "--", "+");
  std::string compact;
  for (char c : s)
    if (c != ' ') compact += c;
  s.clear();
  for (char c : compact) s += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));

  // SQRT first: the call's own text, with its argument as written, is
  // replaced by the root.
  size_t pos = s.find("SQRT");
  while (pos != std::string::npos) {
    const std::string arg = balancedArgument(s, pos + 4);
    std::string value = arg;
    if (arg.find_first_of("^*/+-()") != std::string::npos) value = ParseExpressionToString(arg);
    const long long n = readWholeNumber(value);
    const std::string root = formatOptionalDecimals(checked(std::sqrt(double(n))), FMaxDec);
    const std::string call = "SQRT(" + arg + ")";
    const size_t at = s.find(call, pos);
    if (at != std::string::npos) s.replace(at, call.size(), root);
    pos = s.find("SQRT", pos + 1);
  }
  // Then SQR. Its text to replace is built from the evaluated argument, so
  // a call with an expression inside stays and its bracket is read as a
  // plain bracket.
  pos = s.find("SQR");
  while (pos != std::string::npos) {
    const std::string arg = balancedArgument(s, pos + 3);
    std::string value = arg;
    if (arg.find_first_of("^*/+-()") != std::string::npos) value = ParseExpressionToString(arg);
    const long long n = readWholeNumber(value);
    const std::string square = std::to_string(static_cast<int32_t>(n * n));
    const std::string call = "SQR(" + value + ")";
    const size_t at = s.find(call, pos);
    if (at != std::string::npos) s.replace(at, call.size(), square);
    pos = s.find("SQR", pos + 1);
  }
  return s;
}

std::string TExpressionParser::toPostfix(const std::string& text) const {
  std::string out;
  std::string number;
  std::vector<char> stack;  // back is the top
  for (char c : text) {
    if (std::isdigit(static_cast<unsigned char>(c)) || c == '.' || c == FDecimalSeperator) {
      number += c;
      continue;
    }
    if (!isOperatorChar(c)) continue;  // skipped, the number goes on
    if (!number.empty()) {
      out += number + " ";
      number.clear();
    }
    if (c == ')') {
      // Writes the top and drops the entry under it too: one pending
      // operator only.
      if (!stack.empty()) {
        out += std::string(1, stack.back()) + " ";
        stack.pop_back();
      }
      if (!stack.empty()) stack.pop_back();
    } else if (c == '(' || c == '^' || stack.empty()) {
      stack.push_back(c);
    } else if (priorityOf(stack.back()) < priorityOf(c)) {
      stack.push_back(c);
    } else {
      out += std::string(1, stack.back()) + " ";
      stack.pop_back();
      stack.push_back(c);
    }
  }
  if (!number.empty()) out += number + " ";
  while (!stack.empty()) {
    out += std::string(1, stack.back()) + " ";
    stack.pop_back();
  }
  return out;
}

double TExpressionParser::readNumber(const std::string& token) const {
  std::string t = token;
  if (FFormat.DecimalSeparator != '.')
    for (char& ch : t)
      if (ch == FFormat.DecimalSeparator) ch = '.';
  double v = 0;
  const char* first = t.data();
  const char* last = first + t.size();
  const auto res = std::from_chars(first, last, v);
  if (first == last || res.ec != std::errc() || res.ptr != last)
    throw TExpressionError("'" + token + "' is not a valid floating point value");
  return v;
}

double TExpressionParser::evaluatePostfix(const std::string& postfix) const {
  std::vector<std::string> tokens;
  size_t start = 0;
  while (start <= postfix.size()) {
    const size_t blank = postfix.find(' ', start);
    const size_t end = blank == std::string::npos ? postfix.size() : blank;
    tokens.push_back(postfix.substr(start, end - start));
    if (blank == std::string::npos) break;
    start = blank + 1;
  }
  // Entry 0 is the top of the stack.
  std::vector<double> stack;
  auto at = [&stack](size_t i) -> double& {
    if (i >= stack.size()) throw TExpressionError("List index out of bounds");
    return stack[i];
  };
  stack.insert(stack.begin(), readNumber(tokens.front()));
  for (size_t i = 1; i < tokens.size(); ++i) {
    const std::string& tok = tokens[i];
    if (tok.empty()) continue;
    if (std::isdigit(static_cast<unsigned char>(tok[0]))) {
      stack.insert(stack.begin(), readNumber(tok));
      continue;
    }
    const double b = at(0);
    const double a = at(1);
    switch (tok[0]) {
      case '+': at(0) = checked(a + b); break;
      case '-': at(0) = checked(a - b); break;
      case '*': at(0) = checked(a * b); break;
      case '/':
        if (b == 0.0) throw TExpressionError("Floating point division by zero");
        at(0) = checked(a / b);
        break;
      case '^': at(0) = checked(std::pow(a, b)); break;
      default: break;  // a left-over bracket only drops the entry below
    }
    stack.erase(stack.begin() + 1);
  }
  return at(0);
}
