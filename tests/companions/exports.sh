#!/bin/sh
# usage: exports.sh QM610rBAR.so QM610rLIB.so KINDS
# Checks that the companion libraries export only the entry points of the kinds in the header KINDS and
# the two of the device library.
set -eu
exported() { nm -D --defined-only "$1" | awk '{print $3}' | LC_ALL=C sort; }
kinds=$(sed -nE 's/^ +KIND\([0-9]+, ([A-Z0-9]+),.*/\1/p' "$3")
[ -n "$kinds" ] || { echo "$3 lists no kind"; exit 1; }
expected=$(for k in $kinds; do printf '%s\n' "GetBarName$k" "Init$k" "ShowDlg$k"; done | LC_ALL=C sort)
[ "$(exported "$1")" = "$expected" ] || { echo "$1 exports:"; exported "$1"; exit 1; }
[ "$(exported "$2")" = "RtlGetModeComW
RtlGetVersionComW" ] || { echo "$2 exports:"; exported "$2"; exit 1; }
