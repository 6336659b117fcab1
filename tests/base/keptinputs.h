#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "base/basesupport.h"

namespace spectrane {

/// The inputs that fuzzing of a target begins with and what it once found; paths below the source folder.
inline std::vector<std::string> KeptInputs(const std::string& target) {
  const std::filesystem::path source = SPECTRANE_SOURCE;
  std::vector<std::string> inputs;
  for (const char* folder : {"fuzz/corpus", "fuzz/found"}) {
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator(source / folder / target, none))
      inputs.push_back(entry.path().lexically_relative(source).generic_string());
  }
  std::sort(inputs.begin(), inputs.end());
  return inputs;
}

/// Every kept input of a target through its check, and each of them cut at a third and doubled.
template <typename Check>
void ExpectKeptInputsRight(const std::string& target, Check check) {
  const std::vector<std::string> inputs = KeptInputs(target);
  ASSERT_FALSE(inputs.empty()) << target;
  for (const std::string& input : inputs) {
    const std::string whole = ReadBytes(std::string(SPECTRANE_SOURCE) + "/" + input);
    for (const std::string& bytes : {whole, whole.substr(0, whole.size() / 3), whole + whole}) {
      EXPECT_EQ(check({reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()}), "") << input;
    }
  }
}

}  // namespace spectrane
