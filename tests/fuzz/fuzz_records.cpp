// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Models/SettingsRecords.h"
#include "Target.h"

using namespace velquarin;
using namespace velquarin::fuzz;

namespace {

template <typename Record>
void recordsComeBack(const QByteArray &json, std::optional<QList<Record>> (*decode)(const QByteArray &),
                     std::optional<QByteArray> (*encode)(const QList<Record> &))
{
    const auto records = decode(json);
    if (!records)
        return;
    const auto written = encode(*records);
    require(written.has_value(), "what was read can be written");
    require(decode(*written) == records, "what was written reads as it was");
    require(encode(*decode(*written)) == written, "writing it again changes nothing");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto json = bytes(data, size);
    recordsComeBack(json, &decodeTrackedRepositories, &encodeTrackedRepositories);
    recordsComeBack(json, &decodeWatchedFolders, &encodeWatchedFolders);
    return 0;
}
