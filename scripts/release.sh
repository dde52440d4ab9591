#!/usr/bin/env bash
# Makes what a release consists of, in build/releases/VERSION: the source archive, made twice and compared, the packages
# built from it, a bill of materials and checksums. It sets the version and the day of the changelog if they are not set,
# and commits that; it neither tags nor publishes. usage: scripts/release.sh VERSION
set -euo pipefail
cd "$(dirname "$0")/.."

fail() {
  echo "release.sh: $1" >&2
  exit 1
}

[[ ${1:-} =~ ^[0-9]+\.[0-9]+\.[0-9]+$ && $# -eq 1 ]] || { echo "usage: scripts/release.sh VERSION (such as 1.2.3)" >&2; exit 2; }
version=$1
name=kelvinbar-$version
out=$PWD/build/releases/$version
work=$PWD/build/release-work

# CMakeLists.txt is the only place of the version; the changelog's first heading has to agree.
set_version() {
  [[ -z $(git status --porcelain --untracked-files=no) ]] || fail "there are changes that are not committed"
  local heading
  heading=$(grep -m 1 '^## ' CHANGELOG.md)
  [[ $heading == "## $version - "* ]] || fail "the changelog begins with \"$heading\", not with $version"
  sed -i "s/^project(Kelvinbar VERSION [0-9.]* /project(Kelvinbar VERSION $version /" CMakeLists.txt
  sed -i "s/^## $version - Unreleased\$/## $version - $(date --utc +%F)/" CHANGELOG.md
  git diff --quiet || git commit --quiet --all --message "release: version $version"
}

# source_archive REPOSITORY FILE: depends on the commit alone.
source_archive() {
  git -C "$1" -c tar.umask=0022 archive --format=tar --prefix="$name/" HEAD | gzip --best --no-name >"$2"
}

make_source_archive() {
  source_archive . "$out/$name.tar.gz"
  git clone --quiet --no-local . "$work/clone"
  (umask 077 && TZ=Pacific/Auckland source_archive "$work/clone" "$work/again.tar.gz")
  cmp "$out/$name.tar.gz" "$work/again.tar.gz" || fail "the source archive differs when it is made again"
}

# What is not in the archive is missed here.
make_packages() {
  tar -x -f "$out/$name.tar.gz" -C "$work"
  (
    cd "$work/$name"
    cmake --preset packages "${settings[@]}"
    cmake --build --preset packages
    cpack --config build/packages/CPackConfig.cmake -B "$work/packages"
    cpack --config build/packages/CPackConfig.cmake -B "$work/packages-again"
  )
  cp "$work"/packages/*.deb "$out/"
  for package in "$out"/*.deb; do
    cmp "$package" "$work/packages-again/${package##*/}" || fail "${package##*/} differs when it is packed again"
  done
}

# What the packager says of the project, as for cmake.
settings=()
for setting in KELVINBAR_AUTHOR KELVINBAR_CONTACT KELVINBAR_HOMEPAGE KELVINBAR_DONATION_PAGE; do
  [[ -z ${!setting:-} ]] || settings+=(-D "$setting=${!setting}")
done

scripts/install-dependencies.sh packages
set_version
export SOURCE_DATE_EPOCH
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
rm -rf "$out" "$work"
mkdir -p "$out" "$work"
make_source_archive
make_packages
scripts/packages/bill_of_materials.py "$version" "$work/$name/build/packages" "$out" >"$out/$name.cdx.json"
(cd "$out" && sha256sum -- * >SHA256SUMS)
echo "Made, and not yet published:"
ls "$out"
