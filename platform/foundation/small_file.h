#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

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
std::error_code make_private_folder(const std::filesystem::path& folder);

/// Puts a file of these bytes, for the user alone, in the place of what is there: through a temporary file in
/// the same folder, so that everybody else sees the old file or the new one. After an error the old one
/// stays.
std::error_code replace_file(const std::filesystem::path& file, std::string_view bytes);

/// Renames `file` to <file>.damaged, or <file>.damaged.2, .3 ... where that is taken.
std::error_code keep_aside(const std::filesystem::path& file);

/// Excludes other holders of a lock on the same lock file, in this process and in others.
///
/// A holder that hangs must not hang us: after about a second it is left at that, with a line in the log.
class FileLock {
 public:
  /// Makes the lock file when there is none. It stays.
  explicit FileLock(const std::filesystem::path& lock_file);
  ~FileLock();
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

 private:
  int descriptor_;
};

}  // namespace cocoa
