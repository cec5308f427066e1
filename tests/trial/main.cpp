// SPDX-License-Identifier: MIT
// ondex-trial: tries seed after seed, for as long as one likes, or what a fuzzer has found.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <limits>
#include <vector>

#include "build_paths.h"
#include "trace.h"
#include "trial.h"

using namespace ondex::trial;

// As in tests/leak_sanitizer.supp. The sanitizer, a shared library, asks for it by name: the name must be
// visible.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
  return "leak:libfontconfig\n";
}

namespace {

constexpr const char* help =
    "usage: ondex-trial [editor|lv2] [--seed FIRST] [--seeds COUNT] [--minutes M] [--keep-going]\n"
    "       ondex-trial editor|lv2 --bytes FILE\n"
    "Tries the seeds from FIRST (0) on, COUNT of them or until M minutes are over, in the world of that name "
    "or in\n"
    "both. The first fault ends it, unless it is to keep going, and is told together with what was done "
    "before.\n"
    "--bytes replays an input of the fuzzer of that world.\n";

constexpr unsigned longest_trial = 60;  // seconds

struct Options {
  bool worlds[2] = {true, true};
  uint64_t first = 0;
  uint64_t count = std::numeric_limits<uint64_t>::max();
  double minutes = std::numeric_limits<double>::infinity();
  const char* bytes = nullptr;
  bool keeps_going = false;
};

bool read(int argc, char** argv, Options& options) {
  for (int i = 1; i < argc; ++i) {
    const auto is = [&](const char* name) { return std::strcmp(argv[i], name) == 0; };
    const char* const value = i + 1 < argc ? argv[i + 1] : nullptr;
    if (is("editor") || is("lv2")) {
      options.worlds[is("editor") ? 1 : 0] = false;
      continue;
    }
    if (is("--keep-going")) {
      options.keeps_going = true;
      continue;
    }
    if (!value)
      return false;
    if (is("--seed")) {
      options.first = strtoull(value, nullptr, 10);
    } else if (is("--seeds")) {
      options.count = strtoull(value, nullptr, 10);
    } else if (is("--minutes")) {
      options.minutes = static_cast<double>(strtoull(value, nullptr, 10));
    } else if (is("--bytes")) {
      options.bytes = value;
    } else {
      return false;
    }
    ++i;
  }
  return options.worlds[0] || options.worlds[1];
}

bool tell(const std::optional<std::string>& faults) {
  if (faults)
    std::printf("%s\n", faults->c_str());
  return !faults;
}

int replay(const Options& options) {
  std::ifstream file(options.bytes, std::ios::binary);
  const std::vector<uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
  Trace::setTitle(options.bytes);
  return tell(run_trial(options.worlds[0] ? World::editor : World::lv2, bytes)) ? 0 : 1;
}

int try_seeds(const Options& options) {
  using std::chrono::steady_clock;
  const auto begin = steady_clock::now();
  uint64_t tried = 0;
  uint64_t failed = 0;
  while (tried < options.count &&
         std::chrono::duration<double, std::ratio<60>>(steady_clock::now() - begin).count() <
             options.minutes) {
    const uint64_t seed = options.first + tried++;
    for (const World world : worlds) {
      if (!options.worlds[static_cast<size_t>(world)] || tell(run_trial(world, seed)))
        continue;
      ++failed;
      if (!options.keeps_going)
        return 1;
    }
  }
  std::printf("%llu seeds from %llu on, %llu faults\n", static_cast<unsigned long long>(tried),
              static_cast<unsigned long long>(options.first), static_cast<unsigned long long>(failed));
  return failed == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  setenv("FONTCONFIG_FILE", ondex::test::source_path("tests/fonts.conf").c_str(), 1);
  Options options;
  if (!read(argc, argv, options)) {
    std::fputs(help, stderr);
    return 2;
  }
  Trace::reportDeaths(longest_trial);
  return options.bytes ? replay(options) : try_seeds(options);
}
