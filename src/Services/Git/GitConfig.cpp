// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/GitConfig.h"

#include <QList>

namespace velquarin {

namespace {

constexpr std::size_t mostFiles = 32;

// The path of a file that a setting names: relative to the file that it stands in, or to the home folder.
std::optional<std::string> includedPath(const std::string &value, const std::string &origin, const ConfigPlaces &places)
{
    if (value.starts_with("~/"))
        return joined(places.home, value.substr(2));
    if (value.empty() || value.starts_with('~') || value.starts_with("%("))
        return std::nullopt;
    return joined(origin.substr(0, origin.rfind('/')), value);
}

bool isInclude(const QByteArray &key)
{
    return key == "include.path" || (key.startsWith("includeif.") && key.endsWith(".path"));
}

bool isKnownExtension(const QByteArray &key, const QByteArray &value)
{
    static const QList<QByteArray> known{"objectformat",      "worktreeconfig",  "partialclone",      "noop",
                                         "noop-v1",           "preciousobjects", "relativeworktrees", "refstorage",
                                         "compatobjectformat"};
    return known.contains(key.mid(key.indexOf('.') + 1)) && !value.contains("://");
}

// One setting. False where it is not understood.
bool take(GitConfig &config, const std::string &origin, const QByteArray &setting, const ConfigPlaces &places)
{
    const auto lineEnd = setting.indexOf('\n');
    const auto key = (lineEnd < 0 ? setting : setting.left(lineEnd)).toLower();
    const auto value = lineEnd < 0 ? QByteArray() : setting.mid(lineEnd + 1);
    config.files.insert(origin);
    if (isInclude(key)) {
        const auto path = includedPath(value.toStdString(), origin, places);
        config.files.insert(path.value_or(std::string()));
        config.hasIncludes = true;
        return path.has_value();
    }
    if (!key.startsWith("extensions."))
        return true;
    config.extensionOrigins.insert(origin);
    config.isReftable |= key == "extensions.refstorage" && value == "reftable";
    config.isSha256 |= key == "extensions.objectformat" && value == "sha256";
    return isKnownExtension(key, value);
}

}  // namespace

std::string joined(const std::string &folder, const std::string &path)
{
    return path.starts_with('/') ? path : folder + '/' + path;
}

std::optional<GitConfig> gitConfigFrom(const QByteArray &list, const std::string &folder, const ConfigPlaces &places)
{
    const QByteArray ofFile = "file:";
    GitConfig config;
    const auto parts = list.split('\0');
    for (qsizetype index = 0; index + 1 < parts.size(); index += 2) {
        const auto &origin = parts[index];
        const bool isUnderstood =
            !origin.startsWith(ofFile) ||
            take(config, joined(folder, origin.mid(ofFile.size()).toStdString()), parts[index + 1], places);
        if (!isUnderstood || config.files.size() > mostFiles)
            return std::nullopt;
    }
    return config;
}

}  // namespace velquarin
