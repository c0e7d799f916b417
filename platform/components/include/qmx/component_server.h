/* A component server: a shared library whose objects a host calls by name.
 *
 * This header is the whole contract between a host and a server; both sides may be written in C or C++.
 *
 * LOADING
 * The library exports one function, QMX_COMPONENT_SERVER_ENTRY. The host calls it once, after loading the library, and
 * keeps the library loaded until the process ends. A small manifest tells the host which programmatic identifiers
 * (ProgIDs) the library serves.
 *
 * VERSIONS
 * Every struct begins with struct_size, which its maker sets to sizeof the struct as it was compiled. Members are only
 * ever added at the end. Before reading a member that came later than version 1, a reader checks that struct_size
 * covers it (QMX_HAS). abi_version changes only when an existing member changes its meaning: a host refuses a server of
 * another abi_version.
 *
 * OBJECTS
 * An object is a pointer to memory that begins with a qmx_object. Both sides make objects and pass them to the other;
 * both call them in the same way, through the object's type. Types live until the process ends, and an object's type
 * never changes. Member ids belong to the type: an id that was resolved on one object serves for every object of that
 * type. Names (ProgIDs, members) are compared without regard to ASCII case. An object that comes back to the side that
 * made it comes back as the pointer that it was; an object of the host may reach a server under several pointers.
 *
 * COUNTING
 * A new object has one reference, which belongs to the receiver. To keep an object beyond a call, add a reference
 * (add_ref) and release it later (release). The last release destroys the object.
 *
 * VALUES
 * Arguments belong to the caller: the callee may read them during the call and must copy, or add a reference to, what
 * it keeps. A result belongs to the caller of invoke: an object has a reference for the caller; a text stays the
 * callee's, valid until the next call on the same object or its last release.
 *
 * BY REFERENCE
 * An argument flagged QMX_BY_REFERENCE is the caller's variable. The callee may overwrite its kind and its value under
 * the rules of a result; it neither frees nor releases the old value, and keeps the flag. An object counts as
 * written when its pointer differs from the one passed in. A failed call does not change its variables.
 *
 * TEXTS
 * UTF-8 with a length in bytes, no terminating zero needed; data may be null when length is 0. A text that is not
 * UTF-8 or holds a NUL is refused with error 13.
 *
 * ERRORS
 * A call returns QMX_OK or QMX_FAILED. On QMX_FAILED the callee has filled the qmx_error that it was given; its texts
 * stay the callee's, valid until the next call into the same library. No C++ exception and no longjmp crosses.
 *
 * THREADS
 * The host calls from one thread, and a server calls the host from that thread only, while it is being called.
 */
#ifndef QMX_COMPONENT_SERVER_H
#define QMX_COMPONENT_SERVER_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define QMX_ABI_VERSION 1

/* The name of the exported entry function. */
#define QMX_COMPONENT_SERVER_ENTRY qmx_component_server_entry
#define QMX_COMPONENT_SERVER_ENTRY_NAME "qmx_component_server_entry"

#if defined(__GNUC__)
#define QMX_EXPORT __attribute__((visibility("default")))
#else
#define QMX_EXPORT
#endif

/* Whether the struct behind p is long enough to have the member. */
#define QMX_HAS(p, member) \
  ((p)->struct_size >= (uint32_t)((size_t)((const char*)&(p)->member - (const char*)(p)) + sizeof((p)->member)))

typedef int32_t qmx_status;
enum { QMX_OK = 0, QMX_FAILED = 1 };

/* Classic automation error numbers for servers. */
enum {
  QMX_E_INVALID_CALL = 5,
  QMX_E_OVERFLOW = 6,
  QMX_E_TYPE_MISMATCH = 13,
  QMX_E_INTERNAL = 51,
  QMX_E_OBJECT_NOT_SET = 91,
  QMX_E_CANNOT_CREATE = 429,
  QMX_E_NO_SUCH_MEMBER = 438,
  QMX_E_WRONG_ARGUMENT_COUNT = 450
};

typedef struct qmx_error {
  uint32_t struct_size; /* set by the caller */
  int32_t number;
  const char* source; /* a short name of the part that failed */
  size_t source_length;
  const char* description; /* one sentence: what, where, what to do */
  size_t description_length;

  /* Since struct_size grew once: more about the cause, such as a stack trace. It may have many lines.
   * Logs do not show it; the trace and the program's standard error do. */
  const char* details;
  size_t details_length;
} qmx_error;

/* The kinds of value, and the member of qmx_value that holds each. */
enum {
  QMX_EMPTY = 0,    /* none: no value was ever given */
  QMX_NULL = 1,     /* none: the database's null */
  QMX_BOOLEAN = 2,  /* as.boolean, 0 or 1 */
  QMX_UINT8 = 3,    /* as.integer */
  QMX_INT16 = 4,    /* as.integer */
  QMX_INT32 = 5,    /* as.integer */
  QMX_DOUBLE = 6,   /* as.number */
  QMX_DATETIME = 7, /* as.seconds since 1899-12-30 00:00:00, civil time without a zone */
  QMX_TEXT = 8,     /* as.text */
  QMX_OBJECT = 9    /* as.object; null is "no object" */
};

