#!/usr/bin/env bash
# Run by scripts/check-packages.sh in a bare root, whose /root/packages has the packages of revision 1 and 2, and as
# revision 0.1 the first that were made.
set -euo pipefail
export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8
cd /root/packages
timer_link=/etc/systemd/system/timers.target.wants/kelvinbar-snapshot.timer
metrics=/var/lib/prometheus/node-exporter/kelvinbar.prom
preferences=/home/tester/.config/kelvinbar/kelvinbar.conf

fail() {
  echo "try-packages.sh: $1" >&2
  exit 1
}

quietly() { "$@" >/tmp/output 2>&1 || { cat /tmp/output >&2; fail "failed: $*"; }; }

install_packages() { quietly apt-get install -y --no-install-recommends "$@"; }

# All files but those of the package manager, of users and of a moment.
all_files() {
  find / -xdev \( -path /proc -o -path /sys -o -path /dev -o -path /run -o -path /tmp -o -path /root -o -path /home \
    -o -path /var/cache -o -path /var/log -o -path /var/lib/apt -o -path /var/lib/dpkg \) -prune -o -print | sort
}

remember_files() { all_files >/tmp/before; }

check_nothing_is_left() {
  all_files | diff /tmp/before - >&2 || fail "files have come or gone"
  ! dpkg-query --show 'kelvinbar*' 2>/dev/null | grep . >&2 || fail "the package manager still knows a package"
}

check_version() { # PROGRAM
  [[ $("$1" --version) == "$1 $(dpkg-deb --field 1/kelvinbar_*.deb Version | sed 's/-.*//')" ]] || fail "$1 has another version"
}

check_revision() { # PACKAGE REVISION
  [[ $(dpkg-query --show --showformat '${Version}' "$1") == *-"$2" ]] || fail "$1 is not of revision $2"
}

check_the_timer_is_off() {
  [[ -f /usr/lib/systemd/system/kelvinbar-snapshot.timer ]] || fail "there is no timer"
  [[ ! -e $timer_link ]] || fail "the timer is on after the installation"
}

# What an administrator and the service leave. systemd does not run here.
use_the_timer() {
  mkdir -p "${timer_link%/*}" "${metrics%/*}"
  ln -s /usr/lib/systemd/system/kelvinbar-snapshot.timer "$timer_link"
  touch "$metrics"
}

console_program_alone() {
  remember_files
  install_packages ./1/kelvinbar-snapshot_*.deb
  ! dpkg-query --show 'libqt6*' 2>/dev/null | grep . >&2 || fail "the console program needs Qt"
  check_version kelvinbar-snapshot
  [[ $(kelvinbar-snapshot --demo linux-pc | wc -l) -gt 20 ]] || fail "the console program prints no readings"
  check_the_timer_is_off
  use_the_timer
  quietly apt-get remove -y kelvinbar-snapshot
  [[ ! -e $metrics ]] || fail "old readings stay for Prometheus"
  quietly apt-get purge -y kelvinbar-snapshot
  rmdir --parents --ignore-fail-on-non-empty "${metrics%/*}" "${timer_link%/*}"
  check_nothing_is_left
}

install_what_the_program_needs() {
  local needed
  needed=$(dpkg-deb --field 1/kelvinbar_*.deb Depends | sed 's/kelvinbar-snapshot ([^)]*), //')
  quietly apt-get satisfy -y --no-install-recommends "$needed"
}

# Without a session bus, a first start opens the panel, which loads its module and the QML modules.
check_the_panel_opens() {
  local log
  log=$(su tester -c 'QT_QPA_PLATFORM=offscreen KELVINBAR_LOG=debug timeout 20 kelvinbar-demo 2>&1') || true
  grep -q 'panel info: opened' <<<"$log" || fail "the panel does not open: $log"
  ! grep 'is not installed\|cannot be loaded\|Cannot load' <<<"$log" >&2 || fail "something that the panel needs is missing"
}

user_with_preferences() {
  useradd --create-home tester
  su tester -c "mkdir -p ${preferences%/*} && echo kept >$preferences"
}

both_packages() {
  install_what_the_program_needs
  remember_files
  install_packages ./0.1/*.deb
  check_revision kelvinbar 0.1
  install_packages ./1/*.deb
  check_revision kelvinbar 1
  check_version kelvinbar
  check_version kelvinbar-demo
  check_version kelvinbar-snapshot
  check_the_panel_opens
  install_packages ./2/*.deb
  check_revision kelvinbar 2
  check_revision kelvinbar-snapshot 2
  check_version kelvinbar
  quietly apt-get remove -y kelvinbar kelvinbar-snapshot
  quietly dpkg --purge kelvinbar kelvinbar-snapshot
  check_nothing_is_left
  [[ $(<"$preferences") == kept ]] || fail "the preferences of a user have changed"
}

quietly apt-get update
user_with_preferences
console_program_alone
both_packages
