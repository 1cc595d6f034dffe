// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

// The program's own search for repositories below the first argument, once for each line on standard input: one that knows
// nothing, or one that knows what the last one knew ("again"). Answers with the milliseconds it took, and how many it found.

#include "Platform/Linux/Files/PosixFileTree.h"
#include "Services/Git/RepositoryScan.h"

#include <QElapsedTimer>
#include <QFile>

#include <iostream>

using namespace velquarin;

int main(int argc, char **argv)
{
    constexpr qint64 depth = 16;
    const PosixFileTree files;
    const std::atomic<bool> isCancelled = false;
    std::string line;
    KnownFolder known;
    while (argc == 2 && std::getline(std::cin, line)) {
        QElapsedTimer elapsed;
        elapsed.start();
        const auto folder = QFile::decodeName(argv[1]);
        const auto found = line == "again" ? scanForRepositories(files, folder, depth, isCancelled, known)
                                           : scanForRepositories(files, folder, depth, isCancelled);
        std::cout << double(elapsed.nsecsElapsed()) / 1e6 << ' ' << found.size() << std::endl;
    }
    return 0;
}
