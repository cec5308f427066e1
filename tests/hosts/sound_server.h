// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "child_process.h"

namespace ondex::test {

/// jackd with its dummy driver, one at a time on this machine. What JACK's programs have in common in
/// /dev/shm has room for eight servers, counts those that were killed until one of the same name starts,
/// and is cleared away under the others by a server that ends.
class SoundServer {
 public:
  using Environment = std::map<std::string, std::optional<std::string>>;

  /// Waits for its turn, starts the server, and waits until it serves.
  explicit SoundServer(Environment environment);
  ~SoundServer();
  SoundServer(const SoundServer&) = delete;
  SoundServer& operator=(const SoundServer&) = delete;

  bool started() const { return started_; }
  const std::string& errors() { return server_->errors(); }
  /// A client that ended without a word is one until the server has missed it. Only then does the server end
  /// well.
  bool has_client(const std::string& name);
  /// What lets JACK's programs find this server, and start no other.
  static Environment for_clients();

 private:
  Environment environment_;
  int turn_;
  std::unique_ptr<ChildProcess> server_;
  bool started_;
};

}  // namespace ondex::test
