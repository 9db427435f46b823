#!/bin/sh
# compare_builds.sh WINE_RUN QMPLOT_EXE QMPLOT EXAMPLES: what qmplot makes of each example, the Windows build beside the
# native build. Exit 77 (skipped) when there is no native build.
wine_run=$1 windows=$2 native=$3 examples=$4
if [ ! -x "$native" ]; then
    echo "SKIPPED: $native is not built"
    exit 77
fi
folder=$(mktemp -d) || exit 1
trap 'rm -rf "$folder"' EXIT
status=0
compared=0

same() {
    cmp "$folder/windows.svg" "$folder/native.svg" && compared=$((compared + 1)) && return
    echo "differs: qmplot $*"
    status=1
}

for plot in "$examples"/*.plt; do
    for command in ops trace; do
        "$wine_run" "$windows" $command "$plot" >"$folder/windows.svg" || status=1
        "$native" $command "$plot" >"$folder/native.svg" || status=1
        same $command "$plot"
    done
    "$wine_run" "$windows" convert --page 1 "$plot" "$folder/windows.svg" || status=1
    "$native" convert --page 1 "$plot" "$folder/native.svg" || status=1
    same convert "$plot"
done
echo "$compared outputs are the same"
[ "$compared" -gt 0 ] || status=1
exit $status
