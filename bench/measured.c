/* measured FILE COMMAND...: runs the command and writes to FILE: the seconds from start to exit, the seconds of CPU
   time of the command and its children, and the peak memory of the largest of these processes, in KiB. The exit status
   is the command's.

   In C, and small, because a process's memory counts for the process that it starts. */
#define _DEFAULT_SOURCE
#include <stdio.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

static double Now(void) {
  struct timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  return (double)now.tv_sec + (double)now.tv_nsec / 1e9;
}

static double Seconds(struct timeval time) { return (double)time.tv_sec + (double)time.tv_usec / 1e6; }

int main(int argc, char** argv) {
  if (argc < 3) {
    fprintf(stderr, "usage: measured FILE COMMAND...\n");
    return 2;
  }
  const double start = Now();
  const pid_t child = fork();
  if (child == 0) {
    execvp(argv[2], argv + 2);
    perror(argv[2]);
    _exit(127);
  }
  int status = 0;
  struct rusage usage;
  if (child < 0 || wait4(child, &status, 0, &usage) != child) {
    perror("measured");
    return 1;
  }
  const double seconds = Now() - start;
  const double processor = Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
  FILE* file = fopen(argv[1], "w");
  if (!file || fprintf(file, "%.6f %.6f %ld\n", seconds, processor, usage.ru_maxrss) < 0 || fclose(file) != 0) {
    perror(argv[1]);
    return 1;
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}
