#!/usr/bin/env bash
# same_bytes.sh SOURCES PRESET FOLDER: built again from a copy in another folder, without a compiler
# cache, the DLL, kestrel-try and their symbols are the same as in FOLDER byte for byte.
set -euo pipefail
copy=$(mktemp -d)
trap 'rm -rf "$copy"' EXIT
tar -C "$1" --exclude=./build --exclude=./node_modules --exclude=./.git -cf - . | tar -C "$copy" -xf -
cd "$copy"
unset CMAKE_CXX_COMPILER_LAUNCHER
cmake --preset "$2" -DKESTREL_TESTS=OFF
ninja -C "build/$2" dll try
for file in QM610rDRV1.dll QM610rDRV1.pdb kestrel-try.exe kestrel-try.pdb; do
  cmp "build/$2/$file" "$3/$file"
done
