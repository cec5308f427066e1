# SPDX-License-Identifier: MIT
# Ardour 7: embedding through suil in GTK 2; every write is echoed. A Lua script makes the session, with automation;
# what Ardour holds is read from the session that it saves.

ardour_main='session - Ardour'

ardour_prepare() {
  local config="$XDG_CONFIG_HOME/ardour7"
  export LV2_PATH="$bundles:/usr/lib/lv2"
  mkdir -p "$config"
  # Whoever has been here before is not asked who he is.
  touch "$config/.a7"
  cat >"$config/config" <<'END'
<?xml version="1.0" encoding="UTF-8"?>
<Ardour>
  <Config>
    <Option name="discover-plugins-on-start" value="0"/>
    <Option name="show-plugin-scan-window" value="0"/>
  </Config>
  <Extra>
    <AudioMIDISetup>
      <EngineStates>
        <State backend="JACK" driver="" device="" input-device="" output-device="" sample-rate="48000" buffer-size="1024" n-periods="0" input-latency="0" output-latency="0" input-channels="0" output-channels="0" active="1" use-buffered-io="0" midi-option="" lm-input="" lm-output=""/>
      </EngineStates>
    </AudioMIDISetup>
  </Extra>
</Ardour>
END
  # Ardour finds a session by the name of its folder.
  mkdir -p "$work/sessions/ardour"
  export ONDEX_SESSION="$work/sessions/ardour/session"
  ardour_session="$ONDEX_SESSION/session.ardour"
  timeout 60 ardour7-lua scripts/host_check/ardour_session.lua >"$work/ardour-lua.log" 2>&1
  # The mixer is the page it opens with: a key for that could come before Ardour listens.
  cat >"$ONDEX_SESSION/instant.xml" <<'END'
<?xml version="1.0" encoding="UTF-8"?>
<instant>
  <Main x="125" y="131" w="1348" h="713" current-tab="mixer"/>
</instant>
END
  cp "$ONDEX_SESSION/instant.xml" "$config"
  grep -q Ondex "$ardour_session" || die "Ardour makes no session: $(cat "$work/ardour-lua.log")"
}

# Two of its threads may write to jackd at once when it starts: jackd then reads nonsense and throws it out.
ardour_start() {
  local attempt
  for ((attempt = 0; attempt < 5; ++attempt)); do
    run_host env TRY_AUTOSTART_ENGINE=1 ardour -a -n "$ONDEX_SESSION"
    await 90 ardour_has_loaded_or_is_out && ! ardour_is_out && return
    kill_hosts
    await 30 only_the_sound_card
  done
  return 1
}
ardour_is_out() { grep -q 'JACK HALTED' "$work/host.log"; }
ardour_has_loaded_or_is_out() { ardour_is_out || ardour_has_loaded; }
# Its window comes long before it is ready: it has to be heard, and to have closed the notes about its progress.
ardour_has_loaded() {
  has_window "$ardour_main" && jack_lsp | grep -q '^ardour:Two/audio_out 2' && [ "$(wmctrl -l | grep -vc ': Ondex')" = 1 ]
}

# A double click on the plug-in in the mixer's strip of track NUMBER, which is called NAME; again for as long as the
# mixer is still being put together.
ardour_edit() {
  local attempt
  for ((attempt = 0; attempt < 10; ++attempt)); do
    click_in_main "$ardour_main" $((319 + 110 * ($1 - 1))) 207 --repeat 2 --delay 80 1
    await 3 has_window "^$2: Ondex" && find_editor "^$2: Ondex" && return
  done
  return 1
}
ardour_open() { ardour_edit 1 One; }
ardour_start_and_open() { ardour_start && ardour_open; }
ardour_close() {
  close_window '^One: Ondex'
  await 10 no_window '^One: Ondex'
}

# Whether the session as saved now has these values of the depth, a track's each.
ardour_depths_are() {
  activate "$ardour_main"
  await 10 ardour_saves "$*"
}
# Again and again, as a change may reach the session only after the key.
ardour_saves() {
  xdotool key ctrl+s
  [ "$(sed -n 's/.*symbol="tremolo_depth" value="\([^"]*\)".*/\1/p' "$ardour_session" | tr '\n' ' ')" = "$1 " ]
}

ardour_drag() {
  activate '^One: Ondex'
  drag_depth 50
  await 10 shows 0=4 2=0.5 && ardour_depths_are 0.5 0.5
}

# Plays the automation: on its way to 10 the editor must be seen at many values.
ardour_automation() {
  local before now seen=0 deadline=$((SECONDS + 20))
  activate "$ardour_main" && xdotool key space
  activate '^One: Ondex'
  before=$(fingerprint)
  until shows 0=4 2=0.5 6=10; do
    [ $SECONDS -lt $deadline ] || return 1
    now=$(fingerprint)
    [ "$now" = "$before" ] || seen=$((seen + 1))
    before=$now
  done
  activate "$ardour_main" && xdotool key space
  [ $seen -ge 3 ]
}
ardour_reopen() {
  local i
  ardour_close || return 1
  for ((i = 0; i < 20; ++i)); do
    ardour_open && await 10 shows 0=4 2=0.5 6=10 && ardour_close || return 1
  done
}
ardour_two() {
  local first
  ardour_open || return 1
  first=$editor
  xdotool windowmove "$(window_named '^One: Ondex')" 700 20
  ardour_edit 2 Two || return 1
  xdotool windowmove "$(window_named '^Two: Ondex')" 700 550
  drag_depth -50
  await 10 shows 2=0.25 && ardour_depths_are 0.5 0.25 || return 1
  editor=$first
  activate '^One: Ondex'
  await 10 shows 0=4 2=0.5 6=10
}

# Afterwards its session is what it was when it was saved, with the editors open.
ardour_killed() {
  killed 0=4 2=0.6 6=10 && ardour_start && find_editor '^One: Ondex' &&
    await 10 shows 0=4 2=0.5 6=10
}

check_ardour() {
  ardour_prepare
  check ardour "opens" ardour_start_and_open || return
  check ardour "shows the host's values" await 10 shows 0=4 2=0.25
  screenshot ardour
  check ardour "a drag changes the host's value" ardour_drag
  check ardour "automation moves the controls" ardour_automation
  check ardour "closes and reopens 20 times" ardour_reopen
  check ardour "two at once, each its own" ardour_two
  check ardour "killed, nothing is left" ardour_killed
}
