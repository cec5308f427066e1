// SPDX-License-Identifier: MIT
#include "foundation/private/preferences_location.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "foundation/private/small_file.h"

namespace cocoa {

namespace {

constexpr std::string_view kHexadecimal = "0123456789abcdef";

std::string account_home() {
  std::vector<char> buffer(16384);
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found || !found->pw_dir)
    return {};
  return found->pw_dir;
}

std::string host_name() {
  std::array<char, 256> name{};
  return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

std::string_view without_trailing_space(std::string_view text) {
  return text.substr(0, text.find_last_not_of(" \t\r\n") + 1);
}

bool is_machine_id(std::string_view text) {
  return text.size() == 32 &&
         std::ranges::all_of(text, [](char c) { return kHexadecimal.find(c) != std::string_view::npos; });
}

/// FNV-1a, 64 bits: half of the id is lost in it.
std::string hashed(std::string_view text) {
  uint64_t hash = 14695981039346656037U;
  for (const char c : text)
    hash = (hash ^ static_cast<uint8_t>(c)) * 1099511628211U;
  std::string digits;
  for (int shift = 60; shift >= 0; shift -= 4)
    digits += kHexadecimal[(hash >> shift) & 0xFU];
  return digits;
}

bool is_fit_for_file_names(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-' || c == '.';
}

}  // namespace

std::filesystem::path preferences_file() {
  const std::filesystem::path folder =
      configuration_folder(std::getenv("XDG_CONFIG_HOME"), std::getenv("HOME"), account_home().c_str());
  if (folder.empty())
    return {};
  const std::string id = preferences_host_id(read_small_file("/etc/machine-id", 4096).bytes, host_name());
  return folder / "ondex" / "ByHost" / ("GlobalPreferences." + id + ".plist");
}

std::filesystem::path configuration_folder(const char* xdg_config_home, const char* home,
                                           const char* account_home) {
  if (xdg_config_home && xdg_config_home[0] == '/')
    return xdg_config_home;
  for (const char* candidate : {home, account_home}) {
    if (candidate && candidate[0] == '/')
      return std::filesystem::path(candidate) / ".config";
  }
  return {};
}

std::string preferences_host_id(std::string_view machine_id, std::string_view host_name) {
  const std::string_view id = without_trailing_space(machine_id);
  if (is_machine_id(id))
    return hashed("ondex" + std::string(id));
  std::string name(host_name);
  std::ranges::replace_if(
      name, [](char c) { return !is_fit_for_file_names(c); }, '_');
  return name.empty() ? "UnknownHostID" : name;
}

}  // namespace cocoa
