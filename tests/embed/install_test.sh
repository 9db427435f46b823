#!/bin/bash
# install_test.sh HOW BUILD SOURCE CXX: the programs of consumer/, built against what BUILD installs (HOW is cmake or
# pkg-config) or with SOURCE as a part of their project (in a folder of BUILD, so that only a change builds again), and
# what they print beside what qmplot info prints of the same plot.
set -euo pipefail
how=$1 build=$2 source=$3 cxx=$4
consumer=$source/tests/embed/consumer
plot=$source/examples/chart.plt
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

if [ "$how" = subproject ]; then
    parts=$build/subproject
    # Without the optimiser: what can go wrong here are paths and targets.
    cmake -S "$consumer" -B "$parts" -G Ninja -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_CXX_FLAGS=-O0 -DQM_SOURCE="$source" \
        -DCMAKE_CXX_COMPILER_LAUNCHER="$(command -v ccache || true)"
    [ ! -d "$parts/qmfilter/tests" ] || { echo "the tests are a part of a subproject" && exit 1; }
    ninja -C "$parts" count_plot
    program=$parts/count_plot qmplot=$build/bin/qmplot
else
    # Moved after the installation: nothing may hold on to the first place.
    cmake --install "$build" --prefix "$folder/first" >/dev/null
    mv "$folder/first" "$folder/prefix"
    prefix=$folder/prefix qmplot=$folder/prefix/bin/qmplot
    modules=$(dirname "$(find "$prefix" -name QmZipx.so)")
    [ -f "$modules/libQmFilter_HPGL.so" ]
    if grep -rn "$source" "$prefix/include" "$prefix"/lib*/{,*/}cmake "$prefix"/lib*/{,*/}pkgconfig 2>/dev/null; then
        echo "the installed tree names the source tree" && exit 1
    fi
fi
if [ "$how" = cmake ]; then
    cmake -S "$consumer" -B "$folder/build" -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_PREFIX_PATH="$prefix"
    cmake --build "$folder/build"
    program=$folder/build/count_plot
elif [ "$how" = pkg-config ]; then
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
    "$qmplot" info "$file" >"$folder/told"
    "$program" "$file" >"$folder/counted"
    cat "$folder/counted"
    [ "$(grep -c 'lines, ' "$folder/counted")" -ge 1 ]
    while read -r line; do
        [ "$line" = "plot: not a plot file" ] || grep -qF "$line" "$folder/told" || { echo "qmplot does not say: $line" && exit 1; }
    done <"$folder/counted"
done
