# SPDX-License-Identifier: MIT
# Qtractor: its own embedding. A session of two tracks with the plug-in each; what it holds is read from the session
# that it saves.

qtractor_main='session.qtr'

qtractor_track() { # NAME PARAMETERS
  cat <<END
  <track name="$1" type="audio">
   <properties>
    <input-bus>Master</input-bus>
    <output-bus>Master</output-bus>
   </properties>
   <plugins>
    <plugin type="LV2">
     <filename>urn:kelvane:ondex</filename>
     <index>0</index>
     <label>Ondex</label>
     <activated>1</activated>
     <params>$2</params>
    </plugin>
   </plugins>
  </track>
END
}

qtractor_prepare() {
  local folder="$work/sessions/qtractor"
  mkdir -p "$folder"
  export LV2_PATH="$bundles:/usr/lib/lv2"
  qtractor_session="$folder/session.qtr"
  cat >"$qtractor_session" <<END
<!DOCTYPE qtractor-session>
<session name="session" version="0.9.31">
 <properties>
  <directory>$folder</directory>
  <sample-rate>48000</sample-rate>
 </properties>
 <tracks>
$(qtractor_track One '<param name="Left Tremolo Rate" index="4">4</param><param name="Tremolo Depth" index="6">0.25</param>')
$(qtractor_track Two '')
 </tracks>
</session>
END
}

qtractor_start() {
  local preload=()
  if [ ! -e /dev/snd/seq ]; then
    cc -shared -fPIC -o "$work/silent_sequencer.so" scripts/host_check/silent_sequencer.c || return 1
    preload=("LD_PRELOAD=$work/silent_sequencer.so")
  fi
  run_host env "${preload[@]}" qtractor "$qtractor_session"
  await 30 has_window "$qtractor_main"
}

# The menu of the plug-in in the list of tracks.
qtractor_menu() { # TRACK'S-NUMBER
  click_in_main "$qtractor_main" 176 $((179 + 96 * ($1 - 1))) 3
  await 10 qtractor_menus_are 1
}
qtractor_menus_are() { [ "$(xwininfo -root -tree | grep -c ' "Qtractor": ("qtractor" "Qtractor")')" = "$1" ]; }
qtractor_edit() { # TRACK'S-NUMBER
  qtractor_menu "$1" && xdotool key e
}
qtractor_open() {
  qtractor_edit 1 && find_editor 'Ondex - One'
}
qtractor_start_and_open() { qtractor_start && qtractor_open; }
qtractor_close() {
  close_window 'Ondex - One'
  await 10 no_window 'Ondex - One'
}

# Whether the session as saved now has these values of the depth, a track's each.
qtractor_depths_are() {
  activate "$qtractor_main"
  await 10 qtractor_saves "$*"
}
# Again and again, as a change may reach the session only after the key.
qtractor_saves() {
  xdotool key ctrl+s
  [ "$(sed -n 's/.*<param .*name="Tremolo Depth".*>\(.*\)<.*/\1/p' "$qtractor_session" | tr '\n' ' ')" = "$1 " ]
}

qtractor_drag() {
  activate 'Ondex - One'
  drag_depth 50
  await 10 shows 0=4 2=0.5 && qtractor_depths_are 0.5 0.5
}
# Types a depth into the generic form of the plug-in: Qtractor tells an editor nothing of a preset that is chosen.
qtractor_host_change() {
  local form
  qtractor_menu 1 && xdotool key p && await 10 qtractor_has_form || return 1
  form=$(qtractor_form)
  timeout 10 xdotool windowactivate --sync "$form" 2>/dev/null
  find_origin "$form" || return 1
  xdotool mousemove $((origin_x + 411)) $((origin_y + 189)) click --repeat 3 --delay 50 1
  xdotool type 0.75
  xdotool key Tab
  qtractor_depths_are 0.75 0.5 || return 1
  wmctrl -i -c "$form"
  timeout 10 xdotool windowactivate --sync "$(window_of "$editor")" 2>/dev/null
  await 10 shows 0=4 2=0.75
}
# The form and the editor's window have one title.
qtractor_form() {
  local window
  for window in $(xdotool search --onlyvisible --name 'Ondex - One' 2>/dev/null); do
    [ -n "$(editor_in "$window")" ] || echo "$window"
  done
}
qtractor_has_form() { [ -n "$(qtractor_form)" ]; }
qtractor_reopen() {
  local i
  qtractor_close || return 1
  for ((i = 0; i < 20; ++i)); do
    qtractor_open && await 10 shows 0=4 2=0.75 && qtractor_close || return 1
  done
}
qtractor_two() {
  local first
  qtractor_open || return 1
  first=$editor
  xdotool windowmove "$(window_named 'Ondex - One')" 700 20
  qtractor_edit 2 && find_editor 'Ondex - Two' || return 1
  xdotool windowmove "$(window_named 'Ondex - Two')" 700 550
  drag_depth -50
  await 10 shows 2=0.25 && qtractor_depths_are 0.75 0.25 || return 1
  editor=$first
  activate 'Ondex - One'
  await 10 shows 0=4 2=0.75
}

# Afterwards its session is what it was when it was saved.
qtractor_killed() {
  killed 0=4 2=0.85 && qtractor_start_and_open && await 10 shows 0=4 2=0.75
}

check_qtractor() {
  qtractor_prepare
  check qtractor "opens" qtractor_start_and_open || return
  check qtractor "shows the host's values" await 10 shows 0=4 2=0.25
  screenshot qtractor
  check qtractor "a drag changes the host's value" qtractor_drag
  check qtractor "a host's change moves the controls" qtractor_host_change
  check qtractor "closes and reopens 20 times" qtractor_reopen
  check qtractor "two at once, each its own" qtractor_two
  check qtractor "killed, nothing is left" qtractor_killed
}
