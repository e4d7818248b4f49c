#!/usr/bin/env bash
# Creates (or refreshes) the demo ledger in the data directory and opens it.
#   tools/demo.sh BUILD_DIR
set -euo pipefail
build="$1"; shift
data="${PELKOR_HOME:-${XDG_DATA_HOME:-$HOME/.local/share}/pelkor}"
mkdir -p "$data"
demo="$data/demo.pkr"
# A year of a small business, made anew each time so that its dates end today.
"$build/pelkor-gen" "$demo" --demo
# The bank's side of it: the demonstration feed demo.mdb in the program's
# folder, made from the same ledger so that their dates agree.
"$build/tools/feed/pelkor-demofeed" "$demo" "$build/demo.mdb"
echo "pelkor: demo ledger at $demo"
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    cat <<TXT
pelkor: there is no display here, so the program was not started.
To see it anyway, run it under a virtual display:
    xvfb-run -a -s "-screen 0 1280x800x24" "$build/prjPelkor" open "$demo"
TXT
    exit 0
fi
exec "$build/prjPelkor" open "$demo"
