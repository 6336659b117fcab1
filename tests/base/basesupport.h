#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>

namespace spectrane {

/// The name of a table row, for INSTANTIATE_TEST_SUITE_P.
template <typename Row>
std::string NameOfRow(const testing::TestParamInfo<Row>& row) {
  return row.param.Name;
}

/// An empty folder of the running test's own, gone with this object.
class TemporaryFolder {
 public:
  /// Below the usual place for temporary files, or below `root`.
  explicit TemporaryFolder(const std::string& root = testing::TempDir()) {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    std::string name =
        std::string(test->test_suite_name()) + "-" + test->name() + "-" + std::to_string(::getpid());
    for (char& c : name) {
      if (c == '/') c = '-';
    }
    path_ = std::filesystem::path(root) / name;
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  ~TemporaryFolder() {
    std::error_code fault;
    std::filesystem::remove_all(path_, fault);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string Path() const { return path_.string(); }
  std::string Path(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

/// Names in a folder, hidden ones included.
inline std::size_t NamesIn(const std::string& folder) {
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

inline void WriteBytes(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}
inline std::string ReadBytes(const std::string& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}

/// Sets an environment variable (null: removes it) as long as this object lives.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const char* value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old;
    Put(value);
  }
  ~ScopedVariable() { Put(old_ ? old_->c_str() : nullptr); }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  void Put(const char* value) const { value == nullptr ? ::unsetenv(name_) : ::setenv(name_, value, 1); }

  const char* name_;
  std::optional<std::string> old_;
};

}  // namespace spectrane
