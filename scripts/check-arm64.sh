#!/usr/bin/env bash
# Runs the core's tests as arm64 and cross-builds the packages for arm64, in a root of Debian 12 that is made at the first
# run. Leaves the packages in build/check-arm64/packages. Needs root and the right to mount.
set -euo pipefail
cd "$(dirname "$0")/.."
work=$PWD/build/check-arm64
root=$work/root

# In a root of its own, since packages of another architecture can displace those of this machine.
make_root() {
  scripts/install-dependencies.sh debootstrap
  debootstrap --variant=minbase bookworm "$root.new" http://deb.debian.org/debian >"$work/debootstrap.log"
  mkdir "$root.new/srv/kelvinbar"
  mv "$root.new" "$root"
}

mkdir -p "$work"
rm -rf "$root.new"
[[ -d $root ]] || make_root
unshare --mount --pid --fork bash -euc '
  mount -t proc proc "$0/proc"
  mount --rbind /dev "$0/dev"
  mount --rbind /sys "$0/sys"
  mount --bind . "$0/srv/kelvinbar"
  exec chroot "$0" /srv/kelvinbar/scripts/arm64/build-and-try.sh' "$root"
rm -rf "$work/packages"
mkdir "$work/packages"
cp build/arm64-packages/packages/*.deb "$work/packages/"
echo "arm64: the core's tests pass, and the packages run"
