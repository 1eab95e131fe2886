# shellcheck shell=bash
# Sourced by the scripts at the root: where the project is, and how missing packages come in.

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
        if ! sudo -n true 2>/dev/null && ! { [[ -t 0 ]] && command -v sudo >/dev/null; }; then
            echo "Packages are missing. Run this once, then come back:" >&2
            echo "  su -c 'apt-get update && apt-get install -y --no-install-recommends ${missing[*]}'" >&2
            exit 69
        fi
    fi
    echo "Installing ${missing[*]}" >&2
    local install=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y
        -o DPkg::Lock::Timeout=120)
    # The lists may be there and good already; a machine without them needs the update.
    "${install[@]}" install --no-install-recommends "${missing[@]}" >&2 && return
    "${install[@]}" update >&2
    "${install[@]}" install --no-install-recommends "${missing[@]}" >&2
}

# Every C and C++ file of the project, one a line.
project_sources()
{
    git ls-files --cached --others --exclude-standard \
        '*.c' '*.h' '*.cpp' '*.hpp' '*.inl' | while read -r file; do [[ -e $file ]] && echo "$file"; done
}
