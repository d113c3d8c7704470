// The reply writer and the request readers every endpoint shares.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "api/api_request.h"
#include "api/doc_endpoints.h"
#include "api/json_reply.h"

TEST(JsonReply, SinglesAreWidenedAndAlwaysLookLikeFloats) {
  const auto one = [](float v) { return TJsonReply().single(v).str(); };
  EXPECT_EQ(one(12.3f), "12.3000001907349");
  EXPECT_EQ(one(10.0f), "10.0");
  EXPECT_EQ(one(-0.0f), "0.0");
  EXPECT_EQ(one(1e-7f), "1.0000000116861E-7");
  EXPECT_EQ(one(3e20f), "3.00000006012263E20");
  EXPECT_EQ(one(std::numeric_limits<float>::quiet_NaN()), "null");
  EXPECT_EQ(one(-std::numeric_limits<float>::infinity()), "null");
  EXPECT_EQ(TJsonReply().integer(2147483647).str(), "2147483647");
}

TEST(ViewportNumbers, UpToThreeDecimalsRoundedHalfAwayFromZero) {
  EXPECT_EQ(formatUpTo3Decimals(10), "10");
  EXPECT_EQ(formatUpTo3Decimals(7.3f), "7.3");
  EXPECT_EQ(formatUpTo3Decimals(-5), "-5");
  EXPECT_EQ(formatUpTo3Decimals(0.1234), "0.123");
  EXPECT_EQ(formatUpTo3Decimals(2.0005), "2.001");
  EXPECT_EQ(formatUpTo3Decimals(-2.0005), "-2.001");
  EXPECT_EQ(formatUpTo3Decimals(9.9996), "10");
  EXPECT_EQ(formatUpTo3Decimals(999.9999), "1000");
  EXPECT_EQ(formatUpTo3Decimals(0.25), "0.25");
  EXPECT_EQ(formatUpTo3Decimals(-0.0004), "0");
  EXPECT_EQ(formatUpTo3Decimals(0.0), "0");
  EXPECT_EQ(formatUpTo3Decimals(123456789.0), "123456789");
}

TEST(ApiRequest, NumbersAndWholeNumbers) {
  const TJson obj = TJson::parse(R"({"i":3,"f":-2.5,"s":"4","b":true,"n":null,"big":1e40})");
  EXPECT_EQ(requireNumber(obj, "i"), 3.0);
  EXPECT_EQ(requireNumber(obj, "f"), -2.5);
  for (const char* k : {"s", "b", "n", "missing"}) EXPECT_THROW(requireNumber(obj, k), TApiRequestError) << k;
  EXPECT_THROW(requirePoint(obj, "big", "i"), TApiRangeError);

  const auto whole = [](const char* text) { return wholeNumber(TJson::parse(text)); };
  EXPECT_EQ(whole("7"), 7);
  EXPECT_EQ(whole("-2147483648"), std::numeric_limits<int>::min());
  EXPECT_EQ(whole("4.0"), 4);
  EXPECT_FALSE(whole("2147483648"));
  EXPECT_FALSE(whole("18446744073709551615"));
  EXPECT_FALSE(whole("4.5"));
  EXPECT_FALSE(whole("\"4\""));
  EXPECT_FALSE(whole("1e300"));
}
