#!/usr/bin/env bash
# Makes day.png anew: voltage and tap position of a simulated regulator over a day, lived in two
# minutes. Needs gnuplot-nox; takes the programs of the build folder given (build/dev).
set -euo pipefail
cd "$(dirname "$0")"
programs=$(realpath "${1:-../../build/dev}/bin")
work=$(mktemp -d)
export XDG_RUNTIME_DIR=$work XDG_CONFIG_HOME=$work/config LC_ALL=C.UTF-8
finish() {
  "$programs/ostrel" server stop > /dev/null || true
  kill "$simulator" 2> /dev/null || true
  wait
  rm -rf "$work"
}
trap finish EXIT

# The slow line sets the pace of the samples: one takes a quarter of a second, or three minutes of
# the device's time.
"$programs/ostrel-simulator" --tcp 0 --speed 720 --serial-speed 2400 > "$work/simulator" &
simulator=$!
until grep -q '^listening' "$work/simulator"; do :; done
"$programs/ostrel" connections add Day tcp "$(grep -om1 '[^ ]*$' "$work/simulator")" > /dev/null
"$programs/ostrel" connections use Day > /dev/null

# time#, RegUn# and RegStufe# come in a line each; the day ends with the time at which it began.
for _ in {1..650}; do echo 'AA:;time#,RegUn#,RegStufe#'; done |
  "$programs/ostrel" send - | paste -d, - - - |
  awk -F, '{split($1, t, ":"); hour = t[1] + t[2] / 60 + t[3] / 3600
            if (hour < last) days++
            last = hour; hour += 24 * days
            if (NR == 1) end = hour + 24
            if (hour <= end) print hour "," $2 "," $3}' > "$work/day.csv"

gnuplot << PLOT
set datafile separator ","
set terminal pngcairo size 1000,600 font "DejaVu Sans,11"
set output "day.png"
set multiplot layout 2,1 title "KT-X, a simulated day"
set xrange [8:32]
set xtics ("08:00" 8, "12:00" 12, "16:00" 16, "20:00" 20, "00:00" 24, "04:00" 28, "08:00" 32)
set lmargin 10
set grid
unset key
set ylabel "voltage / V"
plot "$work/day.csv" using 1:2 with lines linecolor rgb "#1f6f8b"
set ylabel "tap position"
set ytics 1
plot "$work/day.csv" using 1:3 with steps linewidth 2 linecolor rgb "#b5651d"
PLOT
