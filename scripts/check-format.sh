#!/bin/bash
# Holds the look of a line: fails for each C++ file that clang-format would write differently.
# usage: check-format.sh               the files of src/, tests/, bench/ and definitions/
#        check-format.sh --self-test   shows that it can fail
set -euo pipefail
source "${BASH_SOURCE[0]%/*}/lib.sh"

check() { clang-format --style=file:"$VELVANE_ROOT/.clang-format" --dry-run -Werror "$@"; }

self_test() {
    local folder
    folder=$(mktemp -d)
    trap 'rm -rf -- "$folder"' RETURN
    printf 'int main() {\n    return 0;\n}\n' >"$folder/good.cpp"
    printf 'int main(){ return 0 ; }\n' >"$folder/bad.cpp"
    check "$folder/good.cpp" || return 1
    if check "$folder/bad.cpp" 2>/dev/null; then
        note "check-format: self-test: a badly written file passes"
        return 1
    fi
}

case ${1:-} in
    --self-test) self_test ;;
    *)
        cd -- "$VELVANE_ROOT"
        # New files, too, so that it tells before the commit.
        mapfile -d '' files < <(git ls-files -z --cached --others --exclude-standard -- \
            src tests bench definitions | grep -zE '\.(h|cpp)$')
        existing=()
        for file in "${files[@]}"; do if [[ -f $file ]]; then existing+=("$file"); fi; done
        ((${#existing[@]})) || die "no file was found"
        check "${existing[@]}"
        ;;
esac
