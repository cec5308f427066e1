#include "standalone/private/commands.h"

#include <vector>

namespace ondex {

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

std::string read_set(const std::vector<std::string_view>& words, Command& command) {
  if (words.size() != 3)
    return "set wants ID VALUE";
  return read_parameter_change(words[1], words[2], command.change);
}

std::string read_get(const std::vector<std::string_view>& words, Command& command) {
  if (words.size() != 2)
    return "get wants ID";
  return read_parameter_id(words[1], command.change.id);
}

/// A file's name may hold blanks: it is the rest of the line.
std::string read_screenshot(std::string_view line, Command& command) {
  const size_t name =
      line.find_first_not_of(blanks, line.find("screenshot") + std::string_view("screenshot").size());
  if (name == std::string_view::npos)
    return "screenshot wants the name of a file";
  command.file = std::string(line.substr(name, line.find_last_not_of(blanks) - name + 1));
  return {};
}

}  // namespace

std::string read_command(std::string_view line, Command& command) {
  const std::vector<std::string_view> words = words_of(line);
  if (words.empty())
    return {};
  std::string error;
  CommandKind kind = CommandKind::none;
  if (words[0] == "set") {
    kind = CommandKind::set;
    error = read_set(words, command);
  } else if (words[0] == "get") {
    kind = CommandKind::get;
    error = read_get(words, command);
  } else if (words[0] == "screenshot") {
    kind = CommandKind::screenshot;
    error = read_screenshot(line, command);
  } else if (words[0] == "list" || words[0] == "quit") {
    kind = words[0] == "list" ? CommandKind::list : CommandKind::quit;
    if (words.size() > 1)
      error = std::string(words[0]) + " wants nothing more";
  } else {
    error = "unknown command '" + std::string(words[0]) + "'";
  }
  if (error.empty())
    command.kind = kind;
  return error;
}

}  // namespace ondex
