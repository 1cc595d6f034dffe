// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/PathNames.h"

namespace velquarin {

namespace {

constexpr auto slash = u'/';

qsizetype lengthWithoutTrailingSlashes(const QString &path)
{
    auto length = path.size();
    while (length > 0 && path.at(length - 1) == slash)
        --length;
    return length;
}

}  // namespace

QString lastPathComponent(const QString &path)
{
    const auto end = lengthWithoutTrailingSlashes(path);
    if (end == 0)
        return path.left(1);
    const auto begin = path.lastIndexOf(slash, end - 1) + 1;
    return path.mid(begin, end - begin);
}

QString joinPath(const QString &folder, const QString &name)
{
    if (folder.isEmpty() || name.isEmpty())
        return folder.isEmpty() ? name : folder;
    const auto stem = folder.left(lengthWithoutTrailingSlashes(folder));
    return stem + QChar(slash) + name.mid(name.startsWith(slash) ? 1 : 0);
}

}  // namespace velquarin
