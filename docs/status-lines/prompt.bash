# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
velquarin_prompt() {
    local answer days today
    answer=$(busctl --user --auto-start=no --timeout=1 get-property io.velquarin.Velquarin \
        /io/velquarin/Velquarin io.velquarin.Velquarin1 CurrentStreak CommittedToday 2> /dev/null) || return
    read -r _ days _ today <<< "${answer//$'\n'/ }"
    if ((days > 0)); then
        [[ $today == true ]] && echo "● $days " || echo "○ $days "
    fi
}
PS1='$(velquarin_prompt)'$PS1
