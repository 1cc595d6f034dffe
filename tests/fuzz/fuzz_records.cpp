// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Models/SettingsRecords.h"
#include "Target.h"

using namespace velquarin;
using namespace velquarin::fuzz;

namespace {

template <typename Record>
void recordsComeBack(const QByteArray &json)
{
    const auto records = decodeRecords<Record>(json);
    if (!records)
        return;
    const auto written = encodeRecords(*records);
    require(written.has_value(), "what was read can be written");
    const auto again = decodeRecords<Record>(*written);
    require(again == records, "what was written reads as it was");
    require(encodeRecords(*again) == written, "writing it again changes nothing");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto json = bytes(data, size);
    recordsComeBack<TrackedRepository>(json);
    recordsComeBack<WatchedFolder>(json);
    return 0;
}
