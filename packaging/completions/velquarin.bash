# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
# What bash offers behind "velquarin". It is loaded by its name, with the first word that is completed.

# What decides the rest among the words so far: the command, or an option that needs none; or nothing.
_velquarin_command() {
    local word
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        case $word in
            status | year | refresh | show | --help | --version | -h | -v)
                printf '%s' "$word"
                return
                ;;
        esac
    done
}

# Those of the options given that are not there yet.
_velquarin_left() {
    local option
    for option in "$@"; do
        [[ " ${COMP_WORDS[*]:1:COMP_CWORD-1} " == *" $option "* ]] || printf '%s ' "$option"
    done
}

_velquarin() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} offered command
    # Bash makes words of their own of "--format" and "=".
    [[ $before == = ]] && before=${COMP_WORDS[COMP_CWORD - 2]}
    [[ $word == = ]] && word='' before=--format
    command=$(_velquarin_command)
    case $before:$command in
        --format:year) offered='text json svg' ;;
        --format:*) offered='text json waybar' ;;
        *:status) offered=$(_velquarin_left --format --follow) ;;
        *:year) offered=$(_velquarin_left --format) ;;
        *:) offered='status year refresh show --help --version' ;;
        *) offered='' ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$offered" -- "$word")
}

complete -F _velquarin velquarin
