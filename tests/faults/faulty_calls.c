// Makes calls of the C library fail beneath a program, which loads it by LD_PRELOAD.
//
// QMX_FAULTY_CALLS says which, as "CALLS FIRST COUNT ACTION FILES":
//   CALLS   kinds of call, joined by "+": write sync size name open read map memory send receive
//   FIRST   the first call that is struck, counted from 1; 0 for none
//   COUNT   how many calls in a row are struck; 0 for all that follow
//   ACTION  what happens to them: the name of an error (EIO), "short" (half of it is done), "full" (ENOSPC where the
//           file would grow; other calls do not count), "kill" or "term" (the signal comes before the call), "torn"
//           (half of it is done, then the process is killed)
//   FILES   counts only calls on files whose path has this text in it, at its end if it ends in "$"; "-" for all files
// Calls are counted as shared_count.h does. Before the program's own start nothing is struck.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdarg.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdio_ext.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/shared_count.h"

enum Kind { WRITE, SYNC, SIZE, NAME, OPEN, READ, MAP, MEMORY, SEND, RECEIVE, KINDS };
static const char* const kKinds[KINDS] = {"write", "sync", "size",   "name", "open",
                                          "read",  "map",  "memory", "send", "receive"};

static const struct {
  const char* name;
  int code;
} kErrors[] = {{"EIO", EIO},       {"ENOSPC", ENOSPC}, {"EINTR", EINTR},           {"EMFILE", EMFILE},
               {"ENOMEM", ENOMEM}, {"EACCES", EACCES}, {"ECONNRESET", ECONNRESET}, {"EPIPE", EPIPE}};

enum Action { FAIL, SHORT, FULL, KILL, TERM, TORN };

static struct {
  bool kinds[KINDS];
  long first, count;
  enum Action action;
  int error;
  char files[512];
} plan;

static struct SharedCount* count;

static void SetAction(const char* name) {
  static const char* const names[] = {"short", "full", "kill", "term", "torn"};
  for (size_t i = 0; i < sizeof names / sizeof *names; ++i) {
    if (strcmp(name, names[i]) == 0) plan.action = (enum Action)(SHORT + i);
  }
  plan.error = plan.action == FULL ? ENOSPC : EIO;
  for (size_t i = 0; i < sizeof kErrors / sizeof *kErrors; ++i) {
    if (strcmp(name, kErrors[i].name) == 0) plan.error = kErrors[i].code;
  }
}

__attribute__((constructor)) static void ReadPlan(void) {
  const char* const text = getenv("QMX_FAULTY_CALLS");
  char calls[128], action[32];
  if (!text || sscanf(text, "%127s %ld %ld %31s %511s", calls, &plan.first, &plan.count, action, plan.files) != 5)
    return;
  count = ShareCount();
  SetAction(action);
  for (char* rest = calls; rest;) {
    const char* const one = strsep(&rest, "+");
    for (int kind = 0; kind < KINDS; ++kind) {
      if (strcmp(one, kKinds[kind]) == 0) plan.kinds[kind] = true;
    }
  }
}

static bool IsMeantPath(const char* path) {
  const size_t length = strlen(plan.files);
  if (strcmp(plan.files, "-") == 0) return true;
  if (plan.files[length - 1] != '$') return strstr(path, plan.files) != NULL;
  const size_t whole = strlen(path);
  return whole >= length - 1 && strncmp(path + whole - (length - 1), plan.files, length - 1) == 0;
}

// Standard output and standard error are never meant: what is written there is looked at afterwards.
static bool IsMeantFile(int descriptor) {
  if (descriptor <= STDERR_FILENO) return false;
  if (strcmp(plan.files, "-") == 0) return true;
  char link[64], path[1024];
  snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
  const ssize_t length = readlink(link, path, sizeof path - 1);
  if (length < 0) return false;
  path[length] = '\0';
  return IsMeantPath(path);
}

// Counts a call. Returns whether the action is to be done in its place.
static bool IsStruck(void) {
  if (!IsStruckCall(count, plan.first, plan.count)) return false;
  if (plan.action == KILL) kill(getpid(), SIGKILL);
  if (plan.action == TERM) kill(getpid(), SIGTERM);
  return plan.action != TERM;
}

