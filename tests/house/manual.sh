#!/usr/bin/env bash
# The man pages and the completion of shells, as shells take them. Argument: the folder in which
# they were made. What needs a program that is not there is left out, and told.
set -euo pipefail
manual=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"
mkdir roads
touch roads.e00 'two words.e00'

failed=0
# completes "WHAT..." WORD...: bash offers just these for the last of the words.
completes() {
    local expected=$1 offered
    shift
    offered=$(bash --norc -c '
        source "$0"
        COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
        _intake
        printf "%s\n" "${COMPREPLY[@]}" | LC_ALL=C sort | paste -sd,' "$manual/bash/intake" "$@")
    if [[ $offered != "$expected" ]]; then
        echo "bash completes \"$*\" with \"$offered\", not \"$expected\""
        failed=1
    fi
}
completes import intake im
completes check,check-workspace,convert intake c
completes --version intake --v
completes --quiet intake import --q
completes json intake import --progress ''
completes json intake import --progress = j
completes json intake import --progress =
completes 'Text\ File,Textset\ File' intake show roads --kind Te
completes arc intake dump roads --class ar
completes '' intake import --max-size ''
completes draw intake help dr
completes roads,roads.e00 intake import ro
completes 'two words.e00' intake import roads.e00 tw

# lint WHAT PROGRAM WORDS...: a program that tells nothing of what is right.
lint() {
    local what=$1 told
    shift
    if ! command -v "$1" >/dev/null; then
        echo "$what not looked at: there is no $1"
    elif ! told=$("$@" 2>&1) || [[ -n $told ]]; then
        echo "$what: $told"
        failed=1
    fi
}
for page in "$manual"/man1/*.1; do
    lint "${page##*/}" groff -man -Tascii -ww -z "$page"
done
lint _intake zsh -n "$manual/zsh/_intake"
lint intake.fish fish --no-execute "$manual/fish/intake.fish"
exit $failed
