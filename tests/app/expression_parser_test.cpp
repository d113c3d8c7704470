// The arithmetic that length fields accept, with its settled quirks.
#include <gtest/gtest.h>

#include "app/expression_parser.h"

namespace {

double eval(const std::string& text) { return TExpressionParser('.', 2).ParseExpressionToFloat(text); }

TEST(ExpressionParser, PlainArithmeticAndPriorities) {
  EXPECT_DOUBLE_EQ(eval("5*3"), 15);
  EXPECT_DOUBLE_EQ(eval("1+2*3"), 7);
  EXPECT_DOUBLE_EQ(eval("(1+2)*3"), 9);
  EXPECT_DOUBLE_EQ(eval("10-4-3"), 3);
  EXPECT_DOUBLE_EQ(eval("120/3+2"), 42);
  EXPECT_DOUBLE_EQ(eval(" 12.5 * 2 "), 25);
  EXPECT_DOUBLE_EQ(eval("42"), 42);
  // The power is pushed, so it groups to the right.
  EXPECT_DOUBLE_EQ(eval("2^3^2"), 512);
}

TEST(ExpressionParser, MinusOnlyAtTheStartAndDoubleMinusFolds) {
  EXPECT_DOUBLE_EQ(eval("-5+3"), -2);
  EXPECT_DOUBLE_EQ(eval("1--2"), 3);
  EXPECT_THROW(eval("2*-3"), TExpressionError);
  // ParseExpressionToString puts no 0 in front.
  EXPECT_THROW(TExpressionParser('.', 2).ParseExpressionToString("-5+3"), TExpressionError);
}

TEST(ExpressionParser, ClosingBracketWritesOnlyOnePendingOperator) {
  // The "+" is lost at the bracket; the left-over "(" only drops the 1.
  EXPECT_DOUBLE_EQ(eval("(1+2*3)"), 6);
  EXPECT_EQ(TExpressionParser('.', 2).toPostfix("(1+2*3)"), "1 2 3 * ( ");
}

TEST(ExpressionParser, SquareRootAndSquareOfWholeNumbers) {
  EXPECT_DOUBLE_EQ(eval("SQRT(16)+1"), 5);
  EXPECT_DOUBLE_EQ(eval("sqrt(2)"), 1.41);
  EXPECT_DOUBLE_EQ(eval("SQRT(4*4)"), 4);
  EXPECT_THROW(eval("SQRT(2.5)"), TExpressionError);
  EXPECT_DOUBLE_EQ(eval("SQR(3)"), 9);
  EXPECT_DOUBLE_EQ(eval("2*SQR(3)"), 18);
  // An expression inside SQR stays as text; its bracket is read as a bracket.
  EXPECT_DOUBLE_EQ(eval("SQR(1+2)"), 3);
}

TEST(ExpressionParser, FailuresRaise) {
  EXPECT_THROW(eval(""), TExpressionError);
  EXPECT_THROW(eval("1/0"), TExpressionError);
  EXPECT_THROW(eval("1.2.3"), TExpressionError);
  EXPECT_THROW(eval("*"), TExpressionError);
  EXPECT_THROW(eval("SQRT(16"), TExpressionError);
  // Letters are skipped without ending the number.
  EXPECT_DOUBLE_EQ(eval("1x2"), 12);
}

TEST(ExpressionParser, StringResultHasAtMostMaxDecimals) {
  TExpressionParser p('.', 3);
  EXPECT_EQ(p.ParseExpressionToString("10/4"), "2.5");
  EXPECT_EQ(p.ParseExpressionToString("2/3"), ".667");
  EXPECT_EQ(p.ParseExpressionToString("8/2"), "4");
  EXPECT_EQ(TExpressionParser(',', 2).ParseExpressionToFloat("1,5*2"), 3);
}

}  // namespace
