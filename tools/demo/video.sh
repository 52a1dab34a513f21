# Pictures and sound of the discs.
# The variables not set here are set by the other parts.
# shellcheck shell=bash disable=SC2034,SC2154

# The counter's bits as a row of boxes, most significant first: white is 1, black is 0.
counter_bits=12 counter_left=72 counter_top=32 counter_step=48 counter_box=40

# counter_filter FIRST: draws the picture's number FIRST, FIRST+1, ... as a bar code and as digits.
counter_filter() {
  local first=$1 bit left
  printf 'drawbox=x=%d:y=%d:w=%d:h=%d:color=black:t=fill' \
    $((counter_left - 8)) $((counter_top - 8)) $((counter_bits * counter_step + 8)) $((counter_box + 16))
  for ((bit = counter_bits - 1; bit >= 0; bit--)); do
    left=$((counter_left + (counter_bits - 1 - bit) * counter_step))
    printf ",drawbox=x=%d:y=%d:w=%d:h=%d:color=white:t=fill:enable='mod(floor((n+%d)/%d)\\,2)'" \
      "$left" "$counter_top" "$counter_box" "$counter_box" "$first" $((1 << bit))
  done
  printf ",drawtext=fontfile=%s:text='%%{eif\\:n+%d\\:d\\:4}':x=300:y=96:fontsize=48:fontcolor=white:box=1:boxcolor=black" \
    "$(font_file 'DejaVu Sans:bold')" "$first"
}

# encode_video FILTER SOURCE FRAMES TONE BITRATE OUT: a program stream with empty navigation packs.
encode_video() {
  local filter=$1 source=$2 frames=$3 tone=$4 bitrate=$5 out=$6
  quietly ffmpeg -v error -nostdin -y \
    -f lavfi -i "$source=size=${width}x$height:rate=$rate" \
    -f lavfi -i "sine=frequency=$tone:sample_rate=48000" \
    -frames:v "$frames" -t "$(frames_to_seconds "$frames")" \
    -vf "format=yuv420p,$filter" -target "$standard-dvd" -aspect 4:3 \
    -bf 2 ${gop:+-g "$gop"} -flags +cgop -sc_threshold 1000000000 -b:v "$bitrate" -ac 2 -b:a 192k \
    -threads 1 -fflags +bitexact -flags:a +bitexact "$out"
}
