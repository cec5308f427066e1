// SPDX-License-Identifier: MIT
#include "foundation/private/small_file.h"

#include <fcntl.h>
#include <stdlib.h>  // NOLINT(modernize-deprecated-headers): mkostemp is not in <cstdlib>'s namespace
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <thread>

#include "foundation/file_size_limit.h"

namespace cocoa {

namespace {

constexpr mode_t kFileForUserAlone = 0600;
constexpr mode_t kFolderForUserAlone = 0700;
constexpr std::chrono::milliseconds kBetweenLockTries(2);
constexpr int kMaximumKeptAside = 1000;
constexpr int kMaximumLinks = 40;
/// Between the file's name and six letters or digits. No editor's or user's own copy is called so.
constexpr std::string_view kTemporaryInfix = ".writing-";
constexpr std::string_view kTemporaryPlaces = "XXXXXX";

Failure failure_of(int error) {
  return {std::generic_category().message(error)};
}

SmallFile not_read(int error) {
  // ENXIO is a socket.
  const bool is_unusable = error == EACCES || error == ELOOP || error == ENXIO;
  return {.state = error == ENOENT ? SmallFile::State::kAbsent
                   : is_unusable   ? SmallFile::State::kUnusable
                                   : SmallFile::State::kUnavailable,
          .bytes = {},
          .cause = failure_of(error).cause};
}

SmallFile unusable(const char* cause) {
  return {.state = SmallFile::State::kUnusable, .bytes = {}, .cause = cause};
}

Result<void> write_all(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(descriptor, bytes.data(), bytes.size());
    if (count < 0 && errno != EINTR)
      return failure_of(errno);
    if (count > 0)
      bytes.remove_prefix(static_cast<size_t>(count));
  }
  return {};
}

/// The bytes are on the disk, not just on their way, before the file takes the name of the old one.
Result<void> write_to_disk(const UniqueFd& file, std::string_view bytes) {
  if (!may_make_file(bytes.size()))
    return failure_of(EFBIG);
  if (fchmod(file.get(), kFileForUserAlone) != 0)
    return failure_of(errno);
  if (Result<void> written = write_all(file.get(), bytes); !written)
    return written;
  return fsync(file.get()) == 0 ? Result<void>() : failure_of(errno);
}

/// Whether the temporary file is one that its writer has left behind: a living one keeps it locked.
bool is_abandoned(const std::filesystem::path& temporary) {
  const UniqueFd opened(open(temporary.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW | O_NOCTTY));
  struct stat status {};
  return opened && fstat(opened.get(), &status) == 0 && S_ISREG(status.st_mode) &&
         status.st_uid == geteuid() && flock(opened.get(), LOCK_EX | LOCK_NB) == 0;
}

bool is_temporary_of(std::string_view name, const std::string& file_name) {
  const std::string start = file_name + std::string(kTemporaryInfix);
  return name.size() == start.size() + kTemporaryPlaces.size() && name.starts_with(start) &&
         std::ranges::all_of(name.substr(start.size()), [](char c) {
           return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
         });
}

/// rename that fails where the new name is taken.
int rename_to_free_name(const char* from, const char* to) {
  const int result = renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE);
  if (result == 0 || errno != EINVAL)
    return result;
  // Some file systems do not know the flag.
  struct stat status {};
  if (lstat(to, &status) == 0) {
    errno = EEXIST;
    return -1;
  }
  return std::rename(from, to);
}

}  // namespace

