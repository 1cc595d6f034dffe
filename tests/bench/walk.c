// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

// The limit of a search: every folder below the first argument read with readdir, which tells folders by itself, and
// one look for a ".git" in each. Where there is one nothing more is entered, nor are hidden folders and those of package
// managers. Once for each line on standard input; answers with the milliseconds it took, and how many it found.

#define _GNU_SOURCE
#include <dirent.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <unistd.h>

static int walk(const char *path)
{
    char name[PATH_MAX];
    snprintf(name, sizeof name, "%s/.git", path);
    if (access(name, F_OK) == 0)
        return 1;
    DIR *folder = opendir(path);
    int found = 0;
    const struct dirent *entry;
    while (folder && (entry = readdir(folder))) {
        if (entry->d_type != DT_DIR || entry->d_name[0] == '.' || strcmp(entry->d_name, "node_modules") == 0)
            continue;
        snprintf(name, sizeof name, "%s/%s", path, entry->d_name);
        found += walk(name);
    }
    if (folder)
        closedir(folder);
    return found;
}

int main(int argc, char **argv)
{
    char line[16];
    while (argc == 2 && fgets(line, sizeof line, stdin)) {
        struct timespec begin;
        struct timespec end;
        clock_gettime(CLOCK_MONOTONIC, &begin);
        const int found = walk(argv[1]);
        clock_gettime(CLOCK_MONOTONIC, &end);
        printf("%.3f %d\n", (double)(end.tv_sec - begin.tv_sec) * 1e3 + (double)(end.tv_nsec - begin.tv_nsec) / 1e6,
               found);
        fflush(stdout);
    }
    return 0;
}
