#!/usr/bin/env bash
# Makes the pictures of the forms anew, in English and German and in both schemes, on the built-in
# simulated devices. Needs Xvfb; takes the programs of the build folder given (build/dev).
set -euo pipefail
cd "$(dirname "$0")"
programs=$(realpath "${1:-../../build/dev}/bin")
work=$(mktemp -d)
export XDG_RUNTIME_DIR=$work XDG_CONFIG_HOME=$work/config HOME=$work
running=()
finish() {
  "$programs/ostrel" server stop > /dev/null || true
  kill "${running[@]}" 2> /dev/null || true
  wait
  rm -rf "$work"
}
trap finish EXIT

exec {number}<> <(:)
Xvfb -displayfd "$number" -screen 0 1280x1024x24 2> /dev/null &
running+=($!)
read -r display <&"$number"
export DISPLAY=:$display LC_ALL=C.UTF-8

for language in eng deu; do
  for scheme in light dark; do
    "$programs/ostrel_pictures" "$PWD" "$language" "$scheme"
  done
done
