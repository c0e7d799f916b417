/* How faulty libraries beneath a program count the calls that may fail: in a file that QMX_FAULTY_CALLS_COUNT names and
 * that they share with the test, so that the numbers survive a kill. In C and C++. */
#ifndef QMX_TESTS_SHARED_COUNT_H
#define QMX_TESTS_SHARED_COUNT_H

#include <fcntl.h>
#include <stdbool.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <unistd.h>

struct SharedCount {
  long made;
  long struck;
};

/* Without such a file the library counts for itself. */
static inline struct SharedCount* ShareCount(void) {
  static struct SharedCount own;
  const char* const file = getenv("QMX_FAULTY_CALLS_COUNT");
  const int descriptor = file ? open(file, O_RDWR | O_CLOEXEC) : -1;
  if (descriptor < 0) return &own;
  void* const shared = mmap(NULL, sizeof own, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
  close(descriptor);
  return shared == MAP_FAILED ? &own : (struct SharedCount*)shared;
}

/* Counts a call. Returns whether it is one of `count` in a row that are struck, or of all if `count` is 0, from the
 * call `first` on, counted from 1. None is struck if that is 0. */
static inline bool IsStruckCall(struct SharedCount* shared, long first, long count) {
  const long call = __atomic_add_fetch(&shared->made, 1, __ATOMIC_RELAXED);
  if (first == 0 || call < first || (count > 0 && call >= first + count)) return false;
  __atomic_add_fetch(&shared->struck, 1, __ATOMIC_RELAXED);
  return true;
}

#endif
