// SPDX-License-Identifier: MIT
#include "standalone/private/commands.h"

#include <vector>

namespace ondex {

using cocoa::Failure;
using cocoa::Result;

namespace {

constexpr std::string_view blanks = " \t";

std::vector<std::string_view> words_of(std::string_view line) {
  std::vector<std::string_view> words;
  while (true) {
    const size_t begin = line.find_first_not_of(blanks);
    if (begin == std::string_view::npos)
      return words;
    line.remove_prefix(begin);
    const size_t length = std::min(line.find_first_of(blanks), line.size());
    words.push_back(line.substr(0, length));
    line.remove_prefix(length);
  }
}

Result<Command> read_set(const std::vector<std::string_view>& words) {
  if (words.size() != 3)
    return Failure{"set wants ID VALUE"};
  const Result<ParameterChange> change = read_parameter_change(words[1], words[2]);
  if (!change)
    return change.failure();
  return Command{CommandKind::set, *change, {}};
}

Result<Command> read_get(const std::vector<std::string_view>& words) {
  if (words.size() != 2)
    return Failure{"get wants ID"};
  const Result<unsigned> id = read_parameter_id(words[1]);
  if (!id)
    return id.failure();
  return Command{CommandKind::get, {*id, 0}, {}};
}

/// A file's name may hold blanks: it is the rest of the line.
Result<Command> read_screenshot(std::string_view line) {
  const size_t name =
      line.find_first_not_of(blanks, line.find("screenshot") + std::string_view("screenshot").size());
  if (name == std::string_view::npos)
    return Failure{"screenshot wants the name of a file"};
  const std::string_view file = line.substr(name, line.find_last_not_of(blanks) - name + 1);
  return Command{CommandKind::screenshot, {}, std::string(file)};
}

}  // namespace

Result<Command> read_command(std::string_view line) {
  const std::vector<std::string_view> words = words_of(line);
  if (words.empty())
    return Command();
  if (words[0] == "set")
    return read_set(words);
  if (words[0] == "get")
    return read_get(words);
  if (words[0] == "screenshot")
    return read_screenshot(line);
  if (words[0] != "list" && words[0] != "quit")
    return Failure{"unknown command '" + std::string(words[0]) + "'"};
  if (words.size() > 1)
    return Failure{std::string(words[0]) + " wants nothing more"};
  return Command{words[0] == "list" ? CommandKind::list : CommandKind::quit, {}, {}};
}

}  // namespace ondex