/* Flags of a value. */
enum { QMX_BY_REFERENCE = 1 };

struct qmx_object;

typedef struct qmx_value {
  uint32_t struct_size; /* set by the side that provides the memory */
  uint16_t kind;
  uint16_t flags;
  union {
    int32_t boolean;
    int32_t integer;
    double number;
    int64_t seconds;
    struct {
      const char* data;
      size_t length;
    } text;
    struct qmx_object* object;
  } as;
} qmx_value;

typedef struct qmx_type {
  uint32_t struct_size;
  uint32_t reserved; /* 0 */

  /* The member's id on objects of this type. Fails with QMX_E_NO_SUCH_MEMBER; objects of the host may do so only when
   * the member is invoked. */
  qmx_status (*resolve)(struct qmx_object* object, const char* name, size_t name_length, int32_t* id, qmx_error* error);

  /* Calls the member. *result comes in as QMX_EMPTY with its struct_size set; a member without a result leaves it so.
   * arguments may be null when there are none. */
  qmx_status (*invoke)(struct qmx_object* object, int32_t id, qmx_value* const* arguments, size_t argument_count,
                       qmx_value* result, qmx_error* error);

  void (*add_ref)(struct qmx_object* object);
  void (*release)(struct qmx_object* object);

  /* Since struct_size grew once: a name for people, zero-terminated, or null. */
  const char* name;
} qmx_type;

typedef struct qmx_object {
  uint32_t struct_size;
  uint32_t reserved; /* 0 */
  const qmx_type* type;
} qmx_object;

/* One "setting NAME = VALUE" of a manifest. */
typedef struct qmx_setting {
  uint32_t struct_size;
  uint32_t reserved; /* 0 */
  const char* name;
  size_t name_length;
  const char* value;
  size_t value_length;
} qmx_setting;

/* The manifest for which the host calls a server. It is the host's, valid during the call. One library may serve
 * several manifests, each with settings of its own. */
typedef struct qmx_manifest {
  uint32_t struct_size;
  uint32_t reserved; /* 0 */
  const char* path;  /* of the file, absolute; paths in settings are usually relative to its folder */
  size_t path_length;
  const qmx_setting* const* settings; /* in the order of their lines */
  size_t setting_count;
  const char* claim; /* the "progid" line that claims the ProgID, as it is spelled there; ends in "*" for a pattern */
  size_t claim_length;
} qmx_manifest;

/* Receives one fact for people: what it is ("version") and its value. */
typedef void (*qmx_fact_sink)(void* context, const char* name, size_t name_length, const char* value,
                              size_t value_length);

typedef struct qmx_component_server {
  uint32_t struct_size;
  uint32_t abi_version; /* QMX_ABI_VERSION */

  /* Makes an object, with one reference for the caller. Fails with QMX_E_CANNOT_CREATE for a ProgID that it does not
   * serve. */
  qmx_status (*create)(const char* prog_id, size_t prog_id_length, qmx_object** object, qmx_error* error);

  /* Since struct_size grew once: a name and version for people, zero-terminated, or null. */
  const char* description;

  /* Since struct_size grew twice: the following three, each of which may be null. */

  /* Makes an object as create does, and is called in its place. prog_id is spelled as the manifest's line spells it;
   * what a "*" stands for is spelled as the caller did. A server without it is refused when its manifest has settings.
   */
  qmx_status (*create_for)(const qmx_manifest* manifest, const char* prog_id, size_t prog_id_length,
                           qmx_object** object, qmx_error* error);

  /* Describes to `sink` what serves the manifest, for people. May load what an object would need. */
  qmx_status (*describe)(const qmx_manifest* manifest, qmx_fact_sink sink, void* context, qmx_error* error);

  /* Whether create_for would find the ProgID, without making an object. Not called for patterns. */
  qmx_status (*check)(const qmx_manifest* manifest, const char* prog_id, size_t prog_id_length, qmx_error* error);
} qmx_component_server;

/* What the host offers to servers. */
typedef struct qmx_component_host {
  uint32_t struct_size;
  uint32_t abi_version;

  /* Makes an object of any ProgID that the host knows, other servers' included (a date object: "java:java.util.Date"),
   * with one reference for the caller. Fails with QMX_E_CANNOT_CREATE. Not to be called from the entry function. */
  qmx_status (*create)(const char* prog_id, size_t prog_id_length, qmx_object** object, qmx_error* error);
} qmx_component_host;

/* The entry function, which the server defines. `host` and the struct returned live until the process ends. Null means
 * that the server cannot work at all; *error says why. */
typedef const qmx_component_server* (*qmx_component_server_entry_function)(const qmx_component_host* host,
                                                                           qmx_error* error);
QMX_EXPORT const qmx_component_server* QMX_COMPONENT_SERVER_ENTRY(const qmx_component_host* host, qmx_error* error);

#ifdef __cplusplus
}
#endif

#endif
