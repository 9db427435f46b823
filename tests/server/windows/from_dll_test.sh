#!/bin/bash
# from_dll_test.sh BIN RUN SOURCE: the programs of examples/windows, compiled as docs/integration.md says in a folder that
# has the DLL of BIN and nothing else of this tree, and run by RUN (Wine): a host made from the DLL alone opens plots.
set -euo pipefail
run=$2 source=$3
page=$source/docs/integration.md
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
cp "$source"/examples/windows/*.cpp "$source/examples/chart.plt" "$1/QmFilter_HPGL.dll" .

mapfile -t compile < <(sed -n 's/^    \(x86_64-w64-mingw32-g++ .*\)/\1/p' "$page")
[ "${#compile[@]}" = 2 ]
${compile[0]} -Wall -Wextra -Werror
"$run" ./type_library_header.exe QmFilter_HPGL.dll qmfilter_dll.h
${compile[1]} -Wall -Wextra -Werror

# The lines of the page but for HKCU: Wine looks at the machine's classes only. The prefix is as it was afterwards.
mapfile -t register < <(sed -n 's/^    reg add HKCU\\//p' "$page")
key=${register[0]%% *}
trap '"$run" reg delete "HKLM\\${key%\\CLSID}" /f >/dev/null; rm -rf "$folder"' EXIT

# expect STATUS OUTPUT COMMAND...
expect() {
    local status=0 output
    output=$("$run" "${@:3}" | tr -d '\r') || status=$?
    [ "$status $output" = "$1 $2" ] || { printf '%s:\n%s %s\nexpected: %s %s\n' "${*:3}" "$status" "$output" "$1" "$2" && exit 1; }
}
printf 'IN;SP1;PU0,0;PD500,0;PU0,0;CI100;PU0,0;RA90,90;PG;PU5,5;PD9,9;' >two.plt
echo 'Dear all,' >letter.txt
expect 2 'Tessel.QmContainer is not registered' ./count_plot.exe QmFilter_HPGL.dll two.plt
# shellcheck disable=SC2086 # the words of the command
"$run" reg add "HKLM\\$key" ${register[0]#* } >/dev/null
expect 0 'Page 1: 1 lines, 1 curves, 1 areas, 0 texts, 0 pictures
Page 2: 1 lines, 0 curves, 0 areas, 0 texts, 0 pictures' ./count_plot.exe QmFilter_HPGL.dll two.plt
expect 1 'no plot' ./count_plot.exe QmFilter_HPGL.dll letter.txt
expect 1 'the file has no type library' ./type_library_header.exe count_plot.exe none.h
expect 0 "$(sed -n 's/^    \(Page 1: .*\)/\1/p' "$page")" ./count_plot.exe QmFilter_HPGL.dll chart.plt
