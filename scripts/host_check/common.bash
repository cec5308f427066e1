# SPDX-License-Identifier: MIT
# What the checks of all hosts share: a desktop of their own, waiting, the user's hands, eyes, and the table.

# Calls a command until it succeeds; fails after so many seconds without.
await() {
  local deadline=$((SECONDS + $1))
  shift
  until "$@" >/dev/null 2>&1; do
    [ $SECONDS -lt $deadline ] || return 1
    sleep 0.1
  done
}

build_editor() {
  { cmake --preset release && cmake --build --preset release --target lv2_bundle ondex heard_gain; } >/dev/null ||
    die "the build failed"
  program=$PWD/build/release/hosts/standalone/ondex
  heard_gain=$PWD/build/release/tests/hosts/heard_gain
  failures_folder=$PWD/build/host-check
  rm -rf "$failures_folder"
}

# Everything a host reads or writes of its user's lies in $work; display and sound server are nobody else's.
start_desktop() {
  local turn
  work=$(mktemp -d "${TMPDIR:-/tmp}/ondex-host-check-XXXXXX")
  trap stop_desktop EXIT
  trap 'exit 1' HUP INT TERM
  # Wherever the build was told to install it.
  DESTDIR="$work/installed" cmake --install build/release --component lv2 >/dev/null || die "no bundle is installed"
  bundles=$(dirname "$(find "$work/installed" -name ondex.lv2)")

  export HOME="$work/home" XDG_RUNTIME_DIR="$work/run"
  export XDG_CONFIG_HOME="$HOME/.config" XDG_DATA_HOME="$HOME/.local/share" XDG_CACHE_HOME="$HOME/.cache"
  mkdir -p "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_CACHE_HOME" "$XDG_RUNTIME_DIR" "$work/sessions"
  chmod 700 "$XDG_RUNTIME_DIR"
  unset WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS
  export LC_ALL=C.UTF-8 NO_AT_BRIDGE=1
  export JACK_DEFAULT_SERVER=ondex-tests JACK_NO_START_SERVER=1 JACK_NO_AUDIO_RESERVATION=1

  run_server display Xvfb -displayfd 3 -screen 0 1600x1000x24 -nolisten tcp -noreset 3>"$work/display"
  x_server=$!
  await 30 grep -q . "$work/display" || die "Xvfb does not start"
  DISPLAY=":$(cat "$work/display")"
  export DISPLAY
  run_server manager openbox --sm-disable
  await 30 xdotool getwindowfocus || die "openbox does not start"
  # One jackd at a time, as for the tests: tests/hosts/sound_server.h says why.
  exec {turn}</dev/shm
  flock "$turn"
  run_server sound jackd -n "$JACK_DEFAULT_SERVER" -r -d dummy -r 48000 -p 1024
  await 30 jack_lsp || die "jackd does not start"
  idle_clients=$(count_clients)
}

editor=
servers=()
run_server() {
  local name=$1
  shift
  setpriv --pdeathsig TERM "$@" </dev/null >"$work/$name.log" 2>&1 &
  servers+=($!)
}

has_ended() { ! kill -0 "$1"; }

stop_desktop() {
  local process
  kill_hosts
  for process in "${servers[@]}"; do
    kill "$process" 2>/dev/null
    await 10 has_ended "$process" || kill -KILL "$process"
    wait "$process" 2>/dev/null
  done
  rm -rf "$work" /dev/shm/jack_*"$JACK_DEFAULT_SERVER"_*
}

die() {
  echo "host-check: $*" >&2
  exit 1
}

# Hosts run in sessions of their own, so that whatever they start is found and ends with them.
hosts=()
run_host() {
  setsid "$@" </dev/null >"$work/host.log" 2>&1 &
  hosts+=($!)
}
host_ended() { # the last one, and how
  local status
  await 10 host_is_gone "${hosts[-1]}" || return 1
  wait "${hosts[-1]}"
  status=$?
  unset 'hosts[-1]'
  return $status
}
host_is_gone() { has_ended "$1" && [ -z "$(ps -o pid= -s "$1")" ]; }
kill_hosts() {
  local host
  for host in "${hosts[@]}"; do
    kill -KILL -- "-$host" 2>/dev/null
    wait "$host" 2>/dev/null
  done
  hosts=()
}

