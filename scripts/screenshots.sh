#!/usr/bin/env bash
# Draws the README's pictures of the panel in its main states: the demo machine, twice the pixel density, Inter as the
# interface font. usage: scripts/screenshots.sh
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-dependencies.sh test pictures
cmake --workflow --preset pictures >&2
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
cat >"$home/fonts.conf" <<'XML'
<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">
<fontconfig>
  <dir>/usr/share/fonts/opentype/inter</dir>
  <dir>/usr/share/fonts/truetype/dejavu</dir>
  <alias binding="strong"><family>Sans Serif</family><prefer><family>Inter</family></prefer></alias>
  <alias binding="strong"><family>sans-serif</family><prefer><family>Inter</family></prefer></alias>
</fontconfig>
XML
mkdir -p docs/panel
FONTCONFIG_FILE=$home/fonts.conf XDG_RUNTIME_DIR=$home QT_SCALE_FACTOR=2 \
  build/pictures/tests/panel/kelvinbar_panel_pictures docs/panel
