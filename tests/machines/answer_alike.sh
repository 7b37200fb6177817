#!/usr/bin/env bash
# answer_alike.sh ANSWERS IMAGE FOLDER CONTROL_WORD…: compares the digests of the native module and
# of the image under each x87 control word. Leaves the native module's in FOLDER/answers.txt.
set -euo pipefail
answers=$1 image=$2 folder=$3
shift 3
actions=${ACTIONS:-5000}
env -u DRIVER_MODULE "$answers" "$actions" > "$folder/answers.txt"
for word in "$@"; do
  DRIVER_MODULE=$image "$answers" "$actions" "$word" > "$folder/answers-$word.txt"
  diff "$folder/answers.txt" "$folder/answers-$word.txt" | head -n 40
done
