// SPDX-License-Identifier: MIT
#include "standalone/options.h"

#include <getopt.h>

#include <string_view>

#include "standalone/private/values.h"

namespace ondex {

using cocoa::Failure;
using cocoa::Result;

namespace {

constexpr double smallest_scale = 0.5;
constexpr double largest_scale = 4.0;

Result<void> read_scale(std::string_view text, Options& options) {
  const auto scale = float_from(text);
  if (!scale || *scale < smallest_scale || *scale > largest_scale)
    return Failure{"--scale wants a number from 0.5 to 4, not '" + std::string(text) + "'"};
  options.scale = static_cast<double>(*scale);
  return {};
}

Result<void> read_change(std::string_view text, Options& options) {
  const size_t equals = text.find('=');
  if (equals == std::string_view::npos)
    return Failure{"--set wants ID=VALUE, not '" + std::string(text) + "'"};
  const Result<ParameterChange> change =
      read_parameter_change(text.substr(0, equals), text.substr(equals + 1));
  if (!change)
    return Failure{"--set " + std::string(text) + ": " + change.cause()};
  options.changes.push_back(*change);
  return {};
}

Result<void> read_screenshot(std::string_view text, Options& options) {
  if (text.empty())
    return Failure{"--screenshot wants the name of a file"};
  options.screenshot = std::string(text);
  return {};
}

Result<void> read_show(std::string_view text, Options& options) {
  constexpr std::string_view pop_up = "popup:";
  if (text.starts_with(pop_up)) {
    const Result<unsigned> id = read_parameter_id(text.substr(pop_up.size()));
    if (!id)
      return Failure{"--show " + std::string(text) + ": " + id.cause()};
    options.shown = Shown::entry;
    options.entry_of = *id;
  } else if (text == "preferences") {
    options.shown = Shown::preferences;
  } else if (text == "colors") {
    options.shown = Shown::colors;
  } else {
    return Failure{"--show knows popup:ID, preferences and colors, not '" + std::string(text) + "'"};
  }
  return {};
}

/// What getopt_long answers for each option; those of one letter answer the letter.
enum : int { end_of_options = -1, no_value = ':', help = 'h', version = 256, screenshot, show, scale, set };

constexpr option long_options[] = {{"screenshot", required_argument, nullptr, screenshot},
                                   {"show", required_argument, nullptr, show},
                                   {"scale", required_argument, nullptr, scale},
                                   {"set", required_argument, nullptr, set},
                                   {"help", no_argument, nullptr, help},
                                   {"version", no_argument, nullptr, version},
                                   {}};

Result<void> read_option(int option, const char* argument, Options& options) {
  switch (option) {
    case screenshot:
      return read_screenshot(optarg, options);
    case show:
      return read_show(optarg, options);
    case scale:
      return read_scale(optarg, options);
    case set:
      return read_change(optarg, options);
    case help:
      options.help = true;
      return {};
    case version:
      options.version = true;
      return {};
    case no_value:
      return Failure{std::string(argument) + " wants a value"};
    default:
      return Failure{"unknown option '" + std::string(argument) + "'; try --help"};
  }
}

}  // namespace

Result<Options> read_options(std::span<char* const> arguments) {
  const int count = static_cast<int>(arguments.size());
  // It may move the pointers, but the texts stay.
  std::vector<char*> copy(arguments.begin(), arguments.end());
  copy.push_back(nullptr);
  Options options;
  // 0 begins anew. Operands are answered where they stand, and what is missing apart from what is unknown.
  optind = 0;
  for (int next = 1;; next = optind) {
    const int option = getopt_long(count, copy.data(), "-:h", long_options, nullptr);
    if (option == end_of_options)
      break;
    if (Result<void> read = read_option(option, copy[static_cast<size_t>(next)], options); !read)
      return read.failure();
  }
  if (optind < count)
    return Failure{"unknown option '" + std::string(copy[static_cast<size_t>(optind)]) + "'; try --help"};
  if (options.shown != Shown::editor && !options.screenshot && !options.help && !options.version)
    return Failure{"--show goes with --screenshot"};
  return options;
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
  -h, --help             print this text
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
