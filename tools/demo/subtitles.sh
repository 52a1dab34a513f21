# Subtitles: rendering to four colours, muxing, and the list of what the disc holds.
# The variables not set here are set by the other parts.
# shellcheck shell=bash disable=SC2034,SC2154

# subtitle_lines VOB STREAM: that part of the list, one subtitle a line.
subtitle_lines() {
  grep "^$1|$2|" "$here/demo/subtitles.txt"
}

has_flag() {
  [[ ",$1," == *",$2,"* ]]
}

# render_text FLAGS COLOURS TEXT OUT: text on a transparent strip as wide as the picture, in exactly
# four colours. COLOURS is "fill shade outline".
render_text() {
  local flags=$1 fill shade outline slant=0x0 size=30 strip=128
  read -r fill shade outline <<<"$2"
  if has_flag "$flags" italic; then slant=0x14; fi
  if has_flag "$flags" large; then size=40 strip=184; fi
  local layer=(-alpha off -compose CopyOpacity -composite)
  convert -size "${width}x$strip" xc:black +antialias -font "$text_font" -pointsize "$size" -fill white \
    -gravity center -annotate "$slant" "${3//|/\\n}" -colorspace gray -threshold 50% \
    -write mpr:fill -morphology Dilate Square:1 -write mpr:shade +delete \
    mpr:fill -morphology Dilate Disk:3 -write mpr:outline +delete \
    xc:none \( "xc:$outline" mpr:outline "${layer[@]}" \) -compose Over -composite \
    \( "xc:$shade" mpr:shade "${layer[@]}" \) -compose Over -composite \
    \( "xc:$fill" mpr:fill "${layer[@]}" \) -compose Over -composite \
    -define png:exclude-chunks=date,time "PNG32:$4"
}

# The strip's upper edge in the picture.
strip_top() {
  if has_flag "$1" top; then echo 96
  elif has_flag "$1" large; then echo $((height - 224))
  else echo $((height - 160)); fi
}

# spumux_list VOB STREAM COLOURS: renders the subtitles and prints the list that spumux reads.
spumux_list() {
  local vob=$1 stream=$2 colours=$3 start end flags text number=0 image attributes
  printf '<subpictures format="%s"><stream>\n' "$VIDEO_FORMAT"
  while IFS='|' read -r _ _ start end flags text; do
    image="$work/$vob-$stream-$((++number)).png"
    render_text "$flags" "$colours" "$text" "$image"
    attributes="start=\"$start\" image=\"$image\" xoffset=\"0\" yoffset=\"$(strip_top "$flags")\""
    if [ "$end" != - ]; then attributes+=" end=\"$end\""; fi
    if has_flag "$flags" forced; then attributes+=' force="yes"'; fi
    printf '<spu %s/>\n' "$attributes"
  done < <(subtitle_lines "$vob" "$stream")
  printf '</stream></subpictures>\n'
}

# add_subtitles VOB IN OUT COLOURS_EN COLOURS_FR: muxes both streams into a program stream.
add_subtitles() {
  local vob=$1 in=$2 out=$3
  spumux_list "$vob" en "$4" >"$work/$vob-en.xml"
  spumux_list "$vob" fr "$5" >"$work/$vob-fr.xml"
  mux_subtitles 0 "$work/$vob-en.xml" "$in" "$out.en"
  mux_subtitles 1 "$work/$vob-fr.xml" "$out.en" "$out"
  rm "$in" "$out.en"
}

# mux_subtitles NUMBER LIST IN OUT: adds the list's subpictures as stream NUMBER.
mux_subtitles() {
  local log="$4.log"
  spumux -m dvd -s "$1" "$2" <"$3" >"$4" 2>"$log" || { cat "$log" >&2; die "spumux failed"; }
  if grep -E '^(ERR|WARN)' "$log" >&2; then die "spumux complained"; fi
}
