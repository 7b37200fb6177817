#!/usr/bin/env bash
# answer_alike.sh ANSWERS IMAGE FOLDER CONTROL_WORD…: compares what the native module and the image
# return, store and show, the image under each control word of the x87. Leaves the native module's
# answers in FOLDER/answers.txt, for the comparison with another machine.
set -euo pipefail
answers=$1 image=$2 folder=$3
shift 3
actions=${ACTIONS:-5000}
env -u DRIVER_MODULE "$answers" "$actions" > "$folder/answers.txt"
for word in "$@"; do
  DRIVER_MODULE=$image "$answers" "$actions" "$word" > "$folder/answers-$word.txt"
  diff "$folder/answers.txt" "$folder/answers-$word.txt" | head -n 40
done
