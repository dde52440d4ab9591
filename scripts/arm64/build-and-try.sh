#!/usr/bin/env bash
# Run by scripts/check-arm64.sh in a root of Debian 12. Programs for arm64 run under qemu-user.
set -euo pipefail
export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8
# To emulate the architecture's own way of signing return addresses makes programs a hundred times slower.
export QEMU_CPU=max,pauth-impdef=on
cd "$(dirname "$0")/../.."

fail() {
  echo "build-and-try.sh: $1" >&2
  exit 1
}

as_arm64() { qemu-aarch64-static "$@"; }

check_the_console_program() {
  [[ $(as_arm64 /usr/bin/kelvinbar-snapshot --demo linux-pc | wc -l) -gt 20 ]] || fail "it prints no readings"
  [[ $(as_arm64 /usr/bin/kelvinbar-snapshot) == *"Physical Memory"* ]] || fail "it does not read this machine"
}

# Without a session bus, a first start opens the panel, which loads its module and the QML modules.
check_the_panel_opens() {
  local log home
  home=$(mktemp -d)
  log=$(HOME=$home QT_QPA_PLATFORM=offscreen KELVINBAR_LOG=debug timeout 120 qemu-aarch64-static /usr/bin/kelvinbar-demo 2>&1 |
    sed '/panel info: opened/q') || true
  rm -r "$home"
  grep -q 'panel info: opened' <<<"$log" || fail "the panel does not open: $log"
}

install_and_try() { # PACKAGE …
  local package
  for package in "$@"; do
    [[ $(dpkg-deb --field "$package" Architecture) == arm64 ]] || fail "$package is for another architecture"
  done
  apt-get install -y -qq --reinstall --no-install-recommends "$@" >/dev/null
}

dpkg --add-architecture arm64
scripts/install-dependencies.sh arm64
cmake --workflow --preset arm64-core
rm -rf build/arm64-packages/packages
cmake --workflow --preset arm64-packages
install_and_try ./build/arm64-packages/packages/*.deb
check_the_console_program
check_the_panel_opens
