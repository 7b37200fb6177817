# Shared by ./run and ./check: the Debian packages they need and the way they build. Source it; it
# speaks on standard error only.

# llvm-rc preprocesses the resource script with clang; the sheet's page needs a Japanese font.
runPackages=(g++ cmake ninja-build pkg-config llvm clang lld libsqlite3-dev libfontconfig-dev
             nlohmann-json3-dev libboost-dev libcli11-dev libmd-dev fonts-noto-cjk)
checkPackages=("${runPackages[@]}" git ccache clang-format clang-tidy libclang-rt-14-dev
               g++-12-multilib libgtest-dev libgmock-dev libbenchmark-dev python3 nodejs npm chromium)

say() { printf '%s\n' "$*" >&2; }

# need PACKAGE…: installs those that are missing.
need() {
  command -v dpkg-query > /dev/null || return 0 # not a Debian system: the build reports what is missing
  local missing
  mapfile -t missing < <(comm -23 <(printf '%s\n' "$@" | sort -u) <(
    dpkg-query -W -f='${db:Status-Status} ${Package}\n' "$@" 2> /dev/null | sed -n 's/^installed //p' | sort -u))
  # node and npm often come from elsewhere than Debian's packages.
  local wanted=() package
  for package in "${missing[@]}"; do
    case $package in
      nodejs) command -v node > /dev/null && continue ;;
      npm | git | python3) command -v "$package" > /dev/null && continue ;;
    esac
    wanted+=("$package")
  done
  ((${#wanted[@]})) || return 0
  say "installing packages: ${wanted[*]}"
  local asRoot=()
  ((EUID == 0)) || asRoot=(sudo)
  export DEBIAN_FRONTEND=noninteractive
  "${asRoot[@]}" apt-get update -qq >&2
  "${asRoot[@]}" apt-get install -y -qq --no-install-recommends "${wanted[@]}" >&2 < /dev/null
}

# The files for Windows, DLL and kestrel-try of three machines, each machine a build of its own.
buildWindows() {
  local machine
  for machine in x86 x64 arm64; do build "windows/$machine" dll try || return; done
}

# The driver that printhost installs.
buildDriver() { build windows/x64 dll; }

# build PRESET TARGET…: configures when that was not done yet, then builds. One build of a folder at
# a time.
build() {
  local preset=$1 folder=$root/build/$1
  shift
  if command -v ccache > /dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache CMAKE_C_COMPILER_LAUNCHER=ccache
    export CCACHE_NOHASHDIR=1 CCACHE_BASEDIR=$root CCACHE_DEPEND=1
    export CCACHE_SLOPPINESS=pch_defines,time_macros # without these it does not cache users of precompiled headers
  fi
  mkdir -p "$folder"
  (
    flock 9
    cd "$root"
    # A checkout that moved has to be configured anew.
    if ! grep -qsxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$folder/CMakeCache.txt"; then
      rm -rf "$folder/CMakeCache.txt" "$folder/CMakeFiles"
    fi
    [ -e "$folder/build.ninja" ] && [ -e "$folder/CMakeCache.txt" ] || cmake --preset "$preset"
    ninja -C "$folder" "$@"
  ) 9> "$folder/.lock" > >(sed -u -e '/^ninja: no work to do/d' -e '/^ninja: Entering/d' -e '/Re-checking globbed/d' >&2) 2>&1
}
