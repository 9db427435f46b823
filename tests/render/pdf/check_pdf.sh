#!/bin/bash
# check_pdf.sh QMPLOT PLOT...: converts the plots to PDF and has programs that others wrote read them: qpdf looks at the structure,
# pdftotext copies the texts, pdftoppm and mutool draw every page. Ends with status 77 where none of them is installed.
set -eu
qmplot=$1
shift
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

have() { command -v "$1" >/dev/null; }
fail() {
    echo "$1" >&2
    exit 1
}

missing=
for program in qpdf pdftotext pdftoppm mutool; do have $program || missing+=" $program"; done
[ -z "$missing" ] || echo "SKIPPED, not installed:$missing"
[ "$missing" != " qpdf pdftotext pdftoppm mutool" ] || exit 77

for plot in "$@"; do
    pdf=$work/out.pdf
    "$qmplot" convert "$plot" "$pdf"
    if have qpdf; then
        qpdf --check "$pdf" >"$work/log" 2>&1 || fail "qpdf on $plot: $(cat "$work/log")"
    fi
    if have pdftotext; then
        # Every text of the plot, blanks and texts of control characters aside. No-break spaces and soft hyphens are not copied.
        pdftotext -raw "$pdf" "$work/texts" 2>"$work/log"
        [ ! -s "$work/log" ] || fail "pdftotext on $plot: $(cat "$work/log")"
        tr -d ' \n\f' <"$work/texts" >"$work/copied"
        "$qmplot" info --texts "$plot" | sed -n 's/^ *text "\(.*\)".*/\1/p' |
            LC_ALL=C sed '/\\x/d; s/\\\(.\)/\1/g; s/\xc2[\xa0\xad]//g' | tr -d ' ' >"$work/wanted"
        while IFS= read -r text; do
            grep -qF -- "$text" "$work/copied" || fail "pdftotext on $plot: does not copy \"$text\""
        done <"$work/wanted"
    fi
    for draw in "pdftoppm -r 20 $pdf $work/page" "mutool draw -q -r 20 -o $work/page-%d.ppm $pdf"; do
        have "${draw%% *}" || continue
        rm -f "$work"/page*
        $draw >"$work/log" 2>&1 || fail "$draw on $plot: $(cat "$work/log")"
        ! grep -iE "error|repair" "$work/log" || fail "${draw%% *} on $plot complains"
        for page in "$work"/page*; do
            [ "$(tail -c +16 "$page" | tr -d '\377' | wc -c)" -gt 0 ] || fail "${draw%% *} on $plot shows nothing"
        done
    done
done
