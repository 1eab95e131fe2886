#!/usr/bin/env bash
# run.sh PEER_MODELS: compares answers with those of glpsol and scipy's linprog. Ends with 77, which is
# no failure, where these are not installed.
set -euo pipefail
here=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")

if ! command -v glpsol >/dev/null; then
    echo "Skipped: there is no glpsol (Debian: glpk-utils)"
    exit 77
fi
# What stands first in the path may be another Python than the system's.
for python in python3 /usr/bin/python3 none; do
    if [[ $python == none ]]; then
        echo "Skipped: there is no Python with scipy (Debian: python3-scipy)"
        exit 77
    fi
    ! "$python" -c 'import scipy.optimize' 2>/dev/null || break
done

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$1" "$folder"
"$python" "$here/compare.py" "$folder"