SmallFile read_small_file(const std::filesystem::path& file, size_t limit) {
  // Without O_NONBLOCK, opening a pipe would wait for its writer.
  const UniqueFd opened(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat status {};
  if (!opened || fstat(opened.get(), &status) != 0)
    return not_read(errno);
  if (!S_ISREG(status.st_mode))
    return unusable("not a regular file");

  // The size is not believed: the file may grow meanwhile, or be one that tells none.
  SmallFile result{.state = SmallFile::State::kRead, .bytes = {}, .cause = {}};
  std::array<char, 16384> block{};
  while (result.bytes.size() <= limit) {
    const ssize_t count = read(opened.get(), block.data(), block.size());
    if (count < 0 && errno == EINTR)
      continue;
    if (count < 0)
      return not_read(errno);
    if (count == 0)
      return result;
    result.bytes.append(block.data(), static_cast<size_t>(count));
  }
  return unusable("too large");
}

Result<void> make_private_folder(const std::filesystem::path& folder) {
  if (mkdir(folder.c_str(), kFolderForUserAlone) == 0)
    return {};
  if (errno == ENOENT && folder.has_relative_path()) {
    if (Result<void> made = make_private_folder(folder.parent_path()); !made)
      return made;
    if (mkdir(folder.c_str(), kFolderForUserAlone) == 0)
      return {};
  }
  return errno == EEXIST ? Result<void>() : failure_of(errno);
}

std::filesystem::path followed_links(const std::filesystem::path& file) {
  std::filesystem::path followed = file;
  for (int links = 0; links < kMaximumLinks; ++links) {
    std::error_code error;
    const std::filesystem::path target = std::filesystem::read_symlink(followed, error);
    if (error)
      return followed;
    // A relative one begins in the folder of the link; an absolute one replaces all.
    followed = followed.parent_path() / target;
  }
  return file;
}

Result<void> replace_file(const std::filesystem::path& file, std::string_view bytes) {
  std::string temporary = file.string();
  temporary.append(kTemporaryInfix).append(kTemporaryPlaces);
  Result<void> written;
  {
    const UniqueFd opened(mkostemp(temporary.data(), O_CLOEXEC));
    if (!opened)
      return failure_of(errno);
    // Tells those who clear up that the file is being written. It goes with the process, however it ends.
    flock(opened.get(), LOCK_EX | LOCK_NB);
    written = write_to_disk(opened, bytes);
    if (written && std::rename(temporary.c_str(), file.c_str()) != 0)
      written = failure_of(errno);
  }
  if (!written) {
    unlink(temporary.c_str());
    return written;
  }
  // The new name itself is to outlast a power failure. Not every file system can promise it.
  const UniqueFd folder(open(file.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder)
    fsync(folder.get());
  return {};
}

void remove_abandoned_temporaries(const std::filesystem::path& file) {
  const std::string file_name = file.filename().string();
  std::error_code error;
  std::filesystem::directory_iterator entry(file.parent_path(), error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    const std::filesystem::path& path = entry->path();
    if (is_temporary_of(path.filename().string(), file_name) && is_abandoned(path))
      unlink(path.c_str());
  }
}

Result<std::filesystem::path> keep_aside(const std::filesystem::path& file) {
  const std::string name = file.string() + ".damaged";
  for (int number = 1; number <= kMaximumKeptAside; ++number) {
    const std::string kept = number == 1 ? name : name + "." + std::to_string(number);
    if (rename_to_free_name(file.c_str(), kept.c_str()) == 0)
      return std::filesystem::path(kept);
    if (errno != EEXIST)
      return failure_of(errno);
  }
  return failure_of(EEXIST);
}

FileLock::FileLock(const std::filesystem::path& lock_file, std::chrono::milliseconds patience)
    : descriptor_(open(lock_file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, kFileForUserAlone)) {
  if (!descriptor_) {
    error_ = errno;
    return;
  }
  using Time = std::chrono::steady_clock;
  const Time::time_point end = Time::now() + patience;
  while (flock(descriptor_.get(), LOCK_EX | LOCK_NB) != 0) {
    error_ = errno;
    // Sleeping once more would be too long.
    if (error_ != EWOULDBLOCK || Time::now() + kBetweenLockTries > end)
      return;
    std::this_thread::sleep_for(kBetweenLockTries);
  }
  error_ = 0;
}

FileLock::~FileLock() {
  // Closing alone would leave the lock with a child that was forked meanwhile.
  if (descriptor_ && isHeld())
    flock(descriptor_.get(), LOCK_UN);
}

bool FileLock::isHeldByAnother() const {
  return error_ == EWOULDBLOCK;
}

std::string FileLock::cause() const {
  return failure_of(error_).cause;
}

}  // namespace cocoa
