// SPDX-License-Identifier: MIT
#include "files/XMLText.h"

#include <algorithm>
#include <array>

namespace tallyscope {

namespace {

struct Entity {
  char character;
  std::string_view name;
};

constexpr std::array<Entity, 5> kEntities{
    {{'&', "&amp;"}, {'>', "&gt;"}, {'<', "&lt;"}, {'"', "&quot;"}, {'\'', "&apos;"}}};

constexpr unsigned kNoCharacter = 0xfffd;
constexpr unsigned kLastCharacter = 0x10ffff;

void AppendUtf8(CString& text, unsigned code) {
  if (code == 0 || code > kLastCharacter || (code >= 0xd800 && code <= 0xdfff)) code = kNoCharacter;
  const auto add = [&text](unsigned byte) { text += static_cast<char>(byte); };
  if (code < 0x80) return add(code);
  if (code < 0x800) {
    add(0xc0 | code >> 6);
  } else {
    if (code < 0x10000) {
      add(0xe0 | code >> 12);
    } else {
      add(0xf0 | code >> 18);
      add(0x80 | (code >> 12 & 0x3f));
    }
    add(0x80 | (code >> 6 & 0x3f));
  }
  add(0x80 | (code & 0x3f));
}

int DigitOf(char character, int base) {
  if (character >= '0' && character <= '9') return character - '0';
  if (base == 16 && character >= 'a' && character <= 'f') return character - 'a' + 10;
  if (base == 16 && character >= 'A' && character <= 'F') return character - 'A' + 10;
  return -1;
}

// Takes a reference such as "&#65;" from the front of `text`. False, with nothing taken, if there is none.
bool TakeReference(std::string_view& text, CString& decoded) {
  if (!text.starts_with("&#")) return false;
  std::size_t at = 2;
  const int base = text.size() > at && (text[at] == 'x' || text[at] == 'X') ? 16 : 10;
  if (base == 16) ++at;
  const std::size_t digits = at;
  unsigned code = 0;
  for (int digit = 0; at < text.size() && (digit = DigitOf(text[at], base)) >= 0; ++at) {
    code = std::min(code * static_cast<unsigned>(base) + static_cast<unsigned>(digit), kLastCharacter + 1);
  }
  if (at == digits) return false;
  AppendUtf8(decoded, code);
  text.remove_prefix(std::min(at + 1, text.size()));  // the semicolon too
  return true;
}

bool TakeEntity(std::string_view& text, CString& decoded) {
  for (const Entity& entity : kEntities) {
    if (!text.starts_with(entity.name)) continue;
    decoded += entity.character;
    text.remove_prefix(entity.name.size());
    return true;
  }
  return false;
}

}  // namespace

CString EncodeXml(std::string_view text) {
  CString encoded;
  encoded.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto* const entity =
        std::find_if(kEntities.begin(), kEntities.end(), [&](const Entity& e) { return e.character == text[i]; });
    const bool reference = text[i] == '&' && i + 1 < text.size() && text[i + 1] == '#';
    if (entity == kEntities.end() || reference) {
      encoded += text[i];
    } else {
      encoded += entity->name;
    }
  }
  return encoded;
}

CString DecodeXml(std::string_view text) {
  CString decoded;
  decoded.reserve(text.size());
  while (!text.empty()) {
    if (text[0] == '&' && (TakeReference(text, decoded) || TakeEntity(text, decoded))) continue;
    const auto next = std::min(text.find('&', 1), text.size());
    decoded += text.substr(0, next);
    text.remove_prefix(next);
  }
  return decoded;
}

}  // namespace tallyscope
