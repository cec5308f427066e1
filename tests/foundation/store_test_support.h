// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include "foundation/NSLog.h"
#include "temporary_folder.h"

namespace cocoa::store_tests {

using ondex::test::TemporaryFolder;

/// What this thread logs while it lives, a line a message.
class Logged {
 public:
  const std::string& text() const { return text_; }

 private:
  std::string text_;
  NSLogHook hook_{[this](std::string_view message) { (text_ += message) += '\n'; }};
};

inline std::string contents_of(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

inline void put(const std::filesystem::path& file, std::string_view contents) {
  std::filesystem::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << contents;
}

inline size_t count_of_files(const std::filesystem::path& folder) {
  return static_cast<size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

/// Starts a process that ends with the body's answer.
inline pid_t start_child(const std::function<int()>& body) {
  const pid_t child = fork();
  if (child == 0)
    _exit(body());
  return child;
}

/// What the process ended with; -1 when a signal or a sanitizer ended it.
inline int result_of_child(pid_t child) {
  int status = 0;
  if (waitpid(child, &status, 0) != child || !WIFEXITED(status))
    return -1;
  return WEXITSTATUS(status);
}

inline std::string plist(const std::string& entries) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
         "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
         "<plist version=\"1.0\">\n\t<dict>\n" +
         entries + "\t</dict>\n</plist>\n";
}

}  // namespace cocoa::store_tests
