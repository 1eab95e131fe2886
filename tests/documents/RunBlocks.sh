#!/usr/bin/env bash
# RunBlocks.sh DOCUMENT ROOT LIBRARY NUVLP [LIBRARY...]: compiles and runs the code blocks of a document and compares what they print.
#   ```c and ```cpp    a whole program; it must compile without a warning and print the ```text block that follows it;
#                      C++, and C on the model layer, is linked with the further libraries too
#   ```console         lines `$ command` from the root of the tree, each followed by what it prints; ./solve stands for the
#                      built command
set -uo pipefail
document=$1 root=$2 library=$3 nuvlp=$4
further=("${@:5}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
run=0 failed=0

# Block number n goes to the file n.language.
awk -v work="$work" '
    /^```[a-z]+$/ && !inside { inside = 1; count++; file = sprintf("%s/%03d.%s", work, count, substr($0, 4)); printf "" > file; next }
    /^```$/ && inside { inside = 0; close(file); next }
    inside { print > file }
' "$document"

check() {  # check NAME EXPECTED PRINTED
    run=$((run + 1))
    if ! diff -u "$2" "$3"; then
        echo "$document: $1 does not print what the document says"
        failed=$((failed + 1))
    fi
}

program() {  # program SOURCE LIBRARIES COMPILER...
    local source=$1 name expected
    local -n libraries=$2
    shift 2
    name=${source%.*}
    expected=$(printf '%s/%03d.text' "$work" $((10#$(basename "$name") + 1)))
    if ! "$@" -Wall -Wextra -Wpedantic -Werror -I "$root" "$source" "${libraries[@]}" -o "$name.run"; then
        echo "$document: block $(basename "$source") does not compile"
        run=$((run + 1)) failed=$((failed + 1))
        return
    fi
    (cd "$root" && "$name.run") >"$name.printed"
    check "block $(basename "$source")" "$expected" "$name.printed"
}

console() {  # console SOURCE
    local stage=$work/stage
    mkdir -p "$stage"
    ln -sfn "$root/examples" "$stage/examples"
    ln -sfn "$root/tools" "$stage/tools"
    printf '#!/bin/sh\nexec "%s" solve "$@"\n' "$nuvlp" >"$stage/solve"
    printf '#!/bin/sh\nexec "%s" "$@"\n' "$nuvlp" >"$stage/nuvlp"
    chmod +x "$stage/solve" "$stage/nuvlp"
    while IFS= read -r line; do
        printf '%s\n' "$line"
        [[ $line == '$ '* ]] && (cd "$stage" && PATH="$stage:$PATH" bash -c "${line#\$ }" 2>&1)
    done < <(grep '^\$ ' "$1") >"$1.printed"
    check "block $(basename "$1")" "$1" "$1.printed"
    if grep '^{"schema"' "$1.printed" >"$1.json" && ! "$root/tests/report/validate.py" "$root/docs/schemas" --lines <"$1.json"; then
        echo "$document: block $(basename "$1") prints JSON that is not as its schema says"
        failed=$((failed + 1))
    fi
}

core=("$library") all=("${further[@]}" "$library") from_c=("${all[@]}" -lstdc++ -lm)
# Each may carry flags.
read -ra c_compiler <<<"${CC:-cc}"
read -ra cpp_compiler <<<"${CXX:-c++}"
for block in "$work"/*.c; do
    [[ -e $block ]] || continue
    libraries=core
    grep -q '"Nuv/Model/' "$block" && libraries=from_c
    program "$block" $libraries "${c_compiler[@]}" -std=c11
done
for block in "$work"/*.cpp; do [[ -e $block ]] && program "$block" all "${cpp_compiler[@]}" -std=c++20; done
for block in "$work"/*.console; do [[ -e $block ]] && console "$block"; done
[[ $run -gt 0 ]] || { echo "$document: no block was run"; exit 1; }
echo "$document: $run blocks run, $failed failed"
[[ $failed -eq 0 ]]
