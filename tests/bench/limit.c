// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

// The limit of a refresh: the very commands that it runs, as `bench_refresh --record` wrote them down, started by nothing
// but posix_spawn, their output read and thrown away. Takes the file of commands, a line each (the folder and the
// arguments, with tabs between), and optionally a file with the environment, a variable a line; without it git inherits ours.
// Runs all commands once for each line on standard input and answers with the milliseconds it took, and how many bytes
// the commands printed.

#define _GNU_SOURCE
#include <fcntl.h>
#include <spawn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

extern char **environ;

enum { most_arguments = 16 };

struct command
{
    char *folder;
    char *arguments[most_arguments];
};

static char **lines_of(const char *path, size_t *count)
{
    FILE *file = fopen(path, "r");
    char **lines = NULL;
    char *line = NULL;
    size_t size = 0;
    *count = 0;
    while (file && getline(&line, &size, file) > 0) {
        line[strcspn(line, "\n")] = '\0';
        lines = realloc(lines, (*count + 2) * sizeof *lines);
        lines[(*count)++] = strdup(line);
        lines[*count] = NULL;
    }
    free(line);
    if (file)
        fclose(file);
    return lines;
}

static struct command parse(char *line)
{
    struct command command = {.folder = strsep(&line, "\t"), .arguments = {"git"}};
    for (int index = 1; line && index < most_arguments - 1; ++index)
        command.arguments[index] = strsep(&line, "\t");
    return command;
}

static long run(const struct command *command, char **environment)
{
    int out[2];
    if (pipe2(out, O_CLOEXEC) != 0)
        abort();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addchdir_np(&actions, command->folder);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    pid_t child;
    if (posix_spawn(&child, "/usr/bin/git", &actions, NULL, (char **)command->arguments, environment) != 0)
        abort();
    close(out[1]);
    static char buffer[65536];
    long bytes = 0;
    for (ssize_t length; (length = read(out[0], buffer, sizeof buffer)) > 0;)
        bytes += length;
    close(out[0]);
    waitpid(child, NULL, 0);
    posix_spawn_file_actions_destroy(&actions);
    return bytes;
}

int main(int argc, char **argv)
{
    size_t count = 0;
    size_t variables = 0;
    char **lines = lines_of(argv[1], &count);
    char **environment = argc > 2 ? lines_of(argv[2], &variables) : environ;
    struct command *commands = calloc(count, sizeof *commands);
    for (size_t index = 0; index < count; ++index)
        commands[index] = parse(lines[index]);

    char line[16];
    while (fgets(line, sizeof line, stdin)) {
        struct timespec begin;
        struct timespec end;
        long bytes = 0;
        clock_gettime(CLOCK_MONOTONIC, &begin);
        for (size_t index = 0; index < count; ++index)
            bytes += run(&commands[index], environment);
        clock_gettime(CLOCK_MONOTONIC, &end);
        printf("%.3f %ld\n", (double)(end.tv_sec - begin.tv_sec) * 1e3 + (double)(end.tv_nsec - begin.tv_nsec) / 1e6,
               bytes);
        fflush(stdout);
    }
    return 0;
}
