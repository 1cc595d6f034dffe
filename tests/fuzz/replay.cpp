// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

// Hands every file of the folders to the target, for compilers that have no fuzzer of their own.
#include "Target.h"

#include <QDirIterator>
#include <QFile>

namespace {

int replay(const QString &folder)
{
    int count = 0;
    QDirIterator files(folder, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (!file.open(QIODevice::ReadOnly))
            return 0;
        const auto input = file.readAll();
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(input.constData()), std::size_t(input.size()));
        ++count;
    }
    return count;
}

}  // namespace

int main(int argc, char **argv)
{
    int total = 0;
    for (int index = 1; index < argc; ++index)
        total += replay(QFile::decodeName(argv[index]));
    std::printf("%d inputs\n", total);
    return total > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
