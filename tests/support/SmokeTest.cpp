#include <gtest/gtest.h>

#include "support/SupportingFunctions.h"

namespace railwright::support {
namespace {

TEST(SplitExtension, SplitsAtTheLastDotOfTheFileName) {
    EXPECT_EQ(SplitExtension("texture.tga"), (SplitName{"texture", "tga"}));
    EXPECT_EQ(SplitExtension("folder.v2\\texture"), (SplitName{"folder.v2\\texture", ""}));
    EXPECT_EQ(SplitExtension("a.b.ace"), (SplitName{"a.b", "ace"}));
    EXPECT_EQ(SplitExtension("noextension"), (SplitName{"noextension", ""}));
}

}  // namespace
}  // namespace railwright::support
