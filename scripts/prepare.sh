# What scripts/run, scripts/test and .ci/run share: missing packages, configuration, builds. Sourced by bash.
#
#   install_packages KIND...   installs what scripts/packages lists under these kinds and dpkg does not know, and says so
#                              first; with no_install=1 says what is missing and exits 2
#   build_targets TARGET...    configures when needed, then builds; prints nothing when all is up to date
#   build_for_windows TARGET.. the same for the cross build; says so and fails where its tools cannot be had, the reason
#                              then standing in windows_skipped
#
# The presets are $preset and $windows_preset; QM_PRESET and QM_WINDOWS_PRESET choose others. Everything said here goes to standard error: standard output belongs to the
# program that is run.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
preset=${QM_PRESET:-release}
windows_preset=${QM_WINDOWS_PRESET:-windows}
no_install=0
windows_skipped=

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

# Runs a command that counts what it does: on a terminal as it is, else with its last line once a minute. A failure shows
# the lines that tell of it.
counting() {
    if [ -t 2 ]; then
        "$@" >&2 </dev/null
        return
    fi
    local log status=0 worker waited=0
    log=$(mktemp)
    "$@" >"$log" 2>&1 </dev/null &
    worker=$!
    while kill -0 "$worker" 2>/dev/null; do
        sleep 0.2
        waited=$((waited + 1))
        [ $((waited % 300)) -ne 0 ] || printf '%s\n' "$(tail -n 1 "$log")" >&2
    done
    wait "$worker" || status=$?
    [ "$status" -eq 0 ] || grep -vE '^\[[0-9]+/[0-9]+\] [A-Z][a-z]+ |^(Get:|Hit:|Selecting |Preparing |Unpacking |Setting up )' "$log" >&2 || true
    rm -f "$log"
    return "$status"
}

run_ninja() {
    # A build with nothing to do says nothing.
    [ -t 2 ] && [ "$(ninja -n "$@" 2>/dev/null | tail -n 1)" = "ninja: no work to do." ] || counting ninja "$@"
}

# Sets missing to the packages of these kinds that are not installed.
find_missing() {
    local kind name rest wanted=() installed
    while read -r kind name rest; do
        case " $* " in *" $kind "*) wanted+=("$name") ;; esac
    done <"$root/scripts/packages"
    installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "${wanted[@]}" 2>/dev/null || true)
    missing=()
    for name in "${wanted[@]}"; do
        case $'\n'"$installed"$'\n' in
            *$'\n'"installed $name"$'\n'*) ;;
            *) missing+=("$name") ;;
        esac
    done
}

install_packages() {
    command -v dpkg-query >/dev/null || return 0 # another system: its owner installs
    local missing as_root=()
    find_missing "$@"
    [ ${#missing[@]} -gt 0 ] || return 0

    local install=(apt-get install --yes --no-install-recommends -o DPkg::Lock::Timeout=120
        "${missing[@]}")
    [ "$no_install" -eq 0 ] || die "these packages are missing: ${missing[*]}"
    if [ "$(id -u)" -ne 0 ]; then
        if command -v sudo >/dev/null && { sudo -n true 2>/dev/null || { [ -t 0 ] && sudo -v; }; }; then
            as_root=(sudo)
        else
            printf '%s: packages are missing; as root, run:\n%s\n' "${0##*/}" "${install[*]}" >&2
            exit 2
        fi
    fi
    echo "Installing with apt-get, and what they need: ${missing[*]} (--no-install refuses)" >&2
    as_root+=(env DEBIAN_FRONTEND=noninteractive)
    # Package lists that are there are good enough; a machine without any, or with stale ones, needs an update first.
    if "${as_root[@]}" "${install[@]}" --simulate >/dev/null 2>&1 </dev/null; then
        counting "${as_root[@]}" "${install[@]}" && return
        echo "Once more with new package lists" >&2
    fi
    counting "${as_root[@]}" apt-get update || die "apt-get update failed; is there a network?"
    counting "${as_root[@]}" "${install[@]}" || die "these packages could not be installed: ${missing[*]}"
}

build_targets() {
    configure_and_build "$preset" "$@"
}

# Packages and sources may be out of reach (no network, no rights, another system); all else that goes wrong is an error.
build_for_windows() {
    local log
    log=$(mktemp)
    if ! (install_packages windows && "$root/scripts/fetch-sources") 2> >(tee "$log" >&2) ||
        ! command -v x86_64-w64-mingw32-g++-posix >/dev/null; then
        # The subshell's last words may still be on their way.
        sleep 0.2
        windows_skipped=$(grep -E '^(E:|Err:|[a-z-]+: )' "$log" || echo "MinGW-w64 or Wine is missing")
        rm -f "$log"
        say_skipped
        return 1
    fi
    rm -f "$log"
    configure_and_build "$windows_preset" "$@"
}

say_skipped() {
    [ -z "$windows_skipped" ] || printf 'SKIPPED: the Windows build and its tests:\n%s\n' "$windows_skipped" >&2
}

configure_and_build() {
    local name=$1 folder=$root/build/$1
    shift
    mkdir -p "$folder"
    # Two calls at the same time must not build in one folder; the second waits.
    exec 9>"$folder/.lock"
    flock 9
    if [ ! -f "$folder/build.ninja" ]; then
        echo "Building in build/$name; the first time takes a few minutes" >&2
        (cd "$root" && quietly cmake --preset "$name") || die "the configuration failed"
    fi
    # Ninja configures again by itself when a CMakeLists.txt has changed.
    run_ninja -C "$folder" -j"$(nproc)" "$@" || die "the build failed"
    exec 9>&-
}
