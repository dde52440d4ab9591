#!/usr/bin/env bash
# Draws docs/snapshot.svg for the README: the output of kelvinbar-snapshot for a sample machine.
# usage: scripts/picture.sh
set -euo pipefail
cd "$(dirname "$0")/.."
shown_readings=22
command="kelvinbar-snapshot --demo amd-pc"

scripts/run.sh --demo amd-pc | awk -F '\t' -v command="$command" -v shown="$shown_readings" '
  function escaped(text) {
    gsub(/&/, "\\&amp;", text); gsub(/</, "\\&lt;", text); gsub(/>/, "\\&gt;", text)
    return text
  }
  function put(x, class, text, anchor) {
    body = body sprintf("  <text x=\"%d\" y=\"%d\" class=\"%s\"%s>%s</text>\n", x, y, class,
                        anchor ? " text-anchor=\"" anchor "\"" : "", escaped(text))
  }
  BEGIN { y = 70; put(28, "prompt", "$"); put(46, "command", command); y += 30 }
  NF < 5 { if ($0 != "") { put(28, "header", $0); y += 21 } else y += 9; next }
  NR > 4 && ++readings <= shown {
    put(28, "key", $1); put(92, "type", $2); put(158, "name", $3); put(486, "value", $4, "end")
    put(520, "raw", $5); y += 21
  }
  END {
    if (readings > shown) { put(28, "header", "… and " readings - shown " more"); y += 21 }
    height = y + 8
    printf "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"760\" height=\"%d\" viewBox=\"0 0 760 %d\" role=\"img\" aria-label=\"Output of %s\">\n", height, height, command
    print "  <style>"
    print "    text { font: 14px ui-monospace, \"DejaVu Sans Mono\", Menlo, Consolas, monospace; white-space: pre }"
    print "    .prompt { fill: #7f8894 } .command { fill: #f2f4f7; font-weight: 600 } .header { fill: #8d96a3 }"
    print "    .key { fill: #6fc3ff } .type { fill: #8b94a0 } .name { fill: #e3e7ec } .value { fill: #ffc46b; font-weight: 600 } .raw { fill: #858e9a }"
    print "  </style>"
    print "  <defs><linearGradient id=\"metal\" x1=\"0\" y1=\"0\" x2=\"0\" y2=\"1\"><stop offset=\"0\" stop-color=\"#2b3038\"/><stop offset=\"1\" stop-color=\"#1a1d22\"/></linearGradient></defs>"
    printf "  <rect x=\"0.5\" y=\"0.5\" width=\"759\" height=\"%d\" rx=\"12\" fill=\"url(#metal)\" stroke=\"#3c434d\"/>\n", height - 1
    print "  <circle cx=\"26\" cy=\"24\" r=\"6\" fill=\"#4b535e\"/><circle cx=\"46\" cy=\"24\" r=\"6\" fill=\"#4b535e\"/><circle cx=\"66\" cy=\"24\" r=\"6\" fill=\"#4b535e\"/>"
    printf "%s</svg>\n", body
  }' > docs/snapshot.svg
echo "docs/snapshot.svg"
