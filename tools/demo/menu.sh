# The menu: three buttons drawn by highlights over a still picture.
# The variables not set here are set by the other parts.
# shellcheck shell=bash disable=SC2034,SC2154

menu_left=160
menu_labels=('Play all' 'Second title' 'From the middle')
menu_tops=(200 260 320)

# menu_layer COLOUR OUT: the three labels with a bar below each.
menu_layer() {
  local colour=$1 out=$2 number draw=()
  for number in "${!menu_labels[@]}"; do
    draw+=(-annotate "+$((menu_left + 16))+$((menu_tops[number] + 32))" "${menu_labels[number]}"
      -draw "rectangle $((menu_left + 16)),$((menu_tops[number] + 40)) $((menu_left + 360)),$((menu_tops[number] + 44))")
  done
  convert -size "${width}x$height" xc:none +antialias -font "$text_font" -pointsize 30 -fill "$colour" "${draw[@]}" \
    -channel A -threshold 50% +channel -define png:exclude-chunks=date,time "PNG32:$out"
}

menu_spumux_list() {
  local number
  printf '<subpictures format="%s"><stream>\n' "$VIDEO_FORMAT"
  printf '<spu start="0.0" image="%s" highlight="%s" select="%s" force="yes">\n' \
    "$work/menu-image.png" "$work/menu-highlight.png" "$work/menu-select.png"
  for number in "${!menu_tops[@]}"; do
    printf '<button name="b%d" x0="%d" y0="%d" x1="%d" y1="%d"/>\n' $((number + 1)) \
      "$menu_left" "${menu_tops[number]}" $((menu_left + 400)) $((menu_tops[number] + 50))
  done
  printf '</spu></stream></subpictures>\n'
}

make_menu() {
  encode_video "drawbox=x=100:y=150:w=520:h=250:color=navy:t=fill" smptebars "$(seconds_to_frames 2)" 330 800k "$work/menu.mpg"
  menu_layer '#e0e0e0' "$work/menu-image.png"
  menu_layer '#ffc000' "$work/menu-highlight.png"
  menu_layer '#ff4000' "$work/menu-select.png"
  menu_spumux_list >"$work/menu.xml"
  mux_subtitles 0 "$work/menu.xml" "$work/menu.mpg" "$work/menu.vob"
}