static bool StruckOn(enum Kind kind, int descriptor) {
  return plan.kinds[kind] && IsMeantFile(descriptor) && IsStruck();
}
static bool StruckAt(enum Kind kind, const char* path) { return plan.kinds[kind] && IsMeantPath(path) && IsStruck(); }

static int Failed(void) {
  errno = plan.error;
  return -1;
}

// Whether a write is struck whose last byte comes to this place of the file.
static bool StruckWrite(int descriptor, off_t end) {
  if (plan.action == FULL) {
    struct stat status;
    if (fstat(descriptor, &status) != 0 || end <= status.st_size) return false;
  }
  return StruckOn(WRITE, descriptor);
}
static bool StruckAppend(int descriptor, size_t size) {
  struct stat status;
  return StruckWrite(descriptor, fstat(descriptor, &status) == 0 ? status.st_size + (off_t)size : (off_t)size);
}
static bool IsHalfDone(size_t size) { return size > 1 && (plan.action == SHORT || plan.action == TORN); }
static void EndOfHalf(void) {
  if (plan.action == TORN) kill(getpid(), SIGKILL);
}

#define REAL(name) (__extension__(__typeof__(&name)) dlsym(RTLD_NEXT, #name))

ssize_t write(int descriptor, const void* bytes, size_t size) {
  static __typeof__(&write) real;
  if (!real) real = REAL(write);
  if (!plan.kinds[WRITE] || !StruckAppend(descriptor, size)) return real(descriptor, bytes, size);
  if (!IsHalfDone(size)) return Failed();
  const ssize_t half = real(descriptor, bytes, size / 2);
  EndOfHalf();
  return half;
}

static ssize_t WriteAt(ssize_t (*real)(int, const void*, size_t, off_t), int descriptor, const void* bytes, size_t size,
                       off_t place) {
  if (!plan.kinds[WRITE] || !StruckWrite(descriptor, place + (off_t)size)) return real(descriptor, bytes, size, place);
  if (!IsHalfDone(size)) return Failed();
  const ssize_t half = real(descriptor, bytes, size / 2, place);
  EndOfHalf();
  return half;
}
ssize_t pwrite(int descriptor, const void* bytes, size_t size, off_t place) {
  static __typeof__(&pwrite) real;
  if (!real) real = REAL(pwrite);
  return WriteAt(real, descriptor, bytes, size, place);
}
ssize_t pwrite64(int descriptor, const void* bytes, size_t size, off_t place) {
  static __typeof__(&pwrite64) real;
  if (!real) real = REAL(pwrite64);
  return WriteAt(real, descriptor, bytes, size, place);
}

// A stream writes inside the C library. What waits in it is written when it is closed or flushed.
static bool StruckStream(FILE* stream) {
  return stream && plan.kinds[WRITE] && __fpending(stream) > 0 && StruckAppend(fileno(stream), __fpending(stream));
}
int fclose(FILE* stream) {
  static __typeof__(&fclose) real;
  if (!real) real = REAL(fclose);
  if (!StruckStream(stream)) return real(stream);
  __fpurge(stream);
  real(stream);
  EndOfHalf();
  return Failed();
}
int fflush(FILE* stream) {
  static __typeof__(&fflush) real;
  if (!real) real = REAL(fflush);
  if (!StruckStream(stream)) return real(stream);
  __fpurge(stream);
  EndOfHalf();
  return Failed();
}

#define STRUCK_ON(kind, name, parameters, arguments) \
  int name parameters {                              \
    static __typeof__(&name) real;                   \
    if (!real) real = REAL(name);                    \
    if (StruckOn(kind, descriptor)) return Failed(); \
    return real arguments;                           \
  }
STRUCK_ON(SYNC, fsync, (int descriptor), (descriptor))
STRUCK_ON(SYNC, fdatasync, (int descriptor), (descriptor))
STRUCK_ON(SIZE, ftruncate, (int descriptor, off_t size), (descriptor, size))
STRUCK_ON(SIZE, ftruncate64, (int descriptor, off_t size), (descriptor, size))
STRUCK_ON(SIZE, fallocate, (int descriptor, int mode, off_t place, off_t size), (descriptor, mode, place, size))

