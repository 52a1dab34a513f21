# A display of our own, with a window manager, where there is none. To be sourced.
# shellcheck shell=bash

display_pids=()

has_display() {
  [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]
}

# wait_until SECONDS COMMAND...: polls until the command succeeds; fails when the time is over.
wait_until() {
  local end=$((SECONDS + $1))
  shift
  until "$@"; do
    [ "$SECONDS" -lt "$end" ] || return 1
    sleep 0.2
  done
}

window_manager_runs() {
  xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'
}

# start_display FOLDER: starts Xvfb, as large as SCREEN_SIZE says, and openbox, with their logs in FOLDER, and
# exports DISPLAY.
start_display() {
  local folder=$1 number=$1/display-number
  mkdir -p "$folder"
  : >"$number"
  Xvfb -displayfd 3 -screen 0 "${SCREEN_SIZE:-1280x900}x24" -nolisten tcp 3>"$number" >"$folder/xvfb.log" 2>&1 &
  display_pids+=($!)
  wait_until 20 test -s "$number" || { cat "$folder/xvfb.log" >&2; echo "Xvfb did not start" >&2; return 1; }
  DISPLAY=:$(<"$number")
  export DISPLAY
  openbox >"$folder/openbox.log" 2>&1 &
  display_pids+=($!)
  wait_until 20 window_manager_runs || { cat "$folder/openbox.log" >&2; echo "openbox did not start" >&2; return 1; }
}

stop_display() {
  local index
  for ((index = ${#display_pids[@]} - 1; index >= 0; index--)); do
    kill "${display_pids[index]}" 2>/dev/null || true
    wait "${display_pids[index]}" 2>/dev/null || true
  done
  display_pids=()
}

# windows_of PID: the visible windows of a program; fails when it has none.
windows_of() {
  xdotool search --onlyvisible --pid "$1" 2>/dev/null
}

# shows_window PID: a window is up, or the program is gone and none will come.
shows_window() {
  windows_of "$1" >/dev/null || ! kill -0 "$1" 2>/dev/null
}

ended() {
  ! kill -0 "$1" 2>/dev/null
}

# screen_settled PID PICTURE: one window alone is left, the progress window having closed, and two pictures of
# the screen, half a second apart, are alike. PICTURE holds the later one.
screen_settled() {
  local pid=$1 picture=$2 windows
  windows=$(windows_of "$pid") || return 1
  import -silent -window root "$picture.before.png"
  sleep 0.5
  import -silent -window root "$picture"
  [ "$(wc -l <<<"$windows")" -eq 1 ] && [ "$(compare -metric AE "$picture.before.png" "$picture" null: 2>&1)" = 0 ]
}

# photograph_program PICTURE COMMAND...: runs a program on the display until its window is filled, takes the
# screen's picture, closes the window as a user does and returns the program's own exit code.
photograph_program() {
  local picture=$1 pid
  shift
  "$@" &
  pid=$!
  if ! wait_until 60 shows_window "$pid" || ended "$pid"; then
    echo "the window never came" >&2
  elif ! wait_until 60 screen_settled "$pid" "$picture"; then
    echo "the window did not come to rest" >&2
  else
    rm -f "$picture.before.png"
    xdotool key --clearmodifiers alt+F4
    if wait_until 20 ended "$pid"; then wait "$pid"; return; fi
    echo "the window did not close" >&2
  fi
  kill "$pid" 2>/dev/null || true
  wait "$pid" || true
  return 1
}
