// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

// Loaded before a program's other libraries, this notes what the program puts on the disk for good, and in which order:
// a line for each fsync and each rename, with the paths, in the file that VELQUARIN_TEST_CALLS names.

#define _GNU_SOURCE
#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

static void note(const char *call, const char *path)
{
    char line[PATH_MAX + 16];
    const int length = snprintf(line, sizeof line, "%s %s\n", call, path);
    const int file = open(getenv("VELQUARIN_TEST_CALLS"), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    if (file < 0 || write(file, line, (size_t)length) != length)
        abort();
    close(file);
}

int fsync(int descriptor)
{
    char link[32];
    char path[PATH_MAX] = "";
    snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
    if (readlink(link, path, sizeof path - 1) < 0)
        strcpy(path, "?");
    note("fsync", path);
    return (int)syscall(SYS_fsync, descriptor);
}

int rename(const char *from, const char *to)
{
    note("rename to", to);
    return (int)syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0);
}
