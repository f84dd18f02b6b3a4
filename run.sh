#!/usr/bin/env bash
# Installs what is missing, builds Tessarelle and starts it with the demo
# stack: a synthetic I1/I0 series across the Cu K edge, generated into
# demo-data/ on the first run (scripts/make-demo-data.py) and loaded by the
# batch demo-data/demo.bat, then maps the edge position over the whole stack
# and shows the map with its colour bar, and the spectrum window at the centre
# of the copper disc. The map is saved as build/demo/edge-map-0.tif (with its
# colour bar, edge-map-0--cBar.tif) and its picture as build/demo/edge-map.png.
# --headless runs the same offscreen and quits at the end: a generated
# configuration ends its start-up batch with ":end", so that the dispatcher is
# idle, and the generated batch file ends with "quit", run by -x. Its window
# places are kept apart from the user's, in build/demo/settings.
# The interface is Japanese; ./run.sh -e starts it in English.
set -euo pipefail
cd "$(dirname "$0")"
headless=0
lang=()
for a in "$@"; do
  [ "$a" = "--headless" ] && headless=1
  [ "$a" = "-e" ] && lang=(-e)
done
scripts/setup
jobs=$(nproc 2>/dev/null || echo 2)
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O2 -g1 -DNDEBUG" >/dev/null
cmake --build build -j"$jobs" --target tessarelle

# demo.bat names the data folder by its absolute path: a moved checkout
# generates it again, and so does a batch from before the pointer was placed.
demo="$PWD/demo-data"
if ! grep -qsF "\"$demo/\"" "$demo/demo.bat" || ! grep -qs "^move_position" "$demo/demo.bat"; then
  python3 scripts/make-demo-data.py "$demo"
fi

dir="$PWD/build/demo"
mkdir -p "$dir"
rm -f "$dir"/edge-map*
# After loading: the edge-position map of the whole image (the analysis
# window's default) in boxes of 3 x 3 pixels, shown in the image area, saved
# as TIFF and as a picture, and the pointer back on the copper disc so that
# the spectrum window shows its edge.
{
  cat "$demo/demo.bat"
  printf 'set_analyze_w 1\nset_analyze_h 1\n'
  printf 'analyzer_exec_2da\n'
  printf 'select_disp_image_analyzed\n'
  # the colours span the two edges (8979 and 8983 eV); cbar_set_all redraws
  printf 'analyzer_set_scale_min 8975\nanalyzer_set_scale_max 8987\nanalyzer_set_fixed_scale 1\ncbar_set_all\n'
  printf 'saveDataCfg_save_as_tiff\n'
  printf 'save_data "%s"\n' "$dir/edge-map.tif"
  printf 'save_image "%s"\n' "$dir/edge-map.png"
  printf 'move_position 48 56\n'
  printf ':echo "Edge map saved in %s"\n' "$dir"
} > "$dir/demo-map.bat"
if [ "$headless" = 1 ]; then
  export QT_QPA_PLATFORM=offscreen
  export XDG_CONFIG_HOME="$dir/settings"
  printf 'batch :echo "Tessarelle is up"\nbatch :end\n' > "$dir/config.cfg"
  { cat "$dir/demo-map.bat"; printf 'quit\n'; } > "$dir/demo-quit.bat"
  exec build/bin/tessarelle -e -c "$dir/config.cfg" -b "$dir/demo-quit.bat" -x
fi
printf 'batch :end\n' > "$dir/config.cfg"
exec build/bin/tessarelle "${lang[@]}" -c "$dir/config.cfg" -b "$dir/demo-map.bat" -x
