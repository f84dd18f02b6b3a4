#!/usr/bin/env bash
# Runs the fuzz targets one after another at low priority:
#   fuzz/run.sh <build-dir> <seconds-per-target> [target...]
# FUZZ_RUNS=<n> also ends each target after n executions.
# Corpora grow in <build-dir>/corpus/<target>, crashes land in
# <build-dir>/crashes/<target>, logs in <build-dir>/fuzzlogs.
set -uo pipefail
build=$(realpath "$1"); secs=$2; shift 2
here=$(dirname "$(realpath "$0")")
targets=("$@")
[ ${#targets[@]} -eq 0 ] && targets=(fuzz_tiff fuzz_img fuzz_textimage fuzz_errpoints fuzz_spectrum
  fuzz_refenergies fuzz_emp fuzz_config fuzz_cmdline fuzz_batch fuzz_stars fuzz_elements)
[ -d "$build/seeds" ] || python3 "$here/make_seeds.py" "$build/seeds"
mkdir -p "$build/fuzzlogs"
for t in "${targets[@]}"; do
  mkdir -p "$build/corpus/$t" "$build/crashes/$t"
  nice -n 10 "$build/fuzz/$t" -max_total_time="$secs" -runs="${FUZZ_RUNS:--1}" -rss_limit_mb=1024 -timeout=10 \
    -print_final_stats=1 -artifact_prefix="$build/crashes/$t/" \
    "$build/corpus/$t" "$build/seeds/$t" > "$build/fuzzlogs/$t.log" 2>&1
  rc=$?
  execs=$(grep -o 'number_of_executed_units: [0-9]*' "$build/fuzzlogs/$t.log" | tail -1 | grep -o '[0-9]*$')
  echo "$t rc=$rc executions=${execs:-?} crashes=$(ls "$build/crashes/$t" | wc -l)"
done
