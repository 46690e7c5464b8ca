#!/usr/bin/env bash
# commands_test.sh <project> <case>: runs one case.
set -euo pipefail

project="$1"
scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT
calls="$scratch/calls"
touch "$calls"
mkdir "$scratch/bin"

fail() {
  printf 'FAILED: %s\n' "$1" >&2
  [ ! -f "$scratch/out" ] || cat "$scratch/out" >&2
  exit 1
}

# stand_in <program> <script>: the program that is found under that name during the case.
stand_in() {
  printf '#!/bin/bash\n%s\n' "$2" >"$scratch/bin/$1"
  chmod +x "$scratch/bin/$1"
}

# missing <package…>: these are not installed, all others are.
missing() {
  stand_in dpkg-query "case \" $* \" in *\" \${!#} \"*) exit 1 ;; *) printf installed ;; esac"
}

user_is() { # <number>
  stand_in id "echo $1"
}

run_setup() { # <wanted end: 0 or 1> [package…]
  local wanted="$1" got=0
  shift
  PATH="$scratch/bin:$PATH" "$project/tools/setup" "$@" >"$scratch/out" 2>&1 </dev/null || got=$?
  [ "$got" -eq "$wanted" ] || fail "ended with $got and not with $wanted"
}

said() {
  grep -qF -- "$1" "$scratch/out" || fail "didn't say: $1"
}

apt_get_that() { # <script for installing>
  stand_in apt-get "printf '%s\n' \"\$*\" >>'$calls'; case \"\$*\" in *install*) $1 ;; esac"
}

NothingIsCalledWhenEverythingIsThere() {
  missing nothing
  apt_get_that true
  run_setup 0
  [ ! -s "$calls" ] || fail "called: $(cat "$calls")"
  [ ! -s "$scratch/out" ] || fail "said something"
}

OnlyWhatIsMissingIsInstalled() {
  missing openbox sqlite3
  user_is 0
  apt_get_that true
  run_setup 0
  grep -q ' update$' "$calls" || fail "the lists were not renewed"
  grep -q 'install -y --no-install-recommends sqlite3 openbox$' "$calls" || fail "called: $(cat "$calls")"
}

RemovedPackageThatLeftItsSettingsCountsAsMissing() {
  stand_in dpkg-query 'case "${!#}" in openbox) printf config-files ;; *) printf installed ;; esac'
  user_is 0
  apt_get_that true
  run_setup 0
  grep -q 'recommends openbox$' "$calls" || fail "called: $(cat "$calls")"
}

FurtherPackagesAreAskedFor() {
  missing qt6-wayland
  user_is 0
  apt_get_that true
  run_setup 0 qt6-wayland
  grep -q 'recommends qt6-wayland$' "$calls" || fail "called: $(cat "$calls")"
}

AnOldListOfPackagesStillServes() {
  missing openbox
  user_is 0
  stand_in apt-get "printf '%s\n' \"\$*\" >>'$calls'; case \"\$*\" in *update*) exit 100 ;; esac"
  run_setup 0
  grep -q 'recommends openbox$' "$calls" || fail "called: $(cat "$calls")"
}

RefusalToInstallIsSaidAndFails() {
  missing openbox
  user_is 0
  apt_get_that 'exit 100'
  run_setup 1
  said "setup: These packages can't be installed: openbox;"
}

UserWithoutSudoIsTold() {
  missing openbox
  user_is 1000
  apt_get_that true
  # A folder with nothing but what the script itself calls: there is no sudo on this path.
  local program
  for program in bash dirname grep; do
    ln -s "$(command -v "$program")" "$scratch/bin/$program"
  done
  local got=0
  PATH="$scratch/bin" "$(command -v bash)" "$project/tools/setup" >"$scratch/out" 2>&1 </dev/null || got=$?
  [ "$got" -eq 1 ] || fail "ended with $got"
  said "only root or a user with sudo can install them: openbox."
  [ ! -s "$calls" ] || fail "called: $(cat "$calls")"
}

UserWithSudoInstallsThroughIt() {
  missing openbox
  user_is 1000
  apt_get_that true
  stand_in sudo "printf 'sudo %s\n' \"\$*\" >>'$calls'; while [[ \"\$1\" = -* ]]; do shift; done; exec \"\$@\""
  run_setup 0
  grep -q '^sudo -n env DEBIAN_FRONTEND=noninteractive apt-get .* install .* openbox$' "$calls" ||
    fail "called: $(cat "$calls")"
}

OtherSystemIsTold() {
  local program
  for program in bash dirname grep; do
    ln -s "$(command -v "$program")" "$scratch/bin/$program"
  done
  local got=0
  PATH="$scratch/bin" "$(command -v bash)" "$project/tools/setup" >"$scratch/out" 2>&1 </dev/null || got=$?
  [ "$got" -eq 1 ] || fail "ended with $got"
  said "This isn't a Debian system"
}

WrongOptionOfRunIsTold() {
  local got=0
  (cd / && "$project/run" --sideways) >"$scratch/out" 2>&1 </dev/null || got=$?
  [ "$got" -eq 1 ] || fail "ended with $got"
  said "run: There is no option --sideways"
}

ContinuousIntegrationRunsTheTestCommand() {
  mkdir -p "$scratch/project/.ci"
  cp "$project/.ci/run" "$scratch/project/.ci/run"
  printf '#!/bin/bash\necho "test in CI=$CI with $*"; cat\n' >"$scratch/project/test"
  chmod +x "$scratch/project/test"
  (cd / && echo "not read" | "$scratch/project/.ci/run" -R Orgfrm) >"$scratch/out" 2>&1
  [ "$(cat "$scratch/out")" = "test in CI=true with -R Orgfrm" ] || fail "another outcome"
}

"$2"
