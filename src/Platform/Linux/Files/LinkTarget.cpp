// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Files/LinkTarget.h"

#include <QFile>

#include <filesystem>

namespace velquarin {

namespace fs = std::filesystem;

namespace {

// As many as the kernel itself follows.
constexpr int mostLinks = 40;

FileKind kindOf(fs::file_type type)
{
    switch (type) {
    case fs::file_type::not_found:
        return FileKind::Missing;
    case fs::file_type::regular:
        return FileKind::Regular;
    case fs::file_type::none:
        return FileKind::OutOfReach;
    default:
        return FileKind::Other;
    }
}

LinkTarget targetOf(const fs::path &path, FileKind kind, std::error_code error = {})
{
    return {QFile::decodeName(path.c_str()), kind, kind == FileKind::OutOfReach ? error : std::error_code()};
}

}  // namespace

LinkTarget followLinks(const QString &path)
{
    fs::path current(QFile::encodeName(path).toStdString());
    for (int link = 0; link < mostLinks; ++link) {
        std::error_code error;
        const auto type = fs::symlink_status(current, error).type();
        if (type != fs::file_type::symlink)
            return targetOf(current, kindOf(type), error);
        const auto target = fs::read_symlink(current, error);
        if (error)
            return targetOf(current, FileKind::OutOfReach, error);
        current = current.parent_path() / target;
    }
    return targetOf(current, FileKind::Other);
}

}  // namespace velquarin
