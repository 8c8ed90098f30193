#!/usr/bin/env bash
# Makes the pictures of this folder anew: the window with a read chart, on the built-in simulator.
# Needs Xvfb, xdotool and ImageMagick; takes the programs of the build folder given (build/dev).
set -euo pipefail
cd "$(dirname "$0")"
programs=$(realpath "${1:-../../build/dev}/bin")
work=$(mktemp -d)
export XDG_RUNTIME_DIR=$work XDG_CONFIG_HOME=$work/config
running=()
finish() {
  "$programs/ostrel" server stop > /dev/null || true
  kill "${running[@]}" 2> /dev/null || true
  wait
  rm -rf "$work"
}
trap finish EXIT

exec {number}<> <(:)
Xvfb -displayfd "$number" -screen 0 1024x768x24 2> /dev/null &
running+=($!)
read -r display <&"$number"
export DISPLAY=:$display LC_ALL=C.UTF-8

for look in light:eng dark:eng light:deu dark:deu; do
  scheme=${look%:*} language=${look#*:}
  "$programs/ostrel-service" --connection Simulator --station AA --scheme "$scheme" \
    --language "$language" &
  service=$!
  running+=("$service")
  window=$(xdotool search --sync --onlyvisible --name '^Service ')
  # The button "Read" works once the station is selected; the pointer then rests on a bar.
  until "$programs/ostrel" server status --json | grep -q '"channels": 1'; do :; done
  xdotool mousemove --window "$window" 270 104
  for _ in 1 2 3 4 5; do xdotool click 1; done
  xdotool mousemove --window "$window" 600 400
  until import -window "$window" "$work/new.png" && cmp -s "$work/new.png" "$work/old.png"; do
    mv "$work/new.png" "$work/old.png"
  done
  mv "$work/new.png" "service-$scheme-$language.png"
  kill "$service"
  wait "$service"
done
