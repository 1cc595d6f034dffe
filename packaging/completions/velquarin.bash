# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
# What bash offers behind "velquarin". It is loaded by its name, with the first word that is completed.

# The command among the words so far, or nothing.
_velquarin_command() {
    local word
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        case $word in
            status | year | refresh | show) printf '%s' "$word" ;;
        esac
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
        *:status) offered='--format --follow' ;;
        *:year) offered='--format' ;;
        *:refresh | *:show) offered='' ;;
        *) offered='status year refresh show --help --version' ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$offered" -- "$word")
}

complete -F _velquarin velquarin
