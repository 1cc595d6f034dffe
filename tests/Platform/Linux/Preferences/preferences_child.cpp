// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

// A process with a preferences store in it, for tests that limit or kill it.
//   preferences_child PATH          sets "number" to each number that comes on standard input, flushes, answers "done"
//   preferences_child PATH copy     the same, and wants a copy of what was loaded put aside first
//   preferences_child PATH forever  answers "saving", then saves without end

#include "Platform/Linux/Preferences/JsonPreferencesStore.h"

#include <cstdio>
#include <iostream>
#include <string>

using namespace velquarin;

namespace {

void answer(const char *text)
{
    std::puts(text);
    std::fflush(stdout);
}

// Large enough for many writes to the disk, and alike all over, so that a mixture would be seen.
[[noreturn]] void saveForever(JsonPreferencesStore &store)
{
    answer("saving");
    for (int round = 0;; ++round) {
        const QByteArray data(100'000 + round % 1000, static_cast<char>('a' + round % 26));
        store.set(QStringLiteral("data"), data);
        store.flush(std::chrono::minutes(1));
    }
}

}  // namespace

int main(int argc, char **argv)
{
    JsonPreferencesStore store(QString::fromLocal8Bit(argv[1]));
    const std::string mode = argc > 2 ? argv[2] : "";
    if (mode == "forever")
        saveForever(store);
    if (mode == "copy")
        store.putCopyAside();
    double number = 0.0;
    while (std::cin >> number) {
        store.set(QStringLiteral("number"), number);
        store.flush(std::chrono::minutes(1));
        answer("done");
    }
    return 0;
}
