# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
# What fish offers behind "velquarin".
set -l commands status year refresh show
complete -c velquarin -f
complete -c velquarin -n "not __fish_seen_subcommand_from $commands" -s h -l help -d "Print the help"
complete -c velquarin -n "not __fish_seen_subcommand_from $commands" -s v -l version -d "Print the version"
complete -c velquarin -n "not __fish_seen_subcommand_from $commands" -a status -d "Print the streak"
complete -c velquarin -n "not __fish_seen_subcommand_from $commands" -a year -d "Print the last 365 days as a calendar"
complete -c velquarin -n "not __fish_seen_subcommand_from $commands" -a refresh -d "Read the repositories again"
complete -c velquarin -n "not __fish_seen_subcommand_from $commands" -a show -d "Open the dashboard"
complete -c velquarin -n "__fish_seen_subcommand_from status" -l format -x -a "text json waybar" -d "How it is printed"
complete -c velquarin -n "__fish_seen_subcommand_from status" -l follow -d "Print it again whenever it changes"
complete -c velquarin -n "__fish_seen_subcommand_from year" -l format -x -a "text json svg" -d "How it is printed"
