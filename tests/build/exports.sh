#!/usr/bin/env bash
# exports.sh LIST MODULE: the module's dynamic symbols are the names of the export list and no other.
set -euo pipefail
diff <(sed -nE 's/^ +([A-Za-z]+).*/\1/p' "$1" | sort) <(nm -D --defined-only "$2" | awk '{print $3}' | sort) ||
  { echo "the names of $1 (<) and the symbols of $2 (>) differ"; exit 1; }
