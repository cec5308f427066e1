// SPDX-License-Identifier: MIT
/* An ALSA sequencer without anybody else on it, for machines whose kernel has none, such as containers: Qtractor
   does not start its engine, and so no plug-in, without a sequencer. Preloaded; what Qtractor asks of a sequencer
   succeeds and does nothing. What only fills in records is left to the ALSA library. */
#include <errno.h>
#include <poll.h>
#include <unistd.h>

typedef void sequencer;

static int silence[2] = {-1, -1};

int snd_seq_open(sequencer** opened, const char* name, int streams, int mode) {
  if (silence[0] < 0 && pipe(silence) != 0)
    return -errno;
  *opened = silence;
  return 0;
}

int snd_seq_client_id(sequencer* s) { return 128; }
int snd_seq_alloc_queue(sequencer* s) { return 0; }
int snd_seq_create_simple_port(sequencer* s, const char* name, unsigned caps, unsigned type) {
  static int next;
  return next++;
}

int snd_seq_poll_descriptors_count(sequencer* s, short events) { return 1; }
int snd_seq_poll_descriptors(sequencer* s, struct pollfd* descriptors, unsigned space, short events) {
  if (space == 0)
    return 0;
  descriptors[0] = (struct pollfd){silence[0], POLLIN, 0};
  return 1;
}
int snd_seq_event_input(sequencer* s, void** event) { return -EAGAIN; }
int snd_seq_event_input_pending(sequencer* s, int fetch) { return 0; }

#define NOBODY(name, ...) \
  int name(__VA_ARGS__) { return -ENOENT; }
NOBODY(snd_seq_query_next_client, sequencer* s, void* info)
NOBODY(snd_seq_query_next_port, sequencer* s, void* info)
NOBODY(snd_seq_query_port_subscribers, sequencer* s, void* query)
NOBODY(snd_seq_get_any_client_info, sequencer* s, int client, void* info)
NOBODY(snd_seq_get_any_port_info, sequencer* s, int client, int port, void* info)

#define DONE(name, ...) \
  int name(__VA_ARGS__) { return 0; }
DONE(snd_seq_close, sequencer* s)
DONE(snd_seq_set_client_name, sequencer* s, const char* name)
DONE(snd_seq_delete_simple_port, sequencer* s, int port)
DONE(snd_seq_get_port_info, sequencer* s, int port, void* info)
DONE(snd_seq_set_port_info, sequencer* s, int port, void* info)
DONE(snd_seq_subscribe_port, sequencer* s, void* subscription)
DONE(snd_seq_unsubscribe_port, sequencer* s, void* subscription)
DONE(snd_seq_free_queue, sequencer* s, int queue)
DONE(snd_seq_control_queue, sequencer* s, int queue, int type, int value, void* event)
DONE(snd_seq_get_queue_status, sequencer* s, int queue, void* status)
DONE(snd_seq_get_queue_tempo, sequencer* s, int queue, void* tempo)
DONE(snd_seq_set_queue_tempo, sequencer* s, int queue, void* tempo)
DONE(snd_seq_set_queue_timer, sequencer* s, int queue, void* timer)
DONE(snd_seq_event_output, sequencer* s, void* event)
DONE(snd_seq_event_output_direct, sequencer* s, void* event)
DONE(snd_seq_drain_output, sequencer* s)
DONE(snd_seq_drop_output, sequencer* s)
DONE(snd_seq_drop_input, sequencer* s)
DONE(snd_seq_remove_events, sequencer* s, void* which)
DONE(snd_seq_free_event, void* event)
