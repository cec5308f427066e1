// SPDX-License-Identifier: MIT
#include "sound_server.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>

#include "x_server.h"

namespace ondex::test {

namespace {

/// The same for all, so that a server sweeps up after one that was killed.
constexpr const char* server_name = "ondex-tests";

/// Opened to be inherited: the turn lasts until the server and all clients have gone too, also when the test
/// is killed.
int wait_for_turn() {
  const int turn = open("/dev/shm", O_RDONLY | O_DIRECTORY);
  flock(turn, LOCK_EX);
  return turn;
}

/// Removes what clients that were killed leave behind. Whole segments do not bear the server's name: the next
/// server takes those.
void sweep() {
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/dev/shm", error)) {
    if (entry.path().filename().string().find(server_name) != std::string::npos)
      std::filesystem::remove(entry.path(), error);
  }
}

ChildProcess::Setup server_command(const SoundServer::Environment& environment) {
  // The ports decide the size of the shared memory,
  // which containers have little of.
  return {{"/usr/bin/jackd", "-n", server_name, "-r", "-p", "64", "-d", "dummy", "-p", "1024"},
          environment,
          SIGTERM};
}

}  // namespace

SoundServer::SoundServer(Environment environment)
    : environment_(std::move(environment)), turn_(wait_for_turn()) {
  started_ = test_support::wait_until([this] {
    // A server that was killed counts as alive until whoever inherited it has collected it.
    if (!server_ || !server_->running())
      server_ = std::make_unique<ChildProcess>(server_command(environment_));
    return ChildProcess({{"/usr/bin/jack_lsp"}, environment_}).wait_for_exit() == 0;
  });
}

bool SoundServer::has_client(const std::string& name) {
  ChildProcess list({{"/usr/bin/jack_lsp"}, environment_});
  list.wait_for_exit();
  return list.has_line(name + ":");
}

SoundServer::~SoundServer() {
  server_.reset();
  sweep();
  close(turn_);
}

SoundServer::Environment SoundServer::for_clients() {
  return {{"JACK_DEFAULT_SERVER", server_name},
          {"JACK_NO_START_SERVER", "1"},
          {"JACK_NO_AUDIO_RESERVATION", "1"}};
}

}  // namespace ondex::test
