// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdlib>
#include <locale>
#include <memory>

#include <QApplication>

#include "platform/core/NumberText.h"
#include "platform/ui/WinApp.h"

// Window tests keep their settings in memory and show numbers with a point, unless a test sets the characters.
int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  QApplication::setApplicationName("tallyscope-tests");
  if (const char* name = std::getenv("TALLYSCOPE_LOCALE")) std::locale::global(std::locale(name));
  tallyscope::SetNumberCharacters({".", ","});
  tallyscope::SetProfile(std::make_unique<tallyscope::CMemoryProfile>());
  return RUN_ALL_TESTS();
}