count_clients() { find "/proc/$x_server/fd" -lname 'socket:*' | wc -l; }
only_idle_clients() { [ "$(count_clients)" -le "$idle_clients" ]; }

# Windows

# The visible window whose title matches.
window_named() { xdotool search --onlyvisible --name "$1" 2>/dev/null | tail -1; }
has_window() { [ -n "$(window_named "$1")" ]; }
no_window() { ! has_window "$1"; }
# The editor's own window inside the host's: the innermost one of the editor's size, made to be embedded.
editor_in() {
  local window
  window=$(xwininfo -id "$1" -tree 2>/dev/null | grep -E ' 860x352\+' | tail -1 | awk '{print $1}')
  [ -n "$window" ] && xprop -id "$window" _XEMBED_INFO 2>/dev/null | grep -q '0x1, 0x1' && echo "$window"
}
# All editors in windows whose titles match.
editors() {
  local window
  for window in $(xdotool search --onlyvisible --name "$1" 2>/dev/null); do
    editor_in "$window"
  done
}
# The host's window that an editor is in.
window_of() {
  local window
  for window in $(xdotool search --onlyvisible --name 'Ondex' 2>/dev/null); do
    [ "$(editor_in "$window")" = "$1" ] && echo "$window"
  done
}
editors_are() { [ "$(editors "$1" | wc -l)" = "$2" ]; }
has_editor() { [ -n "$(window_named "$1")" ] && [ -n "$(editor_in "$(window_named "$1")")" ]; }
no_editor() { ! xwininfo -root -tree | grep -q ' 860x352+'; }
viewable() { xwininfo -id "$1" | grep -q 'IsViewable'; }
activate() {
  local window
  window=$(window_named "$1")
  [ -n "$window" ] && timeout 10 xdotool windowactivate --sync "$window" 2>/dev/null
}
# As the button in the frame does. By keyboard jalv.gtk3 may end with an X error: suil forwards the release of a key
# to the editor's window when that is already gone.
close_window() { wmctrl -i -c "$(window_named "$1")"; }

# Waits for an editor in the window whose title matches; sets $editor.
find_editor() {
  await 30 has_editor "$1" || return 1
  editor=$(editor_in "$(window_named "$1")")
  await 10 viewable "$editor"
}

# Eyes

# Whether the editor's window is, pixel by pixel, the picture of these values (ID=VALUE ...).
shows() {
  local picture arguments=() change
  picture="$work/reference $*.png"
  if [ ! -f "$picture" ]; then
    for change in "$@"; do
      arguments+=(--set "$change")
    done
    "$program" --scale 1 --screenshot "$picture" "${arguments[@]}" || return 1
  fi
  grab "$editor" "$work/seen.png" && same_picture "$work/seen.png" "$picture"
}
# A menu that holds the pointer would hold the program up.
grab() { timeout 10 import -window "$1" "$2"; }
same_picture() { [ "$(compare -metric AE "$1" "$2" null: 2>&1)" = 0 ]; }
fingerprint() { grab "$editor" rgb:- | md5sum; }

# Takes the picture for the documentation: the host's window with the editor, in its frame.
screenshot() { # NAME
  local window geometry width height left right top bottom
  [ -n "$pictures" ] || return 0
  window=$(window_of "$editor")
  find_origin "$window" || return 1
  geometry=$(xwininfo -id "$window")
  width=$(sed -n 's/.*Width: *//p' <<<"$geometry")
  height=$(sed -n 's/.*Height: *//p' <<<"$geometry")
  IFS=', ' read -r left right top bottom <<<"$(xprop -id "$window" _NET_FRAME_EXTENTS | sed 's/.*= //')"
  grab root "$pictures/$1.png"
  mogrify -strip -crop "$((width + left + right))x$((height + top + bottom))+$((origin_x - left))+$((origin_y - top))" \
    +repage "$pictures/$1.png"
}

# The user's hands

