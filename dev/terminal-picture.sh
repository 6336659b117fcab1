#!/usr/bin/env bash
# Draws what a command prints as an SVG of a terminal: dev/terminal-picture.sh COMMAND [ARGUMENT...] >picture.svg
set -euo pipefail

"$@" 2>&1 | awk -v title="\$ $*" '
  function escaped(text) {
    gsub(/&/, "\\&amp;", text); gsub(/</, "\\&lt;", text); gsub(/>/, "\\&gt;", text)
    return text
  }
  BEGIN { line[n++] = title }
  { line[n++] = $0 }
  END {
    for (i = 0; i < n; ++i) if (length(line[i]) > widest) widest = length(line[i])
    width = widest * 8.43 + 32; height = n * 19 + 28
    printf "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 %d %d\" width=\"%d\" height=\"%d\">\n", width, height, width, height
    printf "<rect width=\"100%%\" height=\"100%%\" rx=\"6\" fill=\"#1d2430\"/>\n"
    printf "<g font-family=\"DejaVu Sans Mono, Consolas, monospace\" font-size=\"14\" fill=\"#d8dee9\" xml:space=\"preserve\">\n"
    for (i = 0; i < n; ++i)
      printf "<text x=\"16\" y=\"%d\"%s>%s</text>\n", 28 + i * 19, (i == 0 ? " fill=\"#8fbcbb\"" : ""), escaped(line[i])
    print "</g>\n</svg>"
  }'
