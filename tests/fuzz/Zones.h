// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Calendar.h"

#include <QTimeZone>

#include <array>

namespace velquarin::fuzz {

//! A calendar with its oddities: a plain one, a skipped midnight, a repeated one, a day that never was, a half hour.
inline const Calendar &calendarFor(std::uint8_t choice)
{
    static const std::array calendars{Calendar(QTimeZone::utc()), Calendar(QTimeZone("America/Sao_Paulo")),
                                      Calendar(QTimeZone("America/Havana")), Calendar(QTimeZone("Pacific/Apia")),
                                      Calendar(QTimeZone("Australia/Lord_Howe"))};
    return calendars[choice % calendars.size()];
}

}  // namespace velquarin::fuzz
