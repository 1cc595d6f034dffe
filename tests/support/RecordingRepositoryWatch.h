// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/RepositoryWatch.h"

namespace velquarin::test {

//! Watches nothing, keeps what it should watch, and tells of a change when the test says so.
class RecordingRepositoryWatch : public RepositoryWatch
{
public:
    bool watch(const QList<WatchPlace> &places) override
    {
        const bool isNew = std::any_of(places.begin(), places.end(),
                                       [this](const WatchPlace &place) { return !m_places.contains(place); });
        m_places = places;
        return isNew;
    }

    void tellOfChange() { Q_EMIT changed(); }

    [[nodiscard]] const QList<WatchPlace> &places() const { return m_places; }

private:
    QList<WatchPlace> m_places;
};

}  // namespace velquarin::test
