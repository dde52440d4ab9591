#!/usr/bin/env bash
# Draws the README's pictures of kelvinbar-snapshot: what it prints for a Linux PC and for a Mac.
# usage: scripts/picture.sh
set -euo pipefail
cd "$(dirname "$0")/.."
shown_readings=13

# draw SAMPLE FILE TYPE NAME VALUE RAW: the columns, in characters from the left; values end at theirs.
draw() {
  local command="kelvinbar-snapshot --demo $1"
  scripts/run.sh --demo "$1" | awk -F '\t' -v command="$command" -v shown="$shown_readings" \
    -v type="$3" -v name="$4" -v value="$5" -v raw="$6" '
    function escaped(text) {
      gsub(/&/, "\\&amp;", text); gsub(/</, "\\&lt;", text); gsub(/>/, "\\&gt;", text)
      return text
    }
    function put(x, class, text, anchor) {
      body = body sprintf("  <text x=\"%d\" y=\"%d\" class=\"%s\"%s>%s</text>\n", x, y, class,
                          anchor ? " text-anchor=\"" anchor "\"" : "", escaped(text))
    }
    function at(column) { return 28 + column * 7.3 }
    BEGIN { y = 64; put(28, "prompt", "$"); put(44, "command", command); y += 26 }
    NF < 5 { if ($0 != "") { put(28, "header", $0); y += 18 } else y += 8; next }
    ++readings <= shown {
      put(28, "key", $1); put(at(type), "type", $2); put(at(name), "name", $3); put(at(value), "value", $4, "end")
      put(at(raw), "raw", $5); y += 18
    }
    END {
      if (readings > shown) { put(28, "header", "… and " readings - shown " more"); y += 18 }
      height = y + 4
      printf "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"700\" height=\"%d\" viewBox=\"0 0 700 %d\" role=\"img\" aria-label=\"Output of %s\">\n", height, height, command
      print "  <style>"
      print "    text { font: 12px ui-monospace, \"DejaVu Sans Mono\", Menlo, Consolas, monospace; white-space: pre }"
      print "    .prompt { fill: #7f8894 } .command { fill: #f2f4f7; font-weight: 600 } .header { fill: #8d96a3 }"
      print "    .key { fill: #6fc3ff } .type { fill: #8b94a0 } .name { fill: #e3e7ec } .value { fill: #ffc46b; font-weight: 600 } .raw { fill: #858e9a }"
      print "  </style>"
      print "  <defs><linearGradient id=\"metal\" x1=\"0\" y1=\"0\" x2=\"0\" y2=\"1\"><stop offset=\"0\" stop-color=\"#2b3038\"/><stop offset=\"1\" stop-color=\"#1a1d22\"/></linearGradient></defs>"
      printf "  <rect x=\"0.5\" y=\"0.5\" width=\"699\" height=\"%d\" rx=\"12\" fill=\"url(#metal)\" stroke=\"#3c434d\"/>\n", height - 1
      print "  <circle cx=\"26\" cy=\"24\" r=\"6\" fill=\"#4b535e\"/><circle cx=\"46\" cy=\"24\" r=\"6\" fill=\"#4b535e\"/><circle cx=\"66\" cy=\"24\" r=\"6\" fill=\"#4b535e\"/>"
      printf "%s</svg>\n", body
    }' >"$2"
  echo "$2"
}

draw linux-pc docs/snapshot-linux-pc.svg 30 45 72 75
draw intel-notebook docs/snapshot-intel-notebook.svg 7 14 51 54
