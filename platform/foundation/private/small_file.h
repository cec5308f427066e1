// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

#include "foundation/Result.h"
#include "foundation/UniqueFd.h"

/// Files that are read and replaced as a whole, among processes that do the same.

namespace cocoa {

struct SmallFile {
  enum class State {
    kRead,
    kAbsent,
    /// What stands there is no file of ours to read: not a regular file, too large, or forbidden.
    kUnusable,
    /// The file cannot be reached at present; it may be sound.
    kUnavailable,
  };
  State state = State::kAbsent;
  std::string bytes;
  /// For the log, when the file was not read.
  std::string cause;
};

/// Reads a regular file of at most `limit` bytes. Never waits, whatever stands there.
SmallFile read_small_file(const std::filesystem::path& file, size_t limit);

/// Makes the folder and those above it that are missing, for the user alone.
Result<void> make_private_folder(const std::filesystem::path& folder);

/// What `file` stands for: where its symbolic links lead, whether or not anything is there. `file` itself
/// when it is no link, or links lead round in a circle.
std::filesystem::path followed_links(const std::filesystem::path& file);

/// Puts a file of these bytes, for the user alone, in the place of what is there: through a temporary file in
/// the same folder, so that everybody else sees the old file or the new one. After a failure the old one
/// stays.
Result<void> replace_file(const std::filesystem::path& file, std::string_view bytes);

/// Removes the temporary files that processes killed in replace_file(file, ...) have left behind. One that
/// somebody is writing stays.
void remove_abandoned_temporaries(const std::filesystem::path& file);

/// Renames `file` to <file>.damaged, or <file>.damaged.2, .3 ... where that is taken; the result is the new
/// name.
Result<std::filesystem::path> keep_aside(const std::filesystem::path& file);

/// Excludes other holders of a lock on the same lock file, in this process and in others, once it is held.
class FileLock {
 public:
  /// Makes the lock file when there is none; it stays. Waits no longer than `patience` for another holder.
  FileLock(const std::filesystem::path& lock_file, std::chrono::milliseconds patience);
  ~FileLock();
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

  bool isHeld() const { return error_ == 0; }
  bool isHeldByAnother() const;
  /// Why it is not held, for the log.
  std::string cause() const;

 private:
  UniqueFd descriptor_;
  int error_ = 0;
};

}  // namespace cocoa
