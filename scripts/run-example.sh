#!/usr/bin/env bash
# Runs an example folder in a scratch copy and says where the output is.
set -euo pipefail
exe=$(realpath "$1")
example=$2
out=demo-output/$(basename "$example")
rm -rf "$out"
mkdir -p "$out"
cp -r "$example"/. "$out"/
# data files named in the example's data.txt come from data/
if [ -f "$out/data.txt" ]; then
  while read -r f; do [ -n "$f" ] && cp "data/$f" "$out/"; done < "$out/data.txt"
  rm "$out/data.txt"
fi
answers=/dev/null
[ -f "$out/answers.txt" ] && answers=$(realpath "$out/answers.txt")
(cd "$out" && "$exe" < "$answers")
echo
echo "output of the example is in $(realpath "$out")"
