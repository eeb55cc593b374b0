#!/usr/bin/env bash
# A user who has ticked the roller coaster (1st person) and tunnel shows in
# an earlier save opens a ride from a track file and saves it with Ctrl+S.
# Beside the EPS file come the two shows and the ride's four track files;
# each show names the sketch's path, the tunnel's track markers are empty,
# and the coaster's trees (Oak, the default kind) stand in a container
# behind the template's three layers.
#
# The test templates of tests/data/shows are installed beside Quillmere.exe,
# in the folder where the program looks them up (Media\Templates and
# Media\Models below its own folder). The ticks are written into the
# settings file between a first start, which writes the file, and the
# second start.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
e2e_begin "$@"

# ---- The test templates beside the program, in a media folder of any case.
program_dir=$(dirname "$EXE")
media=$(find "$program_dir" -maxdepth 1 -type d -iname media | head -n 1)
[ -n "$media" ] || media=$program_dir/Media
installed=()
for sub in Templates Models; do
  target=$(find "$media" -maxdepth 1 -type d -iname "$sub" 2>/dev/null | head -n 1)
  if [ -z "$target" ]; then
    target=$media/$sub
    installed+=("$target")
  fi
  mkdir -p "$target"
  cp "$E2E_ROOT/tests/data/shows/Media/$sub/"* "$target/" || fail "could not install the test $sub"
done
remove_installed() {
  local folder
  for folder in "${installed[@]}"; do rm -rf "$folder"; done
  rmdir "$media" 2>/dev/null
  e2e_cleanup
}
trap remove_installed EXIT

# ---- First start: the settings file of a new user.
start_quillmere
wait_for_main_window 60
expect_title "Quillmere - Untitled (0 points) [DRAW FREEHAND]"
close_with_alt_f4
expect_exit_code 0 30
file=$(settings_file) || fail "no settings file after the first close"
python3 - "$file" <<'PYTHON' || fail "could not tick the templates in $file"
import sys
path = sys.argv[1]
data = open(path, "rb").read()
assert data.startswith(b"\xff\xfe"), "no UTF-16 LE mark"
lines = data[2:].decode("utf-16-le").split("\r\n")
ticked = 0
for i, line in enumerate(lines):
    fields = line.split("\t")
    if fields[0] == "Template" and len(fields) == 3:
        fields[2] = "Y" if fields[1] in ("2", "8") else "N"
        ticked += fields[2] == "Y"
        lines[i] = "\t".join(fields)
assert ticked == 2, ticked
open(path, "wb").write(b"\xff\xfe" + "\r\n".join(lines).encode("utf-16-le"))
PYTHON
settings_text | grep '^Template	' | tr '\t' ' '

# ---- The ride: a straight, a climbing turn and a hill (6 points).
track=$OUT/ride.qo
printf '%s\r\n' \
  'Quillmere track' \
  'Move 0 0 0 90' \
  'Element "Straight line" 100' \
  'Element Turn 180 50 20 0' \
  'Element Hill 80 30' >"$track"
rm -f "$OUT"/ride*.eps "$OUT"/ride*.cnd

start_quillmere "$(windows_path "$track")"
wait_for_main_window 60
expect_title "Quillmere - Untitled (6 points) [EDIT SKETCH]"
sleep 1
shot 1-opened

press ctrl+s
wait_for_dialog "Save sketch" 20
eps_path=$(windows_path "$OUT")\\ride.eps
press_in_dialog
type_text "$eps_path"
press_in_dialog Return
wait_for_dialog_gone 20
expect_title "Quillmere - ride.eps (6 points) [EDIT SKETCH]"
grep -q '^Quillmere: ' "$QLOG" && fail "a message was shown: $(grep '^Quillmere: ' "$QLOG")"
shot 2-saved
close_with_alt_f4
expect_exit_code 0 30

ls -l "$OUT" | sed -n 's/.* \(ride[^ ]*\)$/written: \1/p'
for name in ride.eps ride_Rollercoaster1stPerson.cnd ride_Tunnel.cnd ride_Structure.eps \
  ride_Foundation.eps ride_Trunks.eps ride_Leaves.eps; do
  [ -s "$OUT/$name" ] || fail "no file $name beside the EPS"
done
for name in ride_Rollercoaster1stPerson.cnd ride_Tunnel.cnd; do
  [ "$(head -c 2 "$OUT/$name" | od -An -tx1 | tr -d ' ')" = "fffe" ] || fail "$name has no UTF-16 LE mark"
done
[ -e "$OUT/ride_SpinningLogo.cnd" ] && fail "a show of a template that was not ticked"

program_windows_dir=$(windows_path "$program_dir")
python3 - "$OUT" "$eps_path" "$program_windows_dir" <<'PYTHON' || fail "the shows do not hold what they should"
import os, sys
out, eps, program = sys.argv[1], sys.argv[2], sys.argv[3]
def show(name):
    return open(os.path.join(out, name), "rb").read()[2:].decode("utf-16-le")
coaster = show("ride_Rollercoaster1stPerson.cnd")
tunnel = show("ride_Tunnel.cnd")
for text in (coaster, tunnel):
    assert "[" not in text, "a marker is left: " + text[text.index("["):][:10]
    assert "FNA\t\"%s\"\t19" % eps in text, "no sketch path"
    assert "MPA\t\"%s\\Media\\Textures\\Road.png\"" % program in text, "no road texture"
base = eps[:-len(".eps")]
assert "FNA\t\"%s_Structure.eps\" \"%s_Foundation.eps\"" % (base, base) in coaster
assert "FNA\t\"\" \"\"" in tunnel, "the tunnel names track files"
assert "VIS\tN" in coaster and "VIS\tY" in tunnel
trees = coaster.count("LAY Model\r\n")
print("coaster show: %d characters, %d tree models" % (len(coaster), trees))
assert "LAY\tContainer\r\nNAM \"Realistic trees\"PHY\t0\r\n" in coaster
assert trees >= 1 and coaster.count("PAL 4\r\n") == trees
assert "MOP \"%s\\Media\\Models\\Oak.obj\"" % program in coaster
assert "LAY\tContainer" not in tunnel
structure = open(os.path.join(out, "ride_Structure.eps"), "rb").read().decode("latin-1")
print("pillars:", structure.count(" moveto"))
assert structure.count(" moveto") >= 1 and structure.endswith("%%EOF\r\n")
PYTHON
echo "PASS ($E2E_NAME)"
