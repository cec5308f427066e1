// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>

#include <filesystem>
#include <string>

namespace ondex::test {

/// A folder of its own that goes with everything in it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "ondex-test-XXXXXX").string();
    if (const char* made = mkdtemp(name.data()))
      path_ = made;
  }
  ~TemporaryFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

/// A preference store of the test's own, empty at first, for as long as it lives.
class OwnPreferences {
 public:
  OwnPreferences() {
    if (const char* before = getenv("XDG_CONFIG_HOME"))
      before_ = before;
    setenv("XDG_CONFIG_HOME", folder_.path().c_str(), 1);
  }
  ~OwnPreferences() { setenv("XDG_CONFIG_HOME", before_.c_str(), 1); }
  OwnPreferences(const OwnPreferences&) = delete;
  OwnPreferences& operator=(const OwnPreferences&) = delete;

 private:
  TemporaryFolder folder_;
  std::string before_;
};

}  // namespace ondex::test
