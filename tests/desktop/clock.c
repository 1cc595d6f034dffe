// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

// Loaded before a program's other libraries, this shifts its calendar clock by VELQUARIN_TEST_CLOCK_OFFSET seconds,
// and that of every process it starts. Time that only runs forward stays as it is, so that timers and timeouts work.
// It writes nothing and shares no memory: a process that may not write anywhere is served as well.

#define _GNU_SOURCE
#include <stdlib.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

static long offset(void)
{
    const char *text = getenv("VELQUARIN_TEST_CLOCK_OFFSET");
    return text ? atol(text) : 0;
}

int clock_gettime(clockid_t clock, struct timespec *result)
{
    const int status = (int)syscall(SYS_clock_gettime, clock, result);
    if (status == 0 && (clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE))
        result->tv_sec += offset();
    return status;
}

int gettimeofday(struct timeval *restrict result, void *restrict zone)
{
    struct timespec now;
    (void)zone;
    clock_gettime(CLOCK_REALTIME, &now);
    result->tv_sec = now.tv_sec;
    result->tv_usec = now.tv_nsec / 1000;
    return 0;
}

time_t time(time_t *result)
{
    struct timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    if (result)
        *result = now.tv_sec;
    return now.tv_sec;
}
