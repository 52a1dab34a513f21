# Works a program's window as a user does and waits for what it shows. To be sourced, after tools/display.sh.
# shellcheck shell=bash disable=SC2154
# Uses: pid, the program's; work, a folder for pictures.

# The screen, and the pictures that it was compared with, stay behind for who looks into it.
fail() {
  local pictures=${TMPDIR:-/tmp}/window-failed
  echo "$(basename "$0"): $*; see $pictures" >&2
  import -silent -window root "$work/failed.png" 2>/dev/null || true
  rm -rf "$pictures"
  mkdir -p "$pictures"
  cp "$work"/*.png "$pictures" 2>/dev/null || true
  exit 1
}

# window TITLE: the visible window whose title matches; empty without one. No later window has its title's end.
window() {
  xdotool search --all --onlyvisible --pid "$pid" --name "$1" 2>/dev/null | head -n 1
}

is_up() { [ -n "$(window "$1")" ]; }
is_gone() { [ -z "$(window "$1")" ]; }

# main_window: the one with main_title in its title; without a disc it has none.
main_window() {
  window "${main_title-VTS_01_1.VOB}"
}

# picture WINDOW FILE: without a window `import` would wait for a click on one.
picture() {
  [ -n "$1" ] && import -silent -window "$1" "$2" 2>/dev/null
}

snapshot() {
  picture "$(main_window)" "$1"
}

differing_pixels() {
  compare -metric AE "$1" "$2" null: 2>&1 || true
}

# The window stands alone and shows the same twice: no work runs, no dialog is up.
at_rest() {
  [ -n "$(main_window)" ] && screen_settled "$pid" "$work/screen.png"
}

wait_for_rest() {
  wait_until 60 at_rest || fail "$1: the window did not come to rest"
}

looks_like() {
  snapshot "$work/seen.png" && [ "$(differing_pixels "$1" "$work/seen.png")" = 0 ]
}

looks_unlike() {
  snapshot "$work/seen.png" && [ "$(differing_pixels "$1" "$work/seen.png")" != 0 ]
}

keys() {
  xdotool key --clearmodifiers "$@"
}

# press KEY EXPECTATION FILE: presses a key and waits until the window looks like, or unlike, a picture of it.
press() {
  keys "$1"
  wait_until 20 "$2" "$3" || fail "after $1 the window should look $2 $(basename "$3")"
}

# first_picture FILE: a picture of the window on its first subpicture, to which coming back from the next one leads.
# The video frame may come later than all else, so that one picture of a window at rest may lack it.
first_picture() {
  local _
  for _ in 1 2 3 4 5; do
    snapshot "$1"
    press Right looks_unlike "$1"
    keys Home
    ! wait_until 5 looks_like "$1" || return 0
  done
  fail "coming back to the first subpicture never shows the same"
}

# changes WHAT KEYS...: what the keys do can be seen.
changes() {
  local what=$1
  shift
  snapshot "$work/before.png"
  keys "$@"
  wait_until 20 looks_unlike "$work/before.png" || fail "$what: nothing changed"
}

# enter WHAT ACCESS-KEY TEXT: types into the number box of a label, whose number is selected then, and something
# changes.
enter() {
  snapshot "$work/before.png"
  keys "alt+$2"
  xdotool type --clearmodifiers "$3"
  keys Return
  wait_until 20 looks_unlike "$work/before.png" || fail "$1: nothing changed"
}

# answer TITLE KEYS...: waits for a dialog, presses keys in it and waits until it is gone.
answer() {
  local title=$1
  shift
  wait_until 20 is_up "$title" || fail "no dialog $title"
  wait_until 20 has_keyboard "$title" || fail "the dialog $title has not the keyboard"
  keys "$@"
  wait_until 20 is_gone "$title" || fail "the dialog $title stayed"
}

has_keyboard() { [ "$(xdotool getactivewindow 2>/dev/null)" = "$(window "$1")" ]; }

# choose_file TITLE PATH: in a file dialog.
choose_file() {
  wait_until 20 has_keyboard "$1" || fail "no dialog $1"
  xdotool type --clearmodifiers "$2"
  keys Return
  wait_until 20 is_gone "$1" || fail "the dialog $1 stayed"
}

close_window() {
  keys alt+F4
  wait_until 30 ended "$pid" || fail "the window did not close"
  wait "$pid" || fail "the program ended with $?"
  pid=
}
