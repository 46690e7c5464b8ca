#!/usr/bin/env bash
# links_test.sh <project> <case>: the links between the documents of the project.
set -euo pipefail

project="$1"
scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT

fail() {
  printf 'FAILED: %s\n' "$1" >&2
  exit 1
}

# links_of <file>: what its links name, one a line, without those to the web and within the page.
links_of() {
  { grep -oP '\]\(\K[^)#\s]+' "$1" || true; } | { grep -vP '^[a-z]+:' || true; }
}

documents_of() { # <project>
  find "$1/README.md" "$1"/docs/*.md
}

# broken_links <project>: "<file>: <link>" for each link that leads nowhere.
broken_links() {
  local document link
  for document in $(documents_of "$1"); do
    for link in $(links_of "$document"); do
      [ -e "$(dirname "$document")/$link" ] || printf '%s: %s\n' "${document#"$1"/}" "$link"
    done
  done
}

EveryLinkLeadsSomewhere() {
  local document broken
  [ "$(for document in $(documents_of "$project"); do links_of "$document"; done | wc -l)" -ge 20 ] ||
    fail "hardly any link was found"
  broken="$(broken_links "$project")"
  [ -z "$broken" ] || fail "links that lead nowhere: $broken"
}

LinkThatLeadsNowhereIsFound() {
  local found
  mkdir "$scratch/docs"
  printf '%s\n' '[one](docs/one.md) [web](https://example.org/) ![picture](docs/none.png)' \
    >"$scratch/README.md"
  printf '%s\n' '[back](../README.md#start), [lost](lost.md) and [here](#below)' >"$scratch/docs/one.md"
  found="$(broken_links "$scratch" | xargs)"
  [ "$found" = "README.md: docs/none.png docs/one.md: lost.md" ] || fail "found \"$found\""
}

"$2"
