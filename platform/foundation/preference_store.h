#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/property_list.h"

namespace cocoa {

/// Values by key in one file, which other processes read and write too.
///
/// Setting changes memory only; synchronize() carries the changed keys, and no others, into what the file
/// then holds. A file that cannot be read counts as empty and, with a line in the log, is kept aside when the
/// store is next written. Any thread.
class PreferenceStore {
 public:
  /// Larger files are not read nor written.
  static constexpr size_t kMaximumFileSize = size_t{1} << 20U;

  /// `locate` answers the file and is asked at each reading and writing; empty when there is no place for
  /// one: then values stay in memory.
  explicit PreferenceStore(std::function<std::filesystem::path()> locate);

  /// Nothing when there is none, or it is neither data nor text.
  std::optional<PropertyListValue> value(std::string_view key);
  /// Nothing removes the key. The value it has already, and removal of a key that is not there, change
  /// nothing.
  void setValue(std::string_view key, std::optional<PropertyListValue> value);
  /// Writes what has changed; false, with a line in the log, when it cannot, and the changes stay to be
  /// written. With nothing changed, only forgets what was read, so that the next reading is of the file.
  bool synchronize();

 private:
  struct Loaded {
    PropertyList list;
    /// Something stands in the file's place that is no store.
    bool is_damaged = false;
    bool is_unavailable = false;
  };
  static Loaded load(const std::filesystem::path& file);
  const PropertyList& loaded();
  bool write(const std::filesystem::path& file);

  const std::function<std::filesystem::path()> locate_;
  std::mutex mutex_;
  std::optional<PropertyList> loaded_;
  std::map<std::string, std::optional<PropertyListValue>, std::less<>> changed_;
};

}  // namespace cocoa
