// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/core/Profile.h"

namespace tallyscope {

// The profile that windows keep their settings in: the desktop's, under the application's name, until a host or a test
// sets another.
CProfile& GetProfile();
void SetProfile(std::unique_ptr<CProfile> profile);  // null: the desktop's again

// The profile on QSettings.
std::unique_ptr<CProfile> MakeSettingsProfile();

}  // namespace tallyscope
