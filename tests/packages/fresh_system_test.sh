#!/bin/bash
# fresh_system_test.sh EXAMPLES QMPLOT.deb DEV.deb: installs the packages in a Debian made for this, uses them as
# users and programs do, and removes them; nothing of theirs may stay. Wants root and debootstrap, takes some minutes.
set -euo pipefail
[ "$(id -u)" = 0 ] || { echo "this wants root's rights" >&2 && exit 2; }
examples=$1
folder=$(mktemp -d)
root=$folder/root
trap 'umount "$root/proc" "$root/dev" 2>/dev/null || true; rm -rf --one-file-system "$folder"' EXIT
step() {
    printf '== %s (%d s)\n' "$1" "$SECONDS"
}
inside() {
    chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"
}
add() {
    inside apt-get install --yes --no-install-recommends "$@" >"$folder/log" 2>&1 || { cat "$folder/log" && exit 1; }
}
# All names, without what packages leave behind everywhere: caches, logs, lists.
names() {
    inside find / -xdev \( -path /proc -o -path /dev -o -path /tmp -o -path /work -o -path /var/log -o -path /var/cache -o -path /var/lib/apt \
        -o -path /var/lib/dpkg \) -prune -o -print | sort
}

step "a fresh system"
release=$(. /etc/os-release && echo "$VERSION_CODENAME")
debootstrap --variant=minbase "$release" "$root" >"$folder/log" 2>&1 || { tail "$folder/log" && exit 1; }
cp /etc/resolv.conf /etc/hosts "$root/etc/"
cp -r /etc/apt/apt.conf.d/. "$root/etc/apt/apt.conf.d/"
mount --bind /dev "$root/dev"
mount -t proc proc "$root/proc"
mkdir "$root/work"
cp "$2" "$root/work/qmplot.deb"
cp "$3" "$root/work/dev.deb"
cp "$examples"/*.plt "$root/work/"
# Of Debian: what is removed with the packages would be missed.
inside apt-get update >/dev/null
add shared-mime-info libglib2.0-bin man-db bash-completion zip g++ cmake make pkg-config
# Debian's small systems leave manual pages out.
rm -f "$root"/etc/dpkg/dpkg.cfg.d/*docker* "$root"/etc/dpkg/dpkg.cfg.d/*excludes*
inside apt-get install --yes --no-install-recommends --download-only /work/qmplot.deb >/dev/null
depends=$(dpkg-deb -f "$2" Depends | sed 's/([^)]*)//g; s/,//g')
# shellcheck disable=SC2086
add $depends
names >"$folder/before"

step "installed"
add /work/qmplot.deb
cat >"$root/work/use" <<'INSIDE'
set -euo pipefail
cd /work
qmplot --version
qmplot convert -q sheets.plt s.pdf
qmplot convert -q --page 1 sheets.plt s.png
cp sheets.plt plan.prn && zip -q plan.zip plan.prn
qmplot info plan.zip | grep 'Nemetschek Allplan, '
for page in qmplot qmplot-convert; do man "$page" | grep '^NAME'; done
bash -c '. /usr/share/bash-completion/bash_completion; _completion_loader qmplot; complete -p qmplot' | grep -- '-F _qmplot'
for plot in *.plt; do
    cp "$plot" "${plot%.plt}.unknown"
    gio info -a standard::content-type "$plot" "${plot%.plt}.unknown" | grep content-type | tee types
    [ "$(grep -cE 'vnd.hp-(hpgl|rtl)' types)" = 2 ]
done
echo "INVOICE no. 7; SPECIAL" >letter
if gio info -a standard::content-type letter | grep vnd.hp; then exit 1; fi
line=$(sed -n 's/^Exec=//p' /usr/share/thumbnailers/qmplot.thumbnailer | sed 's/%s/128/; s#%i#/work/chart.plt#; s#%o#/work/thumb#')
$line
head -c 4 thumb | grep PNG >/dev/null
INSIDE
inside bash /work/use

step "compiled against"
add /work/dev.deb
cat >"$root/work/build" <<'INSIDE'
set -euo pipefail
cd /work/program
cmake -S . -B build && cmake --build build
build/first /work/sheets.plt >/work/counted
c++ -std=c++17 first.cpp -o first $(pkg-config --cflags --libs qmfilter)
./first /work/sheets.plt | cmp - /work/counted
cat /work/counted
INSIDE
mkdir "$root/work/program"
awk -v out="$root/work/program" -f "$(dirname "$0")/../../cmake/extract-code.awk" "$(dirname "$0")/../../docs/integration.md"
inside bash /work/build

step "removed"
inside apt-get purge --yes qmplot libqmfilter-dev >"$folder/log" 2>&1 || { cat "$folder/log" && exit 1; }
names >"$folder/after"
diff "$folder/before" "$folder/after" || { echo "that is what differs from before" && exit 1; }
step "nothing is left"
