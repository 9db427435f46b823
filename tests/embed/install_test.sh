#!/bin/bash
# install_test.sh HOW BUILD SOURCE CXX: the programs of consumer/, built against what BUILD installs (HOW is cmake or
# pkg-config) or with SOURCE as a part of their project (configured only, which is where that fails), and what they print
# beside what qmplot info prints of the same plot.
set -euo pipefail
how=$1 build=$2 source=$3 cxx=$4
consumer=$source/tests/embed/consumer
plot=$source/examples/chart.plt
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

if [ "$how" = subproject ]; then
    cmake -S "$consumer" -B "$folder/build" -G Ninja -DCMAKE_CXX_COMPILER="$cxx" -DQM_SOURCE="$source"
    [ ! -d "$folder/build/qmfilter/tests" ] || { echo "the tests are a part of a subproject" && exit 1; }
    ninja -C "$folder/build" -n count_plot >/dev/null
    exit
fi

# Moved after the installation: nothing may hold on to the first place.
cmake --install "$build" --prefix "$folder/first" >/dev/null
mv "$folder/first" "$folder/prefix"
prefix=$folder/prefix
modules=$(dirname "$(find "$prefix" -name QmZipx.so)")
if grep -rn "$source" "$prefix/include" "$prefix"/lib*/{,*/}cmake "$prefix"/lib*/{,*/}pkgconfig 2>/dev/null; then
    echo "the installed tree names the source tree" && exit 1
fi
if [ "$how" = cmake ]; then
    cmake -S "$consumer" -B "$folder/build" -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_PREFIX_PATH="$prefix"
    cmake --build "$folder/build"
    program=$folder/build/count_plot
else
    PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name qmfilter.pc)")
    export PKG_CONFIG_PATH
    program=$folder/count_plot
    # shellcheck disable=SC2046
    "$cxx" -std=c++17 "$consumer/count_plot.cpp" -o "$program" $(pkg-config --cflags --libs qmfilter) \
        -Wl,-rpath,"$(pkg-config --variable=libdir qmfilter)"
fi

# The plot as it is and in an archive, which only QmZipx.so can open.
(cd "$folder" && cp "$plot" plan.prn && cmake -E tar cf plot.zip --format=zip plan.prn)
for file in "$plot" "$folder/plot.zip"; do
    "$prefix/bin/qmplot" info "$file" >"$folder/told"
    "$program" "$file" >"$folder/counted"
    cat "$folder/counted"
    [ "$(grep -c 'lines, ' "$folder/counted")" -ge 1 ]
    while read -r line; do
        [ "$line" = "plot: not a plot file" ] || grep -qF "$line" "$folder/told" || { echo "qmplot does not say: $line" && exit 1; }
    done <"$folder/counted"
done
[ -f "$modules/libQmFilter_HPGL.so" ]
