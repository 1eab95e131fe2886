# shellcheck shell=bash
# Sourced by the scripts at the root: where the project is, and how missing packages come in.

# What the libraries and the command are built from.
# shellcheck disable=SC2034  # by the scripts that source this one
build_packages=(cmake g++ ninja-build libboost-dev libcli11-dev libfast-float-dev libfmt-dev libgmp-dev
    nlohmann-json3-dev zlib1g-dev)

# Installs the packages named that are missing, through apt-get as root or through sudo; anywhere else
# prints the one line to run and ends with 69 (a service is unavailable).
need_packages()
{
    if ! command -v dpkg-query >/dev/null; then
        echo "This is not Debian: what is needed is what Debian calls $*" >&2
        return
    fi
    local present missing=() package
    present=" $(dpkg-query -W -f '${db:Status-Status}:${binary:Package} ' "$@" 2>/dev/null || true)"
    for package in "$@"; do
        # A package of several architectures carries its architecture behind its name.
        [[ $present == *" installed:$package "* || $present == *" installed:$package:"* ]] ||
            missing+=("$package")
    done
    [[ ${#missing[@]} -gt 0 ]] || return 0

    local as_root=()
    if [[ $(id -u) -ne 0 ]]; then
        as_root=(sudo)
        # Without a terminal sudo can't ask for a password.
        if ! command -v sudo >/dev/null || { [[ ! -t 0 ]] && ! sudo -n true 2>/dev/null; }; then
            echo "Packages are missing. Run this line as root, then come back:" >&2
            echo "  apt-get update && apt-get install -y --no-install-recommends ${missing[*]}" >&2
            exit 69
        fi
    fi
    echo "Installing ${missing[*]}" >&2
    local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive
        apt-get -q -y -o DPkg::Lock::Timeout=120)
    # A fresh machine has no lists; old lists may name files that are gone by now.
    if ! compgen -G '/var/lib/apt/lists/*Packages*' >/dev/null; then
        "${apt[@]}" update >&2
    fi
    "${apt[@]}" install --no-install-recommends "${missing[@]}" >&2 ||
        { "${apt[@]}" update && "${apt[@]}" install --no-install-recommends "${missing[@]}"; } >&2
}

# Every C and C++ file of the project, one a line.
project_sources()
{
    local patterns=('*.c' '*.h' '*.cpp' '*.hpp' '*.inl') pattern names=()
    if git rev-parse --git-dir >/dev/null 2>&1; then
        # Those that are about to be added as well, and none that was just removed.
        git ls-files --cached --others --exclude-standard "${patterns[@]}" |
            while read -r file; do [[ ! -e $file ]] || echo "$file"; done
    else
        for pattern in "${patterns[@]}"; do names+=(-o -name "$pattern"); done
        find . -path ./build -prune -o \( "${names[@]:1}" \) -print | sed 's|^\./||' | sort
    fi
}
