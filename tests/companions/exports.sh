#!/bin/sh
# usage: exports.sh QM610rBAR.so QM610rLIB.so — the companion libraries show their entry points and nothing else
set -eu
shown() { nm -D --defined-only "$1" | awk '{print $3}' | LC_ALL=C sort; }
kinds="UPCA UPCE JAN8 JAN13 CODE39 CODE93 CODE128 UCC128 INT25 NW7 CUSTOM RSS QR1 QR2 QRM PDF417 MAXI ECC MPDF417"
expected=$(for k in $kinds; do printf '%s\n' "GetBarName$k" "Init$k" "ShowDlg$k"; done | LC_ALL=C sort)
[ "$(shown "$1")" = "$expected" ] || { echo "$1 shows:"; shown "$1"; exit 1; }
[ "$(shown "$2")" = "RtlGetModeComW
RtlGetVersionComW" ] || { echo "$2 shows:"; shown "$2"; exit 1; }
