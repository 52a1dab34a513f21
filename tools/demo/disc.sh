# Putting program streams together to a DVD-Video folder.
# The variables not set here are set by the other parts.
# shellcheck shell=bash disable=SC2034,SC2154

menus_xml() {
  if [ ! -f "$work/menu.vob" ]; then return 0; fi
  cat <<XML
<menus lang="en">
  <video format="$standard" aspect="4:3"/><audio lang="en"/><subpicture lang="en"/>
  <pgc entry="root" pause="inf">
    <vob file="$work/menu.vob"/>
    <button name="b1">jump title 1;</button>
    <button name="b2">jump title 2;</button>
    <button name="b3">jump title 1 chapter 2;</button>
  </pgc>
</menus>
XML
}

# titles_xml: reads the titles' <pgc> elements from standard input.
titles_xml() {
  printf '<titles><video format="%s" aspect="4:3"/><audio lang="en"/>\n' "$standard"
  printf '<subpicture lang="en"/><subpicture lang="fr"/>\n'
  cat
  printf '</titles>\n'
}

# run_dvdauthor CONTROL: writes VIDEO_TS anew and moves it to the output folder.
run_dvdauthor() {
  quietly dvdauthor -o "$work/disc" -x "$1"
  if grep -E '^ERR' "$work"/dvdauthor.*.log >&2; then die "dvdauthor reported errors"; fi
  rm -rf "$output/VIDEO_TS"
  mv "$work/disc/VIDEO_TS" "$output/VIDEO_TS"
}

# continuation_sectors VOB: numbers of the sectors with a later pack of a subpicture unit, that is without
# a time stamp in the PES header that follows the 14 bytes of the pack header.
continuation_sectors() {
  LC_ALL=C grep -obUaP '(?s)\x00\x00\x01\xbd..[\x80-\xbf].\x00[\x20-\x3f]' "$1" |
    awk -F: '$1 % 2048 == 14 { print ($1 - 14) / 2048 }'
}

# cut_sectors VOB PIECES: first sectors of the pieces after the first, at uneven places; the first of them
# lies between two packs of one subpicture unit.
cut_sectors() {
  local sectors
  sectors=$(($(stat -c %s "$1") / 2048))
  continuation_sectors "$1" | awk -v total="$sectors" -v pieces="$2" '
    NR == 1 || $1 < total / pieces { first = $1 }
    END {
      if (!first) exit 1
      print first
      for (piece = 2; piece < pieces; piece++) print first + int((total - first) * (piece - 1) / (pieces - 1)) + piece
    }'
}

# cut_title_domain PIECES: VTS_01_1.VOB becomes VTS_01_1.VOB to VTS_01_PIECES.VOB.
cut_title_domain() {
  local pieces=$1 folder=$output/VIDEO_TS number=1 from=0 to sectors cuts
  cuts=$(cut_sectors "$folder/VTS_01_1.VOB" "$pieces") || die "no subpicture unit spans two packs"
  mv "$folder/VTS_01_1.VOB" "$work/whole.vob"
  sectors=$(($(stat -c %s "$work/whole.vob") / 2048))
  for to in $cuts "$sectors"; do
    dd if="$work/whole.vob" of="$folder/VTS_01_$number.VOB" bs=2048 skip="$from" count=$((to - from)) status=none
    from=$to
    number=$((number + 1))
  done
}
