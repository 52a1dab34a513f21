# Shared by the disc authors: failing, scratch folder and the two video standards.
# The variables not set here are set by the other parts.
# shellcheck shell=bash disable=SC2034,SC2154

die() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 1
}

need_tools() {
  local tool
  for tool in "$@"; do
    command -v "$tool" >/dev/null || die "$tool is missing; tools/install-packages installs it"
  done
}

# Runs a command and shows what it printed only when it failed.
quietly() {
  local log="$work/${1##*/}.$BASHPID.log"
  "$@" >"$log" 2>&1 || { cat "$log" >&2; die "$1 failed"; }
}

# use_standard ntsc|pal: sets what differs between the two video standards.
use_standard() {
  standard=$1
  width=720
  case $standard in
    ntsc) height=480 rate_numerator=30000 rate_denominator=1001 ;;
    pal) height=576 rate_numerator=25 rate_denominator=1 ;;
    *) die "unknown standard \"$standard\": ntsc or pal" ;;
  esac
  rate=$rate_numerator/$rate_denominator
  export VIDEO_FORMAT=${standard^^} # read by spumux and dvdauthor
}

# make_work_folder OUTDIR: a scratch folder beside the output, removed at the end.
make_work_folder() {
  mkdir -p "$1"
  output=$(cd "$1" && pwd)
  work=$(mktemp -d "$output/.work.XXXXXX")
  trap 'rm -rf "$work"' EXIT
}

# seconds_to_frames SECONDS: whole pictures of the current standard, rounded down.
seconds_to_frames() {
  awk -v s="$1" -v n="$rate_numerator" -v d="$rate_denominator" 'BEGIN { printf "%d", s * n / d + 1e-6 }'
}

# frames_to_seconds FRAMES
frames_to_seconds() {
  awk -v f="$1" -v n="$rate_numerator" -v d="$rate_denominator" 'BEGIN { printf "%.6f", f * d / n }'
}

font_file() {
  local file
  file=$(fc-match -f '%{file}' "$1")
  [ -f "$file" ] || die "no font file for $1"
  printf '%s' "$file"
}
