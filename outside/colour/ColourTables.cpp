// SPDX-License-Identifier: MIT
#include "outside/colour/ColourTables.h"

#include "outside/colour/Hsl.h"

namespace tallyscope {

namespace {

constexpr int kColours = 256;
constexpr COLORREF kBlue = RGB(0, 0, 255);
constexpr COLORREF kRed = RGB(255, 0, 0);

constexpr COLORREF kViridis[] = {RGB(0x44, 0x01, 0x54), RGB(0x47, 0x2d, 0x7b), RGB(0x3b, 0x52, 0x8b),
                                 RGB(0x2c, 0x72, 0x8e), RGB(0x21, 0x91, 0x8c), RGB(0x28, 0xae, 0x80),
                                 RGB(0x5e, 0xc9, 0x62), RGB(0xad, 0xdc, 0x30), RGB(0xfd, 0xe7, 0x25)};
constexpr int kPieces = static_cast<int>(std::size(kViridis)) - 1;

double Between(double from, double to, double part) {
  return from + (to - from) * part;
}

}  // namespace

std::vector<COLORREF> MakeBlueToRed() {
  const Hsl low = ToHsl(ToRgb(kBlue));
  const Hsl high = ToHsl(ToRgb(kRed));
  std::vector<COLORREF> table;
  for (int i = 0; i < kColours; ++i) {
    const double part = i / 255.0;
    table.push_back(
        ToColorRef(ToRgb(Hsl{Between(low.hue, high.hue, part), Between(low.saturation, high.saturation, part),
                             Between(low.lightness, high.lightness, part)})));
  }
  return table;
}

std::vector<COLORREF> MakePerceptual() {
  std::vector<COLORREF> table;
  for (int i = 0; i < kColours; ++i) {
    const double at = i / 255.0 * kPieces;
    const int piece = at >= kPieces ? kPieces - 1 : static_cast<int>(at);
    const Rgb low = ToRgb(kViridis[piece]);
    const Rgb high = ToRgb(kViridis[piece + 1]);
    const double part = at - piece;
    table.push_back(ToColorRef(Rgb{Between(low.red, high.red, part), Between(low.green, high.green, part),
                                   Between(low.blue, high.blue, part)}));
  }
  return table;
}

}  // namespace tallyscope
