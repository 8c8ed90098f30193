#!/usr/bin/env bash
# Makes the pictures of this folder anew: the window with a read chart and the list of connections,
# on the built-in simulator.
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

"$programs/ostrel" connections add "Substation North" tcp 192.0.2.7:4001 > /dev/null
"$programs/ostrel" connections add Workshop serial /dev/ttyUSB0 > /dev/null

# picture WINDOW FILE: once the window shows the same twice.
picture() {
  until import -window "$1" "$work/new.png" && cmp -s "$work/new.png" "$work/old.png"; do
    mv "$work/new.png" "$work/old.png"
  done
  mv "$work/new.png" "$2"
}

# keys WINDOW KEY...: typed there, each once the one before shows.
keys() {
  local window=$1
  shift
  for key in "$@"; do
    xdotool windowfocus --sync "$window" key "$key"
    picture "$window" "$work/shown.png"
  done
}

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
  picture "$window" "service-$scheme-$language.png"
  if [ "$language" = eng ]; then
    keys "$window" alt+p
    xdotool key c
    list=$(xdotool search --sync --onlyvisible --name '^Connections$')
    keys "$list" alt+t
    picture "$list" "connections-$scheme.png"
  fi
  kill "$service"
  wait "$service"
done
