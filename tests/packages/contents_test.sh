#!/bin/bash
# contents_test.sh BUILD SOURCE: packs the build as scripts/package-debian does, and looks at the packages. Skipped (77) where
# the tools of the kind "package" are missing.
set -euo pipefail
build=$1 source=$2
command -v dpkg-shlibdeps file >/dev/null || exit 77
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
status=0
fail() {
    printf '%s\n' "$1"
    status=1
}

cpack --config "$build/CPackConfig.cmake" -B "$folder" >"$folder/log" 2>&1 || { cat "$folder/log" && exit 1; }
root=$folder/root
for name in qmplot libqmfilter-dev; do
    dpkg-deb -c "$folder/$name"_*.deb | sed -nE 's#.* \./usr/(.*[^/])( -> .*)?$#\1#p' | sed -E 's# -> .*##' >"$folder/$name"
    dpkg-deb -x "$folder/$name"_*.deb "$root"
done
# Each belongs to this package alone.
while read -r package path; do
    for name in qmplot libqmfilter-dev; do
        count=$(grep -cxE "$path" "$folder/$name" || true)
        [ "$count" = "$([ "$name" = "$package" ] && echo 1 || echo 0)" ] || fail "$name has $count files named $path"
    done
done <<'ROWS'
qmplot bin/qmplot
qmplot lib(/[^/]*)?/libqmfilter\.so\.1
qmplot lib(/[^/]*)?/qmfilter/QmZipx\.so
qmplot lib(/[^/]*)?/qmfilter/libQmFilter_HPGL\.so
qmplot share/bash-completion/completions/qmplot
qmplot share/zsh/(site-functions|vendor-completions)/_qmplot
qmplot share/fish/vendor_completions\.d/qmplot\.fish
qmplot share/mime/packages/qmplot\.xml
qmplot share/thumbnailers/qmplot\.thumbnailer
qmplot share/applications/qmplot\.desktop
qmplot share/doc/qmplot/copyright
libqmfilter-dev lib(/[^/]*)?/libqmfilter\.so
libqmfilter-dev lib(/[^/]*)?/cmake/QmFilter/QmFilterConfig\.cmake
libqmfilter-dev lib(/[^/]*)?/pkgconfig/qmfilter\.pc
libqmfilter-dev include/qmfilter/plot\.h
libqmfilter-dev include/qmfilter/qmfilter\.h
libqmfilter-dev share/doc/libqmfilter-dev/copyright
ROWS
depends=$(dpkg-deb -f "$folder"/libqmfilter-dev_*.deb Depends)
[ "$depends" = "qmplot (= $(dpkg-deb -f "$folder"/qmplot_*.deb Version))" ] || fail "libqmfilter-dev depends on $depends"
dpkg-deb -f "$folder"/qmplot_*.deb Depends | grep -q libzip || fail "qmplot does not depend on libzip"

# A page for each command that help lists.
qmplot=$root/usr/bin/qmplot
commands=$("$qmplot" --help | sed -n '/^Commands:/,/^$/s/^  \([a-z]\+\) .*/\1/p')
[ "$(wc -w <<<"$commands")" -ge 7 ] || fail "help lists no commands"
for command in '' $commands; do
    page=$root/usr/share/man/man1/qmplot${command:+-$command}.1.gz
    gzip -dc "$page" | grep -q '^\.SH NAME' || fail "there is no manual page for qmplot $command"
done

# The thumbnailer's line, as file managers fill it in: the picture's name has no ending.
line=$(sed -n 's/^Exec=qmplot //p' "$root/usr/share/thumbnailers/qmplot.thumbnailer")
(cd "$folder" && cp "$source/examples/sheets.plt" plan.prn && cmake -E tar cf plot.zip --format=zip plan.prn)
for plot in "$source/examples/sheets.plt" "$folder/plot.zip"; do
    filled=${line//%s/200}
    filled=${filled//%i/$plot}
    # shellcheck disable=SC2086
    "$qmplot" ${filled//%o/$folder/picture}
    picture=$(file "$folder/picture")
    grep -qE 'PNG image data, (200 x [0-9]+|[0-9]+ x 200),' <<<"$picture" || fail "$picture"
done

if command -v lintian >/dev/null; then
    # This build has another prefix than scripts/package-debian gives.
    lintian --allow-root --fail-on error,warning --suppress-tags pkg-config-unavailable-for-cross-compilation \
        "$folder"/*.deb || status=1
fi
exit "$status"
