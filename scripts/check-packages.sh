#!/usr/bin/env bash
# Builds the Debian packages, checks them with Debian's own tools and tries them in bare roots: install, run, upgrade from
# the first packages and between revisions, remove, purge. Needs root, the right to mount and the repository's history. usage: scripts/check-packages.sh [SUITE …]
# (releases to try them on, such as bookworm trixie; default: the one that this machine runs)
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-dependencies.sh packages
build=build/packages
work=$PWD/build/check-packages
suites=("$@")
[[ $# -gt 0 ]] || suites=("$(source /etc/os-release && echo "$VERSION_CODENAME")")
# Any address does; without one the pictures of the catalogue entry are not checked.
homepage=${KELVINBAR_HOMEPAGE:-https://kelvinbar.example}
# The first commit that makes packages. There is none of an older state to upgrade from.
first_commit=e13a35a6

# make_packages REVISION: the packages of the sources in the current folder, in $work/REVISION.
make_packages() {
  cmake --preset packages -D "KELVINBAR_PACKAGE_REVISION=$1" -D "KELVINBAR_HOMEPAGE=$homepage"
  cmake --build --preset packages
  cpack --config "$build/CPackConfig.cmake" -B "$work/$1"
}

make_first_packages() {
  local sources=$work/first-sources
  mkdir "$sources"
  git archive "$first_commit" | tar -x -C "$sources"
  (cd "$sources" && make_packages 0.1)
  rm -rf "$sources"
}

check_contents() {
  local unpacked=$work/unpacked package
  lintian --allow-root --fail-on error,warning "$work"/1/*.deb
  mkdir "$unpacked"
  for package in "$work"/1/*.deb; do dpkg-deb --extract "$package" "$unpacked"; done
  appstreamcli validate --no-net "$unpacked/usr/share/metainfo/org.kelvinbar.Kelvinbar.metainfo.xml"
  desktop-file-validate "$unpacked/usr/share/applications/org.kelvinbar.Kelvinbar.desktop"
  zsh -fc "fpath+=($unpacked/usr/share/zsh/vendor-completions); autoload -Uz +X _kelvinbar-snapshot"
}

# try_on SUITE: in namespaces of its own, so that nothing stays mounted or runs on.
try_on() {
  local root=$work/root-$1
  debootstrap --variant=minbase "$1" "$root" http://deb.debian.org/debian >"$work/debootstrap-$1.log"
  mkdir "$root/root/packages"
  cp -r "$work/0.1" "$work/1" "$work/2" scripts/packages/try-packages.sh "$root/root/packages/"
  unshare --mount --pid --fork bash -euc \
    'mount -t proc proc "$0/proc"; exec chroot "$0" /bin/bash /root/packages/try-packages.sh' "$root"
  rm -rf "$root"
  echo "Packages on $1: they install, run, upgrade and leave nothing behind"
}

git cat-file -e "$first_commit" 2>/dev/null || { echo "check-packages.sh: needs the history, not a shallow clone" >&2; exit 1; }
rm -rf "$work"
mkdir -p "$work"
make_first_packages
make_packages 1
make_packages 2
check_contents
for suite in "${suites[@]}"; do try_on "$suite"; done
