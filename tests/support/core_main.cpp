// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdlib>
#include <locale>

// The suite runs in the C locale and once more in the one that TALLYSCOPE_LOCALE names. A locale that is not installed
// throws: no silent pass.
int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (const char* name = std::getenv("TALLYSCOPE_LOCALE")) std::locale::global(std::locale(name));
  return RUN_ALL_TESTS();
}
