#!/bin/sh
# windows_names_test.sh WINE_RUN QMPLOT_EXE PLOT: names that no code page holds together, wildcards, which no shell expands
# there, and child processes.
wine_run=$1 windows=$2 plot=$3
folder=$(mktemp -d) || exit 1
trap 'rm -rf "$folder"' EXIT
export LC_ALL=C.UTF-8
cd "$folder" || exit 1
for name in plün план; do cp "$plot" "$name.plt" || exit 1; done
status=0
expect() {
    [ "$2" = "$3" ] && return
    printf '%s: %s instead of %s\n' "$1" "$2" "$3"
    status=1
}

"$wine_run" "$windows" convert -q -o öut '*.plt' || status=1
expect "wildcard" "$(ls öut | sort | tr '\n' ' ')" "plün.svg план.svg "
expect "printed name" "$("$wine_run" "$windows" info план.plt | head -n 1 | cut -d, -f1)" "план.plt: HPGL/2"
expect "message" "$("$wine_run" "$windows" info ничего.plt | tr -d '\r' | cut -d: -f1-2)" "qmplot: ничего.plt"

expect "children" "$("$wine_run" "$windows" convert -q -o kinder --to pdf --timeout 60 --max-memory 500 '*.plt' 2>&1; ls kinder | sort | tr '\n' ' ')" \
    "plün.pdf план.pdf "
expect "out of memory" "$("$wine_run" "$windows" convert -o kinder --to png --dpi 300 --max-memory 16 план.plt 2>&1 | tr -d '\r' | head -n 1)" \
    "qmplot: план.plt: wants more memory than --max-memory allows"
exit $status
