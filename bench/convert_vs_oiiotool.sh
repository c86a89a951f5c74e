#!/usr/bin/env bash
# Times `colorconfig convert` beside `oiiotool --colorconvert` as whole
# processes on the same 4K files, the same colour spaces and the same output
# format, and prints wall time and peak memory (max RSS) of each with their
# ratios. The runs alternate so that the machine's noise falls on both.
#
#   bash bench/convert_vs_oiiotool.sh [RUNS]     (default 5 runs of each)
#
# Needs the release build (cmake --preset default && cmake --build --preset
# default), oiiotool (openimageio-tools) and GNU time (time).
set -euo pipefail
cd "$(dirname "$0")/.."
runs=${1:-5}
tool=$PWD/build/default/tools/colorconfig
[[ -x $tool ]] || { echo "build the default preset first: $tool is missing" >&2; exit 2; }

work=$(mktemp -d "${TMPDIR:-/tmp}/verra-convert-bench.XXXXXX")
trap 'rm -rf "$work"' EXIT

# A 4K half-float RGBA render and a 4K 8-bit RGB texture, noisy so that
# compression costs what it costs on real pictures.
oiiotool --pattern noise:type=uniform:min=0:max=2 3840x2160 4 -d half -o "$work/render.exr"
oiiotool --pattern noise:type=uniform:min=0:max=1 3840x2160 3 -d uint8 -o "$work/texture.png"

# measure NAME COMMAND...: appends "seconds max-rss-kB" of one run to $work/NAME.
measure() {
  local name=$1
  shift
  /usr/bin/time -f '%e %M' -o "$work/one" "$@" >/dev/null
  cat "$work/one" >>"$work/$name"
}

median() { sort -n | awk '{v[NR]=$1} END {print (NR % 2) ? v[(NR+1)/2] : (v[NR/2] + v[NR/2+1]) / 2}'; }

# case NAME FROM TO INPUT OUTPUT-EXTENSION
bench_case() {
  local name=$1 from=$2 to=$3 input=$4 ext=$5
  for ((i = 0; i < runs; i++)); do
    measure "$name.ours" "$tool" convert --from "$from" --to "$to" "$input" "$work/ours.$ext"
    measure "$name.oiio" oiiotool "$input" --colorconvert "$from" "$to" -o "$work/oiio.$ext"
  done
  local t_ours t_oiio m_ours m_oiio
  t_ours=$(cut -d' ' -f1 "$work/$name.ours" | median)
  t_oiio=$(cut -d' ' -f1 "$work/$name.oiio" | median)
  m_ours=$(cut -d' ' -f2 "$work/$name.ours" | sort -n | tail -n 1)
  m_oiio=$(cut -d' ' -f2 "$work/$name.oiio" | sort -n | tail -n 1)
  awk -v n="$name" -v to="$t_ours" -v ti="$t_oiio" -v mo="$m_ours" -v mi="$m_oiio" 'BEGIN {
    printf "| %s | %.2f s | %.2f s | %.2f | %.0f MB | %.0f MB | %.2f |\n", n, to, ti, to / ti, mo / 1024, mi / 1024, mo / mi }'
}

echo "Median of $runs runs each; peak memory is the largest max RSS of the runs."
echo
echo "| Case | colorconfig | oiiotool | time ratio | colorconfig peak | oiiotool peak | memory ratio |"
echo "|---|---|---|---|---|---|---|"
bench_case "4K half RGBA EXR, linear to sRGB, to EXR" linear sRGB "$work/render.exr" exr
bench_case "4K 8-bit RGB PNG, sRGB to linear, to PNG" sRGB linear "$work/texture.png" png
bench_case "4K 8-bit RGB PNG, sRGB to linear, to EXR" sRGB linear "$work/texture.png" exr
