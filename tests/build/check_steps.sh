#!/usr/bin/env bash
# check_steps.sh CHECK CONTRIBUTING: ./check lists its steps, runs only steps that it has, and the table of
# CONTRIBUTING names each of them.
set -uo pipefail
fail() { echo "$*"; exit 1; }
steps=$("$1" --help | sed -nE 's/^  ([a-z0-9]+) .*/\1/p') || fail "--help failed"
for step in $steps; do
  grep -qE "^\|.*\`$step\`.*\|" "$2" || grep -qE "^\./check $step( |$)" "$2" || fail "$2 does not name the step $step"
done
for unknown in fromat '.*'; do
  output=$("$1" format "$unknown" 2>&1)
  status=$?
  [ "$status" = 2 ] || fail "./check format '$unknown' ended with $status: $output"
  ! grep -q 'passed' <<< "$output" || fail "./check format '$unknown' ran a step: $output"
done
