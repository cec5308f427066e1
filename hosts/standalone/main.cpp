// SPDX-License-Identifier: MIT
#include <cstdio>
#include <string>

#include "foundation/visible_text.h"
#include "standalone/interactive.h"
#include "standalone/options.h"
#include "standalone/screenshot.h"
#include "standalone/standard_streams.h"

namespace {

constexpr int bad_usage = 2;

void print(FILE* file, const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), file);
}

}  // namespace

int main(int argc, char** argv) {
  if (!ondex::open_standard_streams())
    return 1;
  const cocoa::Result<ondex::Options> options = ondex::read_options({argv, static_cast<size_t>(argc)});
  if (!options) {
    print(stderr, "ondex: " + cocoa::visible_text(options.cause()) + "\n");
    return bad_usage;
  }
  if (options->help) {
    print(stdout, ondex::help_text());
    return 0;
  }
  if (options->version) {
    print(stdout, ondex::version_text());
    return 0;
  }
  return options->screenshot ? ondex::run_screenshot(*options) : ondex::run_interactive(*options);
}
