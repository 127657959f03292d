// Byte-for-byte comparison of a writer's output with a golden file under tests/golden/.
//
// On a mismatch the failure names the golden file and the first line that differs, and shows both
// lines with carriage returns, tabs and other unprintable bytes made visible. The actual output
// is kept beside the test program (golden-actual/<name>) for diffing.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace railwright::testing {

// `name` is relative to tests/golden/, such as "msts/steam.eng".
::testing::AssertionResult MatchesGolden(std::string_view actual, const std::string& name);

// The golden file's bytes; empty when it cannot be read.
std::string ReadGolden(const std::string& name);

}  // namespace railwright::testing
