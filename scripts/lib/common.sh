# shellcheck shell=bash
# Shared by the scripts: sourced, never run. Leaves the shell in the project's folder.
set -euo pipefail

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/../.." && pwd -P)
cd -- "$root"
export CMAKE_GENERATOR=Ninja # only the first configuration of a build folder asks for it
if command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi
# Programs for Windows run in a system of their own, which wine makes when it is first asked for.
export WINEPREFIX=$root/build/wine WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml='

say() {
    printf '%s\n' "$*"
}

# One clear line, and the end.
fail() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# For a script that takes no arguments: ends it when there are any.
refuse_arguments() {
    if [[ $# != 0 ]]; then
        fail "unknown argument $1 (there are none)"
    fi
}

# Whether a line of scripts/lib/packages is met: package, probe.
is_there() {
    if command -v dpkg-query >/dev/null; then
        # A line for each architecture that has it.
        dpkg-query -W -f='${db:Status-Status}\n' "$1" 2>/dev/null | grep -x installed >/dev/null
        return
    fi
    case $2 in
    command:*) command -v "${2#command:}" >/dev/null ;;
    module:*) pkg-config --exists "${2#module:}" 2>/dev/null ;;
    *) true ;;
    esac
}

# The packages that are missing, for the kinds of need given (play, test), one a line.
missing_packages() {
    local kind package probe
    while read -r kind package probe; do
        if [[ " $* " == *" $kind "* ]] && ! is_there "$package" "$probe"; then
            say "$package"
        fi
    done < <(grep -v -e '^#' -e '^$' scripts/lib/packages)
}

as_root() {
    if [[ $(id -u) == 0 ]]; then
        "$@"
    else
        sudo "$@"
    fi
}

# Installs what is missing for the kinds of need given; asks nothing but sudo's password.
ensure_packages() {
    local missing
    mapfile -t missing < <(missing_packages "$@")
    if [[ ${#missing[@]} == 0 ]]; then
        return
    fi
    if ! command -v apt-get >/dev/null; then
        fail "missing, and there is no apt to install it with: ${missing[*]} (names as in Debian)"
    fi
    if [[ $(id -u) != 0 ]] && ! command -v sudo >/dev/null; then
        fail "missing, and there is no sudo to install it with; run as root: apt-get install ${missing[*]}"
    fi
    say "Installing ${missing[*]}"
    mkdir -p build
    local log=build/packages.log
    as_root apt-get update -q >"$log" 2>&1 || say "apt-get update had trouble (see $log); going on"
    if ! as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends \
        -o Acquire::Retries=3 "${missing[@]}" >>"$log" 2>&1 </dev/null; then
        tail -n 15 "$log" >&2
        fail "apt-get could not install ${missing[*]} (all of it in $log)"
    fi
}

# Configures and builds a preset; says nothing but on failure.
build_preset() {
    cmake --preset "$1" && cmake --build --preset "$1"
}

# Some kernels scatter memory more widely than the sanitizers of this age can bear.
calmly() {
    if setarch "$(uname -m)" -R true 2>/dev/null; then
        setarch "$(uname -m)" -R "$@"
    else
        "$@"
    fi
}

# Runs Python tests with Debian's Python, for which the modules are installed.
run_pytest() {
    PYTHONDONTWRITEBYTECODE=1 calmly pytest-3 -q "$@"
}
