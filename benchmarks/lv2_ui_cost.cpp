// SPDX-License-Identifier: MIT
// What the LV2 user interface costs its host and the X server: a host in a process of its own, with a server
// of its own, that opens the editor, sweeps all parameters, and leaves it alone. Prints a table in Markdown.
//
//   lv2_ui_cost [seconds a measurement]

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include "child_process.h"
#include "host.h"
#include "temporary_folder.h"
#include "x_client.h"
#include "x_server.h"

namespace {

using ondex::test::Host;
using ondex::test::UiObject;
using Seconds = std::chrono::duration<double>;
using std::chrono::steady_clock;

constexpr int width = 860;
constexpr int height = 352;
constexpr uint32_t first_port = 4;
constexpr uint32_t ports = 7;
constexpr uint32_t depth_port = 6;
constexpr double changes_a_second = 60;

/// CPU time that this process has used, in milliseconds.
double own_time() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// The same of another process.
double time_of(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/schedstat");
  double nanoseconds = 0;
  file >> nanoseconds;
  return nanoseconds / 1e6;
}

/// In MiB.
struct Memory {
  double resident = 0;
  double of_files = 0;  ///< of that, what is shared with whoever has the same libraries loaded
};

Memory memory() {
  Memory used;
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    double kibibytes = 0;
    if (word == "VmRSS:" && status >> kibibytes)
      used.resident = kibibytes / 1024;
    if (word == "RssFile:" && status >> kibibytes)
      used.of_files = kibibytes / 1024;
  }
  return used;
}

/// A host's window, an editor in it, and the server that shows it.
class Stage {
 public:
  explicit Stage(const std::string& display) : user_(display) {
    parent_ = user_.make_window(0, 0, width, height);
    user_.map(parent_);
  }

  /// From instantiate to the first complete picture, in milliseconds.
  double open(Host& host) {
    const auto begin = steady_clock::now();
    if (!host.open({.parent = parent_}))
      std::exit(1);
    for (uint32_t port = first_port; port < first_port + ports; ++port)
      host.set(port, port == depth_port ? 0.25F : 3.0F);
    // The whole picture comes at once, so one pixel tells.
    do {
      host.idle();
    } while (user_.pixel(host.window(), 5, 5).value_or(0) == 0);
    return Seconds(steady_clock::now() - begin).count() * 1e3;
  }
  void clear(Host& host) {
    host.close();
    user_.sync();
  }

 private:
  test_support::XClient user_;
  xcb_window_t parent_ = 0;
};

struct Cost {
  double own = 0;     ///< milliseconds of CPU
  double server = 0;  ///< of the X server
};

enum class Work {
  none,     ///< only the host wakes up
  idle,     ///< and calls idle
  changes,  ///< and all ports follow sines
};

