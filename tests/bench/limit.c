// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

// The limit of a refresh: the git commands that it runs, started by nothing but posix_spawn, in the inherited
// environment, their output read and thrown away. Takes the two starting dates, the end date and repositories as arguments;
// runs the whole sequence once for each line on standard input and answers with the milliseconds it took.

#define _GNU_SOURCE
#include <fcntl.h>
#include <spawn.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

extern char **environ;

static void run(const char *folder, char *const arguments[])
{
    int out[2];
    if (pipe2(out, O_CLOEXEC) != 0)
        abort();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addchdir_np(&actions, folder);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    pid_t child;
    if (posix_spawn(&child, "/usr/bin/git", &actions, NULL, arguments, environ) != 0)
        abort();
    close(out[1]);
    static char buffer[65536];
    while (read(out[0], buffer, sizeof buffer) > 0)
        continue;
    close(out[0]);
    waitpid(child, NULL, 0);
    posix_spawn_file_actions_destroy(&actions);
}

static void find_branch(const char *folder)
{
    run(folder, (char *[]){"git", "symbolic-ref", "refs/remotes/origin/HEAD", "--short", NULL});
    run(folder, (char *[]){"git", "branch", "--list", "main", NULL});
}

static void read_days(const char *folder, char *since, char *until)
{
    find_branch(folder);
    run(folder, (char *[]){"git", "log", "main", "--format=%ad", "--date=short", since, until, NULL});
}

static void refresh(const char *folder, char *week, char *years, char *until)
{
    run(folder, (char *[]){"git", "rev-parse", "--git-dir", NULL});
    read_days(folder, week, until);
    read_days(folder, years, until);
    find_branch(folder);
    run(folder, (char *[]){"git", "log", "main", "-1", "--format=%aI", NULL});
}

int main(int count, char **arguments)
{
    char line[16];
    while (fgets(line, sizeof line, stdin)) {
        struct timespec begin;
        struct timespec end;
        clock_gettime(CLOCK_MONOTONIC, &begin);
        for (int index = 4; index < count; ++index)
            refresh(arguments[index], arguments[1], arguments[2], arguments[3]);
        clock_gettime(CLOCK_MONOTONIC, &end);
        printf("%.3f\n", (double)(end.tv_sec - begin.tv_sec) * 1e3 + (double)(end.tv_nsec - begin.tv_nsec) / 1e6);
        fflush(stdout);
    }
    return 0;
}
