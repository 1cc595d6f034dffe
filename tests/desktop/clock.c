// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

// Loaded before a program's other libraries, this shifts its calendar clock by VELQUARIN_TEST_CLOCK_OFFSET seconds,
// and that of every process it starts. Time that only runs forward stays as it is, so that timers and timeouts work.
// It writes nothing and shares no memory: a process that may not write anywhere is served as well.
//
// The signal SIGRTMIN + 5 with a number makes so many seconds pass at once, as when the machine has slept: the calendar
// clock is that much later, and every timerfd has that much less to wait. Who was started before does not notice.

#define _GNU_SOURCE
#include <signal.h>
#include <stdlib.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/timerfd.h>
#include <time.h>
#include <unistd.h>

enum { most_descriptors = 1024 };

static volatile sig_atomic_t slept;

static long offset(void)
{
    const char *text = getenv("VELQUARIN_TEST_CLOCK_OFFSET");
    return slept + (text ? atol(text) : 0);
}

// Of a descriptor that is no timer there is nothing to get.
static void hasten(int descriptor, long seconds)
{
    struct itimerspec left;
    if (timerfd_gettime(descriptor, &left) != 0 || (left.it_value.tv_sec == 0 && left.it_value.tv_nsec == 0))
        return;
    left.it_value.tv_sec -= seconds;
    if (left.it_value.tv_sec < 0)
        left.it_value = (struct timespec){0, 1};
    timerfd_settime(descriptor, 0, &left, NULL);
}

static void sleep_at_once(int number, siginfo_t *info, void *context)
{
    const int seconds = info->si_value.sival_int;
    (void)number;
    (void)context;
    slept += seconds;
    for (int descriptor = 0; descriptor < most_descriptors; ++descriptor)
        hasten(descriptor, seconds);
}

__attribute__((constructor)) static void listen_for_sleep(void)
{
    const struct sigaction action = {.sa_sigaction = sleep_at_once, .sa_flags = SA_SIGINFO | SA_RESTART};
    sigaction(SIGRTMIN + 5, &action, NULL);
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
