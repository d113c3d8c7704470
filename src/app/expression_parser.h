// The small arithmetic language that every length field accepts: numbers,
// + - * / ^, brackets, SQRT( ) and SQR( ) of whole numbers. "12*3+4" in a
// box becomes 40.
//
// Its handling of unusual input is kept as it is, because callers rely on
// getting a number or an exception and nothing else: there is no unary minus
// except at the very start, a closing bracket writes out only one pending
// operator ("(1+2*3)" is 6), and SQR of a bracketed expression is left as
// text. Every failure (conversion, range, arithmetic) throws
// TExpressionError; nothing is caught inside.
#pragma once

#include <stdexcept>
#include <string>

class TExpressionError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class TExpressionParser {
 public:
  struct TNumberFormat {
    char DecimalSeparator = '.';
  };

  TExpressionParser(char ADecimalSeperator, int AMaxDecimals);

  // A text starting with "-" is read as "0-...": the only unary minus.
  double ParseExpressionToFloat(const std::string& Expression) const;
  // The value with at most FMaxDec decimals and no trailing zeros; no "0"
  // is added in front of a leading "-".
  std::string ParseExpressionToString(const std::string& Expression) const;

  TNumberFormat FFormat;
  char FDecimalSeperator;
  int FMaxDec;

  // Steps, open for tests: the text after "--" folding, blank removal and
  // function expansion, and its postfix form.
  std::string expandFunctions(const std::string& Expression) const;
  std::string toPostfix(const std::string& text) const;
  double evaluatePostfix(const std::string& postfix) const;

 private:
  double evaluate(const std::string& Expression) const;
  double readNumber(const std::string& token) const;
};
