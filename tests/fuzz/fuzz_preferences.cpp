// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Preferences/PreferencesFormat.h"
#include "Target.h"

using namespace velquarin;
using namespace velquarin::fuzz;

namespace {

// What cannot be read has no form to be written in; anything else comes back from its form.
void valueComesBack(const QJsonValue &json)
{
    const auto value = preferenceFrom(json);
    const auto written = jsonFrom(value);
    if (written)
        require(preferenceFrom(*written) == value, "a value that was written reads as it was");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto values = decodePreferences(bytes(data, size));
    if (!values)
        return 0;
    const auto text = encodePreferences(*values);
    const auto again = decodePreferences(text);
    require(again.has_value(), "what was written can be read");
    require(*again == *values, "what was written reads as it was");
    require(encodePreferences(*again) == text, "writing it again changes nothing");
    for (const auto value : *values)
        valueComesBack(value);
    return 0;
}
