# What scripts/run, scripts/test and .ci/run share: missing packages, configuration, quiet builds. Sourced by bash.
#
#   install_packages KIND...   installs what scripts/packages lists under these kinds and dpkg does not know
#   build_targets TARGET...    configures when needed, then builds; prints nothing when all is up to date
#
# Everything said here goes to standard error: standard output belongs to the program that is run.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=$root/build/release

die() {
    printf '%s: %s\n' "${0##*/}" "$1" >&2
    exit 2
}

# Runs a command, shows its output only if it fails.
quietly() {
    local log status=0
    log=$(mktemp)
    "$@" >"$log" 2>&1 </dev/null || status=$?
    [ "$status" -eq 0 ] || cat "$log" >&2
    rm -f "$log"
    return "$status"
}

install_packages() {
    command -v dpkg-query >/dev/null || return 0 # another system: its owner installs
    local kind name rest wanted=() installed as_root=()
    while read -r kind name rest; do
        case " $* " in *" $kind "*) wanted+=("$name") ;; esac
    done <"$root/scripts/packages"

    installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "${wanted[@]}" 2>/dev/null || true)
    local missing=()
    for name in "${wanted[@]}"; do
        case $'\n'"$installed"$'\n' in
            *$'\n'"installed $name"$'\n'*) ;;
            *) missing+=("$name") ;;
        esac
    done
    [ ${#missing[@]} -gt 0 ] || return 0

    local install=(apt-get install --yes --no-install-recommends -o DPkg::Lock::Timeout=120
        "${missing[@]}")
    if [ "$(id -u)" -ne 0 ]; then
        if command -v sudo >/dev/null && { sudo -n true 2>/dev/null || { [ -t 0 ] && sudo -v; }; }; then
            as_root=(sudo)
        else
            printf '%s: packages are missing; as root, run:\n%s\n' "${0##*/}" "${install[*]}" >&2
            exit 2
        fi
    fi
    echo "Installing ${missing[*]}" >&2
    as_root+=(env DEBIAN_FRONTEND=noninteractive)
    # Package lists that are there are good enough; a machine without any, or with stale ones, needs an update first.
    "${as_root[@]}" "${install[@]}" >/dev/null 2>&1 </dev/null && return
    quietly "${as_root[@]}" apt-get update || die "apt-get update failed; is there a network?"
    quietly "${as_root[@]}" "${install[@]}" || die "these packages could not be installed: ${missing[*]}"
}

build_targets() {
    mkdir -p "$build"
    # Two calls at the same time must not build in one folder; the second waits.
    exec 9>"$build/.lock"
    flock 9
    if [ ! -f "$build/build.ninja" ]; then
        echo "Building in build/release; the first time takes a few minutes" >&2
        (cd "$root" && quietly cmake --preset release) || die "the configuration failed"
    fi
    # Ninja configures again by itself when a CMakeLists.txt has changed.
    quietly ninja -C "$build" -j"$(nproc)" "$@" || die "the build failed"
    exec 9>&-
}