/// Wakes up for idle calls at that rate and for changes.
Cost run(Host& host, pid_t server, double idle_rate, double seconds, Work work) {
  const Cost before = {own_time(), time_of(server)};
  const auto begin = steady_clock::now();
  const auto at = [begin](double second) {
    return begin + std::chrono::duration_cast<steady_clock::duration>(Seconds(second));
  };
  double next_idle = 0;
  double next_change = 0;
  while (std::min(next_idle, next_change) < seconds) {
    const double next = std::min(next_idle, next_change);
    const auto wait = Seconds(at(next) - steady_clock::now()).count();
    if (wait > 0) {
      const timespec pause = {0, static_cast<long>(wait * 1e9)};
      nanosleep(&pause, nullptr);
    }
    if (next_change <= next_idle) {
      for (uint32_t port = first_port; work == Work::changes && port < first_port + ports; ++port) {
        const double turn = next * (0.2 + 0.05 * port);
        const double place = (1 + std::sin(2 * std::numbers::pi * turn)) / 2;
        host.set(port, static_cast<float>(place * (port == depth_port ? 1 : 20)));
      }
      next_change += 1 / changes_a_second;
    } else {
      if (work != Work::none)
        host.idle();
      next_idle += 1 / idle_rate;
    }
  }
  return {own_time() - before.own, time_of(server) - before.server};
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/// In a process that has seen no editor yet; prints four numbers, as print_first reads them.
int measure_first(const std::string& display) {
  Stage stage(display);
  const Memory before = memory();
  const double cpu = own_time();
  const UiObject object;
  Host host(object.descriptor());
  const double time = stage.open(host);
  const double cpu_to_open = own_time() - cpu;
  host.idleFor(0.5);
  const Memory after = memory();
  std::printf("%.3f %.3f %.3f %.3f\n", time, cpu_to_open, after.resident - before.resident,
              after.of_files - before.of_files);
  return 0;
}

void print_first(const std::string& display) {
  std::array<std::vector<double>, 4> columns;
  for (int i = 0; i < 7; ++i) {
    ondex::test::ChildProcess process(
        {{std::filesystem::read_symlink("/proc/self/exe").string(), "--first", display}, {}});
    process.wait_for_exit();
    std::istringstream numbers(process.output());
    for (auto& column : columns) {
      double number = 0;
      numbers >> number;
      column.push_back(number);
    }
  }
  const double resident = median(columns[2]);
  std::printf(
      "| instantiate to complete picture, the process's first editor | %.1f ms; %.1f of CPU, loading "
      "the object included |\n",
      median(columns[0]), median(columns[1]));
  std::printf("| resident memory that it adds | %.1f MiB, %.1f of it files of all libraries |\n", resident,
              median(columns[3]));
}

void print_later(const std::string& display, const UiObject& object) {
  std::vector<double> times;
  std::vector<double> cpu;
  for (int i = 0; i < 20; ++i) {
    Stage stage(display);
    Host host(object.descriptor());
    const double before = own_time();
    times.push_back(stage.open(host));
    cpu.push_back(own_time() - before);
    stage.clear(host);
  }
  std::printf("| the same, a later one | %.1f ms, %.1f ms of it CPU |\n", median(times), median(cpu));
}

void print_running(const std::string& display, const UiObject& object, pid_t server, double seconds) {
  Stage stage(display);
  Host host(object.descriptor());
  stage.open(host);
  host.idleFor(0.5);
  for (const double rate : {30.0, 60.0}) {
    const Cost asleep = run(host, server, rate, seconds, Work::none);
    const Cost still = run(host, server, rate, seconds, Work::idle);
    const Cost moving = run(host, server, rate, seconds, Work::changes);
    const double thousands = seconds * changes_a_second * ports / 1000;
    const double own = (moving.own - still.own) / thousands;
    const double others = (moving.server - still.server) / thousands;
    std::printf("| 1,000 changes, idle at %.0f Hz | %.1f ms: %.1f UI, %.1f X server |\n", rate, own + others,
                own, others);
    std::printf("| a second without changes, idle at %.0f Hz | %.2f ms: %.2f UI, %.2f X server |\n", rate,
                (still.own + still.server - asleep.own - asleep.server) / seconds,
                (still.own - asleep.own) / seconds, (still.server - asleep.server) / seconds);
  }
}

void print_size() {
  const ondex::test::TemporaryFolder folder;
  const auto stripped = folder.path() / "ondex_ui.so";
  ondex::test::ChildProcess strip({{ONDEX_STRIP, "-o", stripped.string(), ONDEX_UI}, {}});
  strip.wait_for_exit();
  std::error_code error;
  std::printf("| the object, stripped | %.0f KiB |\n",
              static_cast<double>(std::filesystem::file_size(stripped, error)) / 1024);
}

}  // namespace

int main(int argc, char** argv) {
  const ondex::test::OwnPreferences preferences;
  if (argc > 2 && std::strcmp(argv[1], "--first") == 0)
    return measure_first(argv[2]);
  double seconds = 10;
  if (argc > 1)
    std::from_chars(argv[1], argv[1] + std::strlen(argv[1]), seconds);
  const test_support::XServer server({"-noreset"});
  if (server.display().empty()) {
    std::fprintf(stderr, "Xvfb did not start\n");
    return 1;
  }
  setenv("DISPLAY", server.display().c_str(), 1);
  std::printf("| | |\n|---|---|\n");
  print_size();
  print_first(server.display());
  const UiObject object;
  print_later(server.display(), object);
  print_running(server.display(), object, server.process(), seconds);
  return 0;
}
