#include <gtest/gtest.h>

#include "document/path_data.h"

TEST(PathData, Placeholder) { EXPECT_TRUE(TPathData().isEmpty()); }
