// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Models/TrackedRepository.h"
#include "Models/WatchedFolder.h"

#include <QByteArray>
#include <QList>

#include <optional>

namespace velquarin {

//! The lists of records as they are stored: a JSON array with an object a record, in the order of the list,
//! whose members are named like the fields. Ids are upper-case text of 36 characters.
//!
//! Encoding. Errors: nothing where a text is no valid Unicode, which no JSON text can hold.
template <typename Record>
[[nodiscard]] std::optional<QByteArray> encodeRecords(const QList<Record> &records);

//! Decoding takes a list as a whole or not at all. Members may come in any order, unknown ones do not count,
//! ids are read in either case. Errors: nothing where the text is no such array, or where any record lacks a
//! member or has one of the wrong type.
template <typename Record>
[[nodiscard]] std::optional<QList<Record>> decodeRecords(const QByteArray &json);

}  // namespace velquarin
