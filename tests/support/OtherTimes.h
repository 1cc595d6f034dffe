// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/Files/PosixFileTree.h"

namespace velquarin::test {

//! The files of this machine with other times than they have.
class OtherTimes : public PosixFileTree
{
public:
    std::optional<FileStatus> status(const std::string &path, Links links) const override
    {
        const auto status = PosixFileTree::status(path, links);
        return status ? std::optional(withOtherTimes(*status)) : std::nullopt;
    }

    FileContent read(const std::string &path, Links links, std::int64_t limit) const override
    {
        auto content = PosixFileTree::read(path, links, limit);
        content.status = withOtherTimes(content.status);
        return content;
    }

private:
    [[nodiscard]] FileStatus withOtherTimes(FileStatus status) const
    {
        status.modifiedAt = other(status.modifiedAt);
        status.changedAt = other(status.changedAt);
        return status;
    }

    [[nodiscard]] virtual std::int64_t other(std::int64_t nanoseconds) const = 0;
};

//! A file system that counts time in steps of two seconds.
class CoarseTree : public OtherTimes
{
private:
    [[nodiscard]] std::int64_t other(std::int64_t nanoseconds) const override
    {
        return nanoseconds - nanoseconds % 2'000'000'000;
    }
};

//! A file system that tells of no change.
class SilentTree : public OtherTimes
{
private:
    [[nodiscard]] std::int64_t other(std::int64_t /*nanoseconds*/) const override { return 1; }
};

//! Where everything happened an hour earlier: nothing is so new that it has to be doubted.
class AgedTree : public OtherTimes
{
private:
    [[nodiscard]] std::int64_t other(std::int64_t nanoseconds) const override
    {
        return nanoseconds - 3'600'000'000'000;
    }
};

}  // namespace velquarin::test
