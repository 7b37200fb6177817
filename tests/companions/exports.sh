#!/bin/sh
# usage: exports.sh QM610rBAR.so QM610rLIB.so KINDS — the companion libraries export the entry points of
# every kind that the header KINDS lists, and nothing else
set -eu
shown() { nm -D --defined-only "$1" | awk '{print $3}' | LC_ALL=C sort; }
kinds=$(sed -nE 's/^ +KIND\([0-9]+, ([A-Z0-9]+),.*/\1/p' "$3")
[ -n "$kinds" ] || { echo "$3 lists no kind"; exit 1; }
expected=$(for k in $kinds; do printf '%s\n' "GetBarName$k" "Init$k" "ShowDlg$k"; done | LC_ALL=C sort)
[ "$(shown "$1")" = "$expected" ] || { echo "$1 shows:"; shown "$1"; exit 1; }
[ "$(shown "$2")" = "RtlGetModeComW
RtlGetVersionComW" ] || { echo "$2 shows:"; shown "$2"; exit 1; }
