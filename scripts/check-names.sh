#!/usr/bin/env bash
# Fails when two headers of the program give a type the same name. The program and its modules take functions from
# each other by name alone: with two types of one name, one of them would get the other's.
# usage: scripts/check-names.sh
set -euo pipefail
cd "$(dirname "$0")/.."
repeated=$(git ls-files '*.h' ':!tests' ':!fuzz' | xargs sed -nE 's/^(class|struct|enum class) ([A-Za-z0-9_]+)( final)?( *:[^:].*)? *\{.*/\2/p' | sort | uniq -d)
[[ -z $repeated ]] || { echo "Several headers have a type of the name: $repeated" >&2; exit 1; }
echo "Names: each type has its own"