#define STRUCK_AT(kind, name, parameters, arguments) \
  int name parameters {                              \
    static __typeof__(&name) real;                   \
    if (!real) real = REAL(name);                    \
    if (StruckAt(kind, path)) return Failed();       \
    return real arguments;                           \
  }
STRUCK_AT(NAME, unlink, (const char* path), (path))
STRUCK_AT(NAME, rename, (const char* path, const char* other), (path, other))

#define STRUCK_OPEN(name)                                                           \
  int name(const char* path, int flags, ...) {                                      \
    static __typeof__(&name) real;                                                  \
    if (!real) real = REAL(name);                                                   \
    va_list more;                                                                   \
    va_start(more, flags);                                                          \
    const mode_t mode = flags & (O_CREAT | __O_TMPFILE) ? va_arg(more, mode_t) : 0; \
    va_end(more);                                                                   \
    if (StruckAt(OPEN, path)) return Failed();                                      \
    return real(path, flags, mode);                                                 \
  }
STRUCK_OPEN(open)
STRUCK_OPEN(open64)

// A connection that fails is lost: no library may wait for an answer over it.
static int Lost(int descriptor) {
  if (plan.error == EPIPE || plan.error == ECONNRESET) shutdown(descriptor, SHUT_RDWR);
  return Failed();
}

#define STRUCK_PIECE(kind, name, parameters, arguments)     \
  ssize_t name parameters {                                 \
    static __typeof__(&name) real;                          \
    if (!real) real = REAL(name);                           \
    if (!StruckOn(kind, descriptor)) return real arguments; \
    if (!IsHalfDone(size)) return Lost(descriptor);         \
    size /= 2;                                              \
    const ssize_t half = real arguments;                    \
    EndOfHalf();                                            \
    return half;                                            \
  }
STRUCK_PIECE(READ, read, (int descriptor, void* bytes, size_t size), (descriptor, bytes, size))
STRUCK_PIECE(READ, pread, (int descriptor, void* bytes, size_t size, off_t place), (descriptor, bytes, size, place))
STRUCK_PIECE(READ, pread64, (int descriptor, void* bytes, size_t size, off_t place), (descriptor, bytes, size, place))
STRUCK_PIECE(SEND, send, (int descriptor, const void* bytes, size_t size, int flags), (descriptor, bytes, size, flags))
STRUCK_PIECE(RECEIVE, recv, (int descriptor, void* bytes, size_t size, int flags), (descriptor, bytes, size, flags))

#define STRUCK_MAP(name)                                                                           \
  void* name(void* address, size_t size, int protection, int flags, int descriptor, off_t place) { \
    static __typeof__(&name) real;                                                                 \
    if (!real) real = REAL(name);                                                                  \
    if (StruckOn(MAP, descriptor)) {                                                               \
      Failed();                                                                                    \
      return MAP_FAILED;                                                                           \
    }                                                                                              \
    return real(address, size, protection, flags, descriptor, place);                              \
  }
STRUCK_MAP(mmap)
STRUCK_MAP(mmap64)

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t number, size_t size);
void* __libc_realloc(void* memory, size_t size);
void* __libc_memalign(size_t alignment, size_t size);

static bool StruckMemory(void) {
  if (!plan.kinds[MEMORY] || !IsStruck()) return false;
  errno = ENOMEM;
  return true;
}

void* malloc(size_t size) { return StruckMemory() ? NULL : __libc_malloc(size); }
void* calloc(size_t number, size_t size) { return StruckMemory() ? NULL : __libc_calloc(number, size); }
void* realloc(void* memory, size_t size) { return StruckMemory() ? NULL : __libc_realloc(memory, size); }
void* memalign(size_t alignment, size_t size) { return StruckMemory() ? NULL : __libc_memalign(alignment, size); }
void* aligned_alloc(size_t alignment, size_t size) { return StruckMemory() ? NULL : __libc_memalign(alignment, size); }
int posix_memalign(void** memory, size_t alignment, size_t size) {
  if (StruckMemory()) return ENOMEM;
  void* const made = __libc_memalign(alignment, size);
  if (!made) return ENOMEM;
  *memory = made;
  return 0;
}
