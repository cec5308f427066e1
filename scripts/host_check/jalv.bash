# SPDX-License-Identifier: MIT
# jalv.gtk3 and jalv.qt5: one plug-in a process, embedded through suil. jalv.qt5 takes no options: what a host's
# values are is told to both by the plug-in's defaults, in a copy of the bundle that has others. Their menus are
# worked by keyboard. What they hold is heard: with the right side at rest the gain is 1 - depth / 2.

jalv_prepare() {
  mkdir -p "$work/lv2/preset.lv2"
  cp -r "$bundles/ondex.lv2" "$work/lv2"
  # The depth's default becomes 0.25.
  sed -i 's/lv2:default 0\.5/lv2:default 0.25/' "$work/lv2/ondex.lv2/ondex.ttl"
  write_preset "$work/lv2/preset.lv2"
  export LV2_PATH="$work/lv2:/usr/lib/lv2"
}

jalv_start() { # HOST
  run_host "$1" urn:kelvane:ondex
}
jalv_open() { # HOST
  jalv_start "$1"
  find_editor '^Ondex'
}
jalv_close() {
  close_window '^Ondex' && host_ended
}

jalv_choose_preset() {
  local before
  activate '^Ondex' || return 1
  before=$(count_top_levels)
  # Upwards from the first entry comes the last, which is the preset.
  xdotool key alt+p
  await 10 more_top_levels_than "$before" || return 1
  xdotool key Up Return
}
count_top_levels() { xwininfo -root -children | grep -c '^ *0x'; }
more_top_levels_than() { [ "$(count_top_levels)" -gt "$1" ]; }

# Whether the host's depth is VALUE, by what the effect named CLIENT makes of a constant sound.
jalv_depth_is() { # CLIENT VALUE
  local gain
  gain=$(awk "BEGIN { print 1 - $2 / 2 }")
  timeout 10 "$heard_gain" "$1:right_in" "$1:right_out" | grep -q -m1 -x "gain $gain"
}

jalv_drag() {
  drag_depth 50
  jalv_depth_is Ondex 0.5 && await 10 shows 2=0.5
}
jalv_host_change() {
  jalv_choose_preset && await 10 shows "${preset_values[@]}" && jalv_depth_is Ondex 0.75
}
jalv_reopen() { # HOST
  local i
  jalv_close || return 1
  for ((i = 0; i < 20; ++i)); do
    jalv_open "$1" && await 10 shows 2=0.25 && jalv_close && await 10 only_idle_clients || return 1
  done
}
jalv_two() { # HOST
  local first held
  jalv_open "$1" || return 1
  first=$editor
  xdotool windowmove "$(window_named '^Ondex')" 20 20
  jalv_start "$1"
  await 30 editors_are '^Ondex' 2 || return 1
  editor=$(editors '^Ondex' | grep -v "$first")
  # Beside the first one, for the screen to show both.
  xdotool windowmove "$(window_of "$editor")" 20 520
  await 10 viewable "$editor" || return 1
  drag_depth 50
  await 10 shows 2=0.5 && jalv_depth_is Ondex-01 0.5 && jalv_depth_is Ondex 0.25
  held=$?
  editor=$first
  await 10 shows 2=0.25 && return $held
}
check_jalv() { # HOST
  jalv_prepare
  check "$1" "opens" jalv_open "$1" || return
  check "$1" "shows the host's values" await 10 shows 2=0.25
  screenshot "$1"
  check "$1" "a drag changes the host's value" jalv_drag
  check "$1" "a host's change moves the controls" jalv_host_change
  check "$1" "closes and reopens 20 times" jalv_reopen "$1"
  check "$1" "two at once, each its own" jalv_two "$1"
  check "$1" "killed, nothing is left" killed 2=0.35
}
