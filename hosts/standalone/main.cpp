#include <cstdio>
#include <string>

#include "standalone/interactive.h"
#include "standalone/options.h"
#include "standalone/screenshot.h"

namespace {

constexpr int bad_usage = 2;

void print(FILE* file, const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), file);
}

}  // namespace

int main(int argc, char** argv) {
  ondex::Options options;
  const std::span<const char* const> arguments(argv, static_cast<size_t>(argc));
  const std::string error = ondex::read_options(arguments.subspan(argc > 0 ? 1 : 0), options);
  if (!error.empty()) {
    print(stderr, "ondex: " + error + "\n");
    return bad_usage;
  }
  if (options.help) {
    print(stdout, ondex::help_text());
    return 0;
  }
  if (options.version) {
    print(stdout, ondex::version_text());
    return 0;
  }
  return options.screenshot ? ondex::run_screenshot(options) : ondex::run_interactive(options);
}
