#!/usr/bin/env bash
# same_bytes.sh SOURCES PRESET DLL: built again from a copy in another folder, without a compiler
# cache, the DLL and its symbols are the same byte for byte.
set -euo pipefail
copy=$(mktemp -d)
trap 'rm -rf "$copy"' EXIT
tar -C "$1" --exclude=./build --exclude=./node_modules --exclude=./.git -cf - . | tar -C "$copy" -xf -
cd "$copy"
unset CMAKE_CXX_COMPILER_LAUNCHER
cmake --preset "$2" -DKESTREL_TESTS=OFF
ninja -C "build/$2" dll
for file in "$3" "${3%.dll}.pdb"; do cmp "build/$2/$(basename "$file")" "$file"; done
