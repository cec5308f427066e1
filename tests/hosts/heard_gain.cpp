// SPDX-License-Identifier: MIT
// A JACK client that hears what an effect in a host does: sends a constant 1 into one port and prints what
// comes out of another, `gain VALUE`, each time that it has settled on another value. Ends when nobody reads
// it or on SIGTERM, and takes leave of the server.
//
//   heard_gain CLIENT:INPUT CLIENT:OUTPUT
#include <jack/jack.h>
#include <poll.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <csignal>
#include <cstdio>

namespace {

/// Farther apart, two samples are not the same value.
constexpr float tolerance = 2e-5F;

struct Probe {
  jack_port_t* out = nullptr;
  jack_port_t* in = nullptr;
  std::atomic<float> heard = NAN;
};

/// On the audio thread: publishes the value of a block that holds a single one.
int process(jack_nframes_t count, void* context) {
  auto& probe = *static_cast<Probe*>(context);
  auto* out = static_cast<float*>(jack_port_get_buffer(probe.out, count));
  std::fill_n(out, count, 1.0F);
  const auto* in = static_cast<const float*>(jack_port_get_buffer(probe.in, count));
  const auto [least, most] = std::minmax_element(in, in + count);
  if (count > 0 && *most - *least < tolerance)
    probe.heard = *least;
  return 0;
}

volatile std::sig_atomic_t told_to_end = 0;

bool connect(jack_client_t* client, const Probe& probe, const char* input, const char* output) {
  return jack_connect(client, jack_port_name(probe.out), input) == 0 &&
         jack_connect(client, output, jack_port_name(probe.in)) == 0;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) {
    std::fputs("usage: heard_gain CLIENT:INPUT CLIENT:OUTPUT\n", stderr);
    return 2;
  }
  std::signal(SIGTERM, [](int) { told_to_end = 1; });
  Probe probe;
  jack_client_t* client = jack_client_open("heard_gain", JackNoStartServer, nullptr);
  if (!client)
    return 1;
  probe.out = jack_port_register(client, "out", JACK_DEFAULT_AUDIO_TYPE, JackPortIsOutput, 0);
  probe.in = jack_port_register(client, "in", JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput, 0);
  jack_set_process_callback(client, process, &probe);
  if (!probe.out || !probe.in || jack_activate(client) != 0 ||
      !connect(client, probe, arguments[1], arguments[2])) {
    std::fputs("heard_gain: no such ports\n", stderr);
    jack_client_close(client);
    return 1;
  }
  std::signal(SIGPIPE, SIG_IGN);
  float printed = NAN;
  pollfd reader{1, 0, 0};
  while (!told_to_end && poll(&reader, 1, 5) == 0) {
    const float heard = probe.heard;
    if (std::isnan(heard) || std::abs(heard - printed) < tolerance)
      continue;
    printed = heard;
    std::printf("gain %g\n", std::round(static_cast<double>(heard) * 1e4) / 1e4);
    std::fflush(stdout);
  }
  jack_client_close(client);
  return 0;
}
