# What scripts/run, scripts/test and .ci/run share: missing packages, configuration, quiet builds. Sourced by bash.
#
#   install_packages KIND...   installs what scripts/packages lists under these kinds and dpkg does not know
#   build_targets TARGET...    configures when needed, then builds; prints nothing when all is up to date
#   build_for_windows TARGET.. the same for the cross build; says so and fails where its tools cannot be had
#
# Everything said here goes to standard error: standard output belongs to the program that is run.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=$root/build/release
windows_build=$root/build/windows

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
    configure_and_build release "$@"
}

# Packages and sources may be out of reach (no network, no rights, another system); all else that goes wrong is an error.
build_for_windows() {
    local log
    if ! (install_packages windows) || ! command -v x86_64-w64-mingw32-g++-posix >/dev/null; then
        skip_windows "MinGW-w64 or Wine is missing"
        return 1
    fi
    if [ ! -f "$windows_build/build.ninja" ]; then
        log=$(cd "$root" && cmake --preset windows 2>&1 </dev/null) || {
            # What cmake/DebianSource.cmake advises when it cannot download.
            if ! grep -q "Unpack the source by hand" <<<"$log"; then
                printf '%s\n' "$log" >&2
                die "the configuration for Windows failed"
            fi
            skip_windows "the sources of the libraries cannot be downloaded"
            return 1
        }
    fi
    configure_and_build windows "$@"
}

skip_windows() {
    echo "SKIPPED: the Windows build and its tests: $1" >&2
}

configure_and_build() {
    local preset=$1 folder=$root/build/$1
    shift
    mkdir -p "$folder"
    # Two calls at the same time must not build in one folder; the second waits.
    exec 9>"$folder/.lock"
    flock 9
    if [ ! -f "$folder/build.ninja" ]; then
        echo "Building in build/$preset; the first time takes a few minutes" >&2
        (cd "$root" && quietly cmake --preset "$preset") || die "the configuration failed"
    fi
    # Ninja configures again by itself when a CMakeLists.txt has changed.
    quietly ninja -C "$folder" -j"$(nproc)" "$@" || die "the build failed"
    exec 9>&-
}
