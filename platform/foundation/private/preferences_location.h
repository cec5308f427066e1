// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// Where the current user's preferences for any application on this host are kept:
/// <folder>/ondex/ByHost/GlobalPreferences.<host>.plist, where <folder> is $XDG_CONFIG_HOME or ~/.config.

namespace cocoa {

/// The file by the environment of now; empty when the user has no folder at all.
std::filesystem::path preferences_file();

/// The user's folder of settings: the first of $XDG_CONFIG_HOME, $HOME/.config and .config in the home of the
/// user's account that is named and absolute (relative ones must be ignored); empty when none is. Null is no
/// name.
std::filesystem::path configuration_folder(const char* xdg_config_home, const char* home,
                                           const char* account_home);

/// A name for the host that stays the same and is fit for a file name: from the machine's id (32 hexadecimal
/// digits, which are not to be told to others: only a hash is), else the host's name, else "UnknownHostID".
std::string preferences_host_id(std::string_view machine_id, std::string_view host_name);

}  // namespace cocoa