# Where a window's upper left corner is on the screen, in $origin_x and $origin_y.
find_origin() {
  local geometry
  # Without a window the program would wait for one to be clicked.
  [ -n "$1" ] && geometry=$(xwininfo -id "$1") || return 1
  origin_x=$(sed -n 's/.*Absolute upper-left X: *//p' <<<"$geometry")
  origin_y=$(sed -n 's/.*Absolute upper-left Y: *//p' <<<"$geometry")
}

# Drags the readout of the depth so many points up.
drag_depth() {
  local x y step
  find_origin "$editor" || return 1
  x=$((origin_x + 430)) y=$((origin_y + 303))
  xdotool mousemove $x $y mousedown 1
  for step in 1 2 3 4 5; do
    xdotool mousemove $x $((y - $1 * step / 5))
  done
  xdotool mouseup 1 mousemove 1590 990
}

# In the host's main window, whose title matches, at a place counted from its upper left corner.
click_in_main() { # TITLE X Y [xdotool's click arguments]
  local x=$2 y=$3
  activate "$1" && find_origin "$(window_named "$1")" || return 1
  shift 3
  xdotool mousemove $((origin_x + x)) $((origin_y + y)) click "$@"
}

# The end without warning, in the middle of a drag of 20 points up, when the editor shows VALUES: neither processes
# nor clients of the servers may stay, and the preferences are what they were.
killed() { # VALUES
  local host before
  before=$(preferences)
  find_origin "$editor" || return 1
  xdotool mousemove $((origin_x + 430)) $((origin_y + 303)) mousedown 1 mousemove_relative -- 0 -20
  await 10 shows "$@" || return 1
  for host in "${hosts[@]}"; do
    disown "$host" # its end is not the shell's to report
    kill -KILL "$host"
  done
  for host in "${hosts[@]}"; do
    await 10 host_is_gone "$host" || return 1
  done
  hosts=()
  await 10 no_editor && await 10 only_idle_clients && await 30 only_the_sound_card || return 1
  xdotool mouseup 1 mousemove 1590 990
  [ -n "$before" ] && [ "$(preferences)" = "$before" ]
}
preferences() { find "$XDG_CONFIG_HOME/ondex" -type f -exec md5sum {} +; }
# jackd waits for those who left without a word, and ends well only when it has missed them all.
only_the_sound_card() {
  local ports
  ports=$(jack_lsp) && ! grep -qv '^system:' <<<"$ports"
}

# The table

failures=0
# check HOST WHAT COMMAND... - runs the command and prints how it went.
check() {
  local host=$1 what=$2 result=ok
  shift 2
  if ! "$@"; then
    result=FAILED
    failures=$((failures + 1))
    # What a menu that is left open holds up.
    xdotool key Escape Escape
    mkdir -p "$failures_folder"
    grab root "$failures_folder/$host: $what.png"
    tail -5 "$work/host.log" >&2
    cp "$work"/*.log "$failures_folder"
  fi
  printf '%-12s %-44s %s\n' "$host" "$what" "$result"
  [ $result = ok ]
}

# A preset of the user's, in an LV2 bundle of its own: a host's change by one choice from a menu.
preset_values=(0=7 2=0.75 6=3.5)
write_preset() { # FOLDER
  cat >"$1/manifest.ttl" <<'END'
@prefix lv2: <http://lv2plug.in/ns/lv2core#> .
@prefix pset: <http://lv2plug.in/ns/ext/presets#> .
@prefix rdfs: <http://www.w3.org/2000/01/rdf-schema#> .
<urn:ondex-check:one>
	a pset:Preset ;
	lv2:appliesTo <urn:kelvane:ondex> ;
	rdfs:label "One" ;
	rdfs:seeAlso <one.ttl> .
END
  cat >"$1/one.ttl" <<'END'
@prefix lv2: <http://lv2plug.in/ns/lv2core#> .
@prefix pset: <http://lv2plug.in/ns/ext/presets#> .
<urn:ondex-check:one>
	a pset:Preset ;
	lv2:appliesTo <urn:kelvane:ondex> ;
	lv2:port [
		lv2:symbol "left_tremolo_rate" ;
		pset:value 7.0
	] , [
		lv2:symbol "tremolo_depth" ;
		pset:value 0.75
	] , [
		lv2:symbol "right_tremolo_mod_index" ;
		pset:value 3.5
	] .
END
}
