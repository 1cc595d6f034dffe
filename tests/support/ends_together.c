/* SPDX-FileCopyrightText: 2026 The Velquarin developers */
/* SPDX-License-Identifier: MIT */
/* Runs a test, and ends whatever the test has started when it ends, however it ends: by itself, by a signal to this
   process, or because the one who started this process is gone. A bus in the background would else outlive its test.
   Source: prctl(2), PR_SET_CHILD_SUBREAPER: what loses its parent becomes a child of this process. */
#define _GNU_SOURCE
#include <errno.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

enum { CANNOT_RUN = 126 };

static void become_test(char **command, const sigset_t *mask)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    sigprocmask(SIG_SETMASK, mask, NULL);
    execvp(command[0], command);
    perror(command[0]);
    _exit(CANNOT_RUN);
}

static int status_of(int state)
{
    return WIFEXITED(state) ? WEXITSTATUS(state) : 128 + WTERMSIG(state);
}

/* The exit status of the test, or what a shell says of a signal to this process. */
static int wait_for(pid_t test, const sigset_t *signals)
{
    for (;;) {
        const int received = sigwaitinfo(signals, NULL);
        if (received < 0 && errno == EINTR)
            continue;
        if (received != SIGCHLD)
            return 128 + received;
        int state = 0;
        for (pid_t ended; (ended = waitpid(-1, &state, WNOHANG)) > 0;)
            if (ended == test)
                return status_of(state);
    }
}

/* Whether there was somebody to be killed. */
static int kill_children(void)
{
    char path[64];
    snprintf(path, sizeof path, "/proc/self/task/%d/children", (int)getpid());
    FILE *const children = fopen(path, "r");
    int killed = 0;
    if (children == NULL) {
        perror(path);
        return 0;
    }
    for (int child = 0; fscanf(children, "%d", &child) == 1; ++killed)
        kill(child, SIGKILL);
    fclose(children);
    return killed > 0;
}

/* The children of one that ends become ours: again until there are none. */
static void end_the_rest(void)
{
    while (kill_children() && waitpid(-1, NULL, 0) > 0) {
    }
}

int main(int argc, char **argv)
{
    if (argc < 2)
        return CANNOT_RUN;
    const pid_t starter = getppid();
    sigset_t signals, before;
    sigemptyset(&signals);
    sigaddset(&signals, SIGCHLD);
    sigaddset(&signals, SIGHUP);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    sigprocmask(SIG_BLOCK, &signals, &before);
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != starter)
        return CANNOT_RUN;
    const pid_t test = fork();
    if (test == 0)
        become_test(argv + 1, &before);
    const int status = test < 0 ? CANNOT_RUN : wait_for(test, &signals);
    end_the_rest();
    return status;
}
