#!/usr/bin/env bash
# A new user unpacks the ZIP package into a fresh folder and starts the
# program from there, with no settings file. At the first close the program
# writes its settings; the user's choices of an earlier save (every ride
# template and trees of the fir kind) are then ticked in that file. The user
# opens the sample ride of media\Samples and saves it with Ctrl+S through
# the file prompt (a nameless sketch goes straight to it). Beside the EPS
# file come the six ride shows and the four track files; every file a show
# names exists.
# Usage: installed_ride.sh UNPACKED_QUILLMERE_EXE
source "$(dirname "${BASH_SOURCE[0]}")/../e2e/lib.sh"
e2e_begin "$@"

program_dir=$(dirname "$EXE")
ride=$program_dir/media/Samples/Ride.qo
[ -f "$ride" ] || fail "the package has no sample ride"

# ---- First start of a new user: no settings file yet.
[ -z "$(settings_file)" ] || fail "a settings file is there before the first start"
start_quillmere
wait_for_main_window 90
expect_title "Quillmere - Untitled (0 points) [DRAW FREEHAND]" 30
grep -q '^Quillmere: ' "$QLOG" && fail "a message was shown: $(grep '^Quillmere: ' "$QLOG")"
activate_main_window
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
        fields[2] = "Y" if fields[1] in ("2", "3", "4", "5", "6", "7") else "N"
        ticked += fields[2] == "Y"
    if fields[0] == "TreeType" and len(fields) == 2:
        fields[1] = "3"
    lines[i] = "\t".join(fields)
assert ticked == 6, ticked
open(path, "wb").write(b"\xff\xfe" + "\r\n".join(lines).encode("utf-16-le"))
PYTHON

# ---- The sample ride, saved through the save dialog and the prompt.
rm -f "$OUT"/ride*
start_quillmere "$(windows_path "$ride")"
wait_for_main_window 90
for _ in $(seq 300); do
  [[ "$(main_title)" == "Quillmere - Untitled ("*" points) [EDIT SKETCH]" ]] && break
  sleep 0.1
done
[[ "$(main_title)" == "Quillmere - Untitled ("*" points) [EDIT SKETCH]" ]] ||
  fail "the ride did not open: $(main_title)"
grep -q '^Quillmere: ' "$QLOG" && fail "a message was shown: $(grep '^Quillmere: ' "$QLOG")"
activate_main_window
press ctrl+s
wait_for_dialog "Save sketch" 30
eps_path=$(windows_path "$OUT")\\ride.eps
press_in_dialog
type_text "$eps_path"
press_in_dialog Return
wait_for_dialog_gone 20
for _ in $(seq 300); do
  [[ "$(main_title)" == "Quillmere - ride.eps ("* ]] && break
  sleep 0.1
done
[[ "$(main_title)" == "Quillmere - ride.eps ("* ]] || fail "not saved: $(main_title)"
grep -q '^Quillmere: ' "$QLOG" && fail "a message was shown: $(grep '^Quillmere: ' "$QLOG")"
activate_main_window
close_with_alt_f4
expect_exit_code 0 30

for name in ride.eps ride_Structure.eps ride_Foundation.eps ride_Trunks.eps ride_Leaves.eps \
  ride_Rollercoaster1stPerson.cnd ride_Rollercoaster3rdPerson.cnd ride_Road1stPerson.cnd \
  ride_Road3rdPerson.cnd ride_Bob1stPerson.cnd ride_Bob3rdPerson.cnd; do
  [ -s "$OUT/$name" ] || fail "no file $name beside the EPS"
done
for name in ride_SpinningLogo.cnd ride_HandwrittenText.cnd ride_Tunnel.cnd; do
  [ -e "$OUT/$name" ] && fail "a show of a template that was not ticked: $name"
done

# Every quoted path of every show exists; Wine shows the machine's root as
# drive Z.
python3 - "$OUT" <<'PYTHON' || fail "a show names a file that is not there"
import glob, os, re, sys
out = sys.argv[1]
for show in sorted(glob.glob(os.path.join(out, "ride_*.cnd"))):
    data = open(show, "rb").read()
    assert data.startswith(b"\xff\xfe"), show + ": no UTF-16 LE mark"
    text = data[2:].decode("utf-16-le")
    lines = text.split("\r\n")
    assert lines[0] == "Cinderlane Show 4 7", show
    assert re.fullmatch(r"LEN\t\d+", lines[1]), lines[1]
    assert "[" not in text, show + ": a marker is left"
    paths = [p for p in re.findall(r'"([^"]*)"', text) if "\\" in p]
    models = [p for p in paths if p.lower().endswith(".obj")]
    for p in paths:
        assert p[:2].upper() == "Z:", p
        unix = p[2:].replace("\\", "/")
        # Wine finds a file in any case of its folders' names.
        found = os.path.exists(unix) or any(
            os.path.exists(c) for c in glob.glob(os.path.join(os.path.dirname(unix).replace("/Media/", "/[Mm]edia/"), os.path.basename(unix))))
        assert found, "%s names %s" % (os.path.basename(show), p)
    assert models and all(m.endswith("\\Fir.obj") for m in models), os.path.basename(show)
    print("%s: %d files named, %d fir trees" % (os.path.basename(show), len(paths), len(models)))
PYTHON
echo "PASS ($E2E_NAME)"
