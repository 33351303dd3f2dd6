// SPDX-License-Identifier: MIT
// Runs a fuzzer's entry over the files of a folder, and over each file cut at every length up to a limit.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
  constexpr std::size_t kCuts = 500;
  if (argc < 2) return 2;
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    std::printf("%s\n", entry.path().filename().c_str());
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    for (std::size_t size = 0; size < std::min(bytes.size(), kCuts); ++size) {
      const std::vector<std::uint8_t> cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
      LLVMFuzzerTestOneInput(cut.data(), cut.size());
    }
    ++files;
  }
  std::printf("%d files\n", files);
  return files > 0 ? 0 : 1;
}
