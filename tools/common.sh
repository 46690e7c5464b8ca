# Sourced by the scripts of the project: where the project lies, how a step fails, how a build is
# configured. Each script runs from any current folder.

set -euo pipefail

KESTRIX_ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)"
KESTRIX_COMMAND="${0##*/}"

# Qt wants file names in UTF-8, and a bare container has no locale at all.
if [ -z "${LC_ALL:-}${LC_CTYPE:-}${LANG:-}" ]; then
  export LANG=C.UTF-8
fi

# fail <sentence>: says what couldn't be done and ends the script.
fail() {
  printf '%s: %s\n' "$KESTRIX_COMMAND" "$1" >&2
  exit 1
}

# say <sentence>: one line about the step that begins.
say() {
  printf '== %s\n' "$1"
}

# build <preset> [option for configuring…]: configures the preset and builds all of it.
build() {
  local preset="$1"
  shift
  local folder="$KESTRIX_ROOT/build/$preset"
  local cache="$folder/CMakeCache.txt"
  # A build folder that came along with a copied or moved project names the old place everywhere.
  if [ -f "$cache" ] && ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$KESTRIX_ROOT" "$cache"; then
    rm -rf "$folder"
  fi
  cd "$KESTRIX_ROOT"
  cmake --preset "$preset" "$@" || fail "The build can't be configured; the reason stands above."
  cmake --build --preset "$preset" || fail "The build failed; the first error stands above."
}
