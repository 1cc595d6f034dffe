# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
busctl --user get-property io.velquarin.Velquarin /io/velquarin/Velquarin \
    io.velquarin.Velquarin1 CurrentStreak
