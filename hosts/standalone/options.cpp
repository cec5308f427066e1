#include "standalone/options.h"

#include <string_view>

#include "standalone/private/values.h"

namespace ondex {

namespace {

constexpr double smallest_scale = 0.5;
constexpr double largest_scale = 4.0;

std::string read_scale(std::string_view text, Options& options) {
  const auto scale = float_from(text);
  if (!scale || *scale < smallest_scale || *scale > largest_scale) {
    return "--scale wants a number from 0.5 to 4, not '" + std::string(text) + "'";
  }
  options.scale = static_cast<double>(*scale);
  return {};
}

std::string read_change(std::string_view text, Options& options) {
  const size_t equals = text.find('=');
  if (equals == std::string_view::npos)
    return "--set wants ID=VALUE, not '" + std::string(text) + "'";
  ParameterChange change;
  std::string error = read_parameter_change(text.substr(0, equals), text.substr(equals + 1), change);
  if (!error.empty())
    return "--set " + std::string(text) + ": " + error;
  options.changes.push_back(change);
  return {};
}

std::string read_screenshot(std::string_view text, Options& options) {
  if (text.empty())
    return "--screenshot wants the name of a file";
  options.screenshot = std::string(text);
  return {};
}

std::string read_show(std::string_view text, Options& options) {
  constexpr std::string_view pop_up = "popup:";
  if (text.starts_with(pop_up)) {
    options.shown = Shown::entry;
    const std::string error = read_parameter_id(text.substr(pop_up.size()), options.entry_of);
    return error.empty() ? error : "--show " + std::string(text) + ": " + error;
  }
  if (text == "preferences") {
    options.shown = Shown::preferences;
  } else if (text == "colors") {
    options.shown = Shown::colors;
  } else {
    return "--show knows popup:ID, preferences and colors, not '" + std::string(text) + "'";
  }
  return {};
}

using Reader = std::string (*)(std::string_view text, Options& options);

Reader reader_of(std::string_view option) {
  if (option == "--screenshot")
    return read_screenshot;
  if (option == "--scale")
    return read_scale;
  if (option == "--set")
    return read_change;
  if (option == "--show")
    return read_show;
  return nullptr;
}

}  // namespace

std::string read_options(std::span<const char* const> arguments, Options& options) {
  for (size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    if (argument == "--help") {
      options.help = true;
    } else if (argument == "--version") {
      options.version = true;
    } else if (const Reader read = reader_of(argument)) {
      if (i + 1 == arguments.size())
        return std::string(argument) + " wants a value";
      if (std::string error = read(arguments[++i], options); !error.empty())
        return error;
    } else {
      return "unknown option '" + std::string(argument) + "'; try --help";
    }
  }
  if (options.shown != Shown::editor && !options.screenshot && !options.help && !options.version)
    return "--show goes with --screenshot";
  return {};
}

std::string help_text() {
  return R"(Usage: ondex [OPTION]...
Opens the Ondex editor in a window, bound to an effect instance of its own.

  --screenshot FILE.png  render the editor without any display, then exit
  --show THING           with --screenshot: popup:ID, the numeric entry of that parameter
                         open; preferences, the preferences window; or colors, its
                         colour panel
  --scale S              device pixels a point, 0.5 to 4 (otherwise the display's)
  --set ID=VALUE         change a parameter as a host does before the first picture;
                         may be given many times
  --help                 print this text
  --version              print the version

While it runs it reads commands from standard input, one a line:
  set ID VALUE           change a parameter as a host does
  get ID                 print "value ID VALUE"
  list                   print number, name, value, minimum and maximum of all parameters
  screenshot FILE.png    write a picture of the window
  quit                   end

Every change that is made in the editor is printed as "parameter ID VALUE".
)";
}

std::string version_text() {
  return "ondex " ONDEX_VERSION "\n";
}

}  // namespace ondex
