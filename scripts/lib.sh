# What the scripts share: packages, builds, announcements. Sourced, never run.
set -euo pipefail
called_from=$PWD
cd "$(dirname "${BASH_SOURCE[0]}")/.."
root=$PWD

# Debian's names. Building and running:
packages_run=(cmake ninja-build g++ ccache pkg-config libboost-dev libhwloc-dev libudev-dev
              libcli11-dev nlohmann-json3-dev libjs-d3 libexpat1-dev libssl-dev
              libedit-dev)
# The tests with GCC, on top of those; Clang lays out the interfaces for both ABIs, wbemcli is a
# client of the server, and completion and the manual page are for zsh and man:
packages_test=(libgtest-dev python3 python3-jsonschema clang doxygen sblim-wbemcli
               openssl zsh man-db)
# The whole run, on top of both: Clang's sanitizers, packages, the report in a browser, and Windows.
packages_full=(libclang-rt-14-dev dpkg-dev file fakeroot valgrind
               chromium chromium-driver python3-selenium)
packages_layout=(clang-format)
packages_tidy=(clang-tidy)
# Mutation testing and coverage.
packages_mutants=(clang python3-clang-14)
packages_coverage=(clang libclang-rt-14-dev llvm-14 gcovr)
# For the MSVC ABI: the headers that stand in for Microsoft's, and a reader of its objects.
packages_msvc=(libc++-14-dev mingw-w64-common llvm-14)
packages_windows=(g++-mingw-w64-x86-64-posix wine64 googletest)

# What one checkout has compiled serves the others, whose debug information then names the
# first one's folder.
export CCACHE_SLOPPINESS=pch_defines,time_macros CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=1
export CMAKE_BUILD_PARALLEL_LEVEL=${CMAKE_BUILD_PARALLEL_LEVEL:-$(nproc)}
export CTEST_PARALLEL_LEVEL=${CTEST_PARALLEL_LEVEL:-$(nproc)}

say() { printf '%s\n' "$*"; }
die() { printf '%s: %s\n' "${0##*/}" "$*" >&2; exit 1; }

# Prints the heading of a stage with the time since the script began.
announce() { printf '\n== [%d:%02d] %s\n' $((SECONDS / 60)) $((SECONDS % 60)) "$*"; }

# need_packages NAME...: installs those that are missing; false when that fails.
need_packages() {
  command -v dpkg-query >/dev/null || {
    say "This is no Debian machine: the packages are not checked. Needed: $*"
    return 0
  }
  local name missing=()
  for name in "$@"; do
    [[ $(dpkg-query -W -f '${db:Status-Status}' "$name" 2>/dev/null) == installed ]] ||
      missing+=("$name")
  done
  ((${#missing[@]})) || return 0

  local as_root=()
  if ((EUID != 0)); then
    command -v sudo >/dev/null || {
      say "Missing packages, and neither root nor sudo to install them: ${missing[*]}" >&2
      return 1
    }
    as_root=(sudo)
  fi
  say "Installing: ${missing[*]}"
  if [[ -z ${packages_updated:-} ]]; then
    "${as_root[@]}" apt-get update -qq </dev/null || return 1
    packages_updated=1
  fi
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}" </dev/null >/dev/null
}

# alone "$@": runs the script in a process group of its own. When what was called is interrupted or
# ended, all that the script has started ends as well: builds, tests and what they have started.
alone() {
  if [[ ${hav_alone:-} ]]; then
    unset hav_alone
    return
  fi
  local script=$root/scripts/${0##*/} group status=0
  set -m
  (cd "$called_from" && hav_alone=1 exec "$script" "$@") </dev/null &
  group=$!
  set +m
  trap "end_group $group" INT TERM HUP
  wait "$group" || status=$?
  exit "$status"
}

# end_group GROUP: ends its processes, with time to end what they have started, and exits.
end_group() {
  local tries
  trap '' INT TERM HUP
  kill -TERM -- "-$1" 2>/dev/null || true
  for ((tries = 0; tries < 100; ++tries)); do
    kill -0 -- "-$1" 2>/dev/null || break
    sleep 0.1
  done
  kill -KILL -- "-$1" 2>/dev/null || true
  exit 130
}

# build PRESET [TARGET...]: configures and builds into build/PRESET. Quiet unless it fails.
build() {
  local preset=$1 log=build/$1/build.log
  shift
  mkdir -p "build/$preset"
  {
    cmake --preset "$preset" &&
      cmake --build "build/$preset" ${1:+--target "$@"}
  } >"$log" 2>&1 </dev/null || {
    # Ninja goes on with what was under way, so the first error is seldom the last line.
    grep -nE '[Ee]rror|FAILED:|undefined reference' "$log" | head -n 40 >&2 || true
    say "-- the end of $log:" >&2
    tail -n 40 "$log" >&2
    return 1
  }
}
