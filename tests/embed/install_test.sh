#!/bin/bash
# install_test.sh HOW BUILD SOURCE CXX: the first program of docs/integration.md and those of consumer/, built against what
# BUILD installs (HOW is cmake or pkg-config) or with SOURCE as a part of the first one's project (in a folder of BUILD, so
# that only a change builds again), and what they print beside what qmplot info prints of the same plot.
set -euo pipefail
how=$1 build=$2 source=$3 cxx=$4
consumer=$source/tests/embed/consumer
plot=$source/examples/chart.plt
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

mkdir "$folder/program"
awk -v out="$folder/program" -f "$source/cmake/extract-code.awk" "$source/docs/integration.md"
if [ "$how" = subproject ]; then
    project=$build/subproject/first parts=$build/subproject/build
    mkdir -p "$project"
    ln -sfn "$source" "$project/qmfilter"
    sed -i 's/^find_package.*# or: //' "$folder/program/CMakeLists.txt"
    echo "add_executable(count_plot $consumer/count_plot.cpp)
target_link_libraries(count_plot PRIVATE QmFilter::qmfilter)" >>"$folder/program/CMakeLists.txt"
    cmake -E copy_if_different "$folder"/program/{first.cpp,CMakeLists.txt} "$project"
    # Without the optimiser: what can go wrong here are paths and targets.
    cmake -S "$project" -B "$parts" -G Ninja -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_CXX_FLAGS=-O0 \
        -DCMAKE_CXX_COMPILER_LAUNCHER="$(command -v ccache || true)"
    [ ! -d "$parts/qmfilter/tests" ] || { echo "the tests are a part of a subproject" && exit 1; }
    ninja -C "$parts" first count_plot
    program=$parts/count_plot first=$parts/first qmplot=$build/bin/qmplot
else
    DESTDIR=$folder/staged cmake --install "$build" --prefix /opt >/dev/null
    # Moved after the installation: nothing may hold on to the first place.
    cmake --install "$build" --prefix "$folder/first" >/dev/null
    mv "$folder/first" "$folder/prefix"
    prefix=$folder/prefix qmplot=$folder/prefix/bin/qmplot
    modules=$(dirname "$(find "$prefix" -name QmZipx.so)")
    [ -f "$modules/libQmFilter_HPGL.so" ]
    diff <(cd "$prefix" && find . | sort) <(cd "$folder/staged/opt" && find . | sort)
    if grep -rn "$source" "$prefix/include" "$prefix"/lib*/{,*/}cmake "$prefix"/lib*/{,*/}pkgconfig 2>/dev/null; then
        echo "the installed tree names the source tree" && exit 1
    fi
fi
if [ "$how" = cmake ]; then
    cmake -S "$consumer" -B "$folder/build" -G Ninja -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_PREFIX_PATH="$prefix"
    cmake --build "$folder/build"
    cmake -S "$folder/program" -B "$folder/program/build" -G Ninja -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_PREFIX_PATH="$prefix"
    cmake --build "$folder/program/build"
    program=$folder/build/count_plot first=$folder/program/build/first
elif [ "$how" = pkg-config ]; then
    PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name qmfilter.pc)")
    export PKG_CONFIG_PATH
    program=$folder/count_plot first=$folder/program/first
    for one in "$consumer/count_plot.cpp $program" "$folder/program/first.cpp $first"; do
        # shellcheck disable=SC2046
        "$cxx" -std=c++17 "${one% *}" -o "${one#* }" $(pkg-config --cflags --libs qmfilter) \
            -Wl,-rpath,"$(pkg-config --variable=libdir qmfilter)"
    done
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

# What the first program prints is what is on the pages.
"$qmplot" info --texts "$plot" >"$folder/told"
"$first" "$plot" >"$folder/printed"
[ "$(grep -c '^  text: ' "$folder/printed")" = "$(grep -c '^ *text ' "$folder/told")" ]
[ "$(grep -c '^Page ' "$folder/printed")" = "$(grep -c '^  Page ' "$folder/told")" ]
lines=$(grep '^  pen .*: -\?[0-9]' "$folder/printed" | tr ' ' '\n' | grep -c ,)
paths=$(grep -c '^  pen .*: -\?[0-9]' "$folder/printed")
grep -q "^    $((lines - paths)) lines" "$folder/told" || { echo "$((lines - paths)) lines are printed" && cat "$folder/told" && exit 1; }
status=0
"$first" "$source/README.md" || status=$?
[ "$status" = 1 ]
