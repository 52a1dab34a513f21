# truth.json: what the list of subtitles puts on the disc, for comparing what programs read from it.
# The variables not set here are set by the other parts.
# shellcheck shell=bash disable=SC2034,SC2154

json_string() {
  local text=${1//\\/\\\\}
  printf '"%s"' "${text//\"/\\\"}"
}

json_lines() {
  local separator='' line parts
  IFS='|' read -ra parts <<<"$1"
  printf '['
  for line in "${parts[@]}"; do
    printf '%s' "$separator"
    json_string "$line"
    separator=', '
  done
  printf ']'
}

json_flag() {
  if has_flag "$1" "$2"; then printf true; else printf false; fi
}

add_seconds() {
  awk -v a="$1" -v b="$2" 'BEGIN { printf "%.6f", a + b }'
}

# truth_subtitles PGC VOB FRAMES_BEFORE STREAM: the objects of one VOB's stream, each ended by a line feed.
# FRAMES_BEFORE counts the pictures of the PGC that precede the VOB.
truth_subtitles() {
  local pgc=$1 vob=$2 before language=$4 start end flags text finish
  before=$(frames_to_seconds "$3")
  while IFS='|' read -r _ _ start end flags text; do
    finish=null
    if [ "$end" != - ]; then finish=$(add_seconds "$before" "$end"); fi
    printf '{"pgc": %d, "vob": "%s", "startInVob": %s, "start": %s, "end": %s, "forced": %s, "italic": %s, "lines": %s}\n' \
      "$pgc" "$vob" "$start" "$(add_seconds "$before" "$start")" "$finish" \
      "$(json_flag "$flags" forced)" "$(json_flag "$flags" italic)" "$(json_lines "$text")"
  done < <(subtitle_lines "$vob" "$language")
}

# truth_stream ID LANGUAGE
truth_stream() {
  printf '    {"stream": %d, "language": "%s", "subtitles": [\n' "$1" "$2"
  {
    truth_subtitles 1 A 0 "$2"
    truth_subtitles 1 B "$frames_a" "$2"
    truth_subtitles 2 C 0 "$2"
  } | sed 's/^/      /; $!s/$/,/'
  printf '    ]}'
}

write_truth() {
  {
    printf '{\n  "standard": "%s", "width": %d, "height": %d,\n' "$standard" "$width" "$height"
    printf '  "rateNumerator": %d, "rateDenominator": %d,\n' "$rate_numerator" "$rate_denominator"
    printf '  "counter": {"bits": %d, "left": %d, "top": %d, "step": %d, "box": %d},\n' \
      "$counter_bits" "$counter_left" "$counter_top" "$counter_step" "$counter_box"
    printf '  "vobs": [\n'
    printf '    {"vob": "A", "pgc": 1, "frames": %d, "firstCounter": %d},\n' "$frames_a" "$first_a"
    printf '    {"vob": "B", "pgc": 1, "frames": %d, "firstCounter": %d},\n' "$frames_b" "$first_b"
    printf '    {"vob": "C", "pgc": 2, "frames": %d, "firstCounter": %d}\n' "$frames_c" "$first_c"
    printf '  ],\n  "streams": [\n'
    truth_stream 32 en
    printf ',\n'
    truth_stream 33 fr
    printf '\n  ]\n}\n'
  } >"$output/truth.json"
}
