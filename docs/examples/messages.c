/* A complete component server in plain C: the scheduling server's two objects, which write every text and every status
 * to standard error or, where MESSAGES_FILE names a file, to that file.
 *
 * It sees the public header and nothing else of the program.
 */
#include <qmx/component_server.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>

typedef struct {
  qmx_object head; /* must come first: the host sees this pointer */
  size_t references;
} component;

/* Texts in an error stay ours until the next call into the library: constant ones always do. */
static qmx_status fail(qmx_error* error, int32_t number, const char* description) {
  static const char source[] = "Messages example";
  error->number = number;
  error->source = source;
  error->source_length = sizeof source - 1;
  error->description = description;
  error->description_length = strlen(description);
  return QMX_FAILED;
}

static int same_name(const char* known, const char* name, size_t length) {
  return strlen(known) == length && strncasecmp(known, name, length) == 0;
}

static void print(FILE* out, const qmx_value* value) {
  switch (value->kind) {
    case QMX_TEXT:
      fwrite(value->as.text.data, 1, value->as.text.length, out);
      break;
    case QMX_UINT8:
    case QMX_INT16:
    case QMX_INT32:
      fprintf(out, "%d", (int)value->as.integer);
      break;
    case QMX_DATETIME: {
      const int64_t second_of_day = (value->as.seconds % 86400 + 86400) % 86400;
      fprintf(out, "%02d:%02d", (int)(second_of_day / 3600), (int)(second_of_day / 60 % 60));
      break;
    }
    default:
      fprintf(out, "(a value of kind %d)", (int)value->kind);
  }
}

/* One line a call: the member's name, then its arguments. */
static qmx_status write_line(const char* member, qmx_value* const* arguments, size_t count, qmx_error* error) {
  const char* path = getenv("MESSAGES_FILE");
  FILE* out = path ? fopen(path, "a") : stderr;
  if (!out) return fail(error, 75, "MESSAGES_FILE names a file that cannot be written.");
  fprintf(out, "%s", member);
  for (size_t i = 0; i < count; ++i) {
    fputs(i == 0 ? ": " : ", ", out);
    print(out, arguments[i]);
  }
  fputc('\n', out);
  if (out != stderr && fclose(out) != 0) return fail(error, 57, "MESSAGES_FILE names a file that cannot be written.");
  return QMX_OK;
}

static void add_ref(qmx_object* object) { ++((component*)object)->references; }

static void release(qmx_object* object) {
  if (--((component*)object)->references == 0) free(object);
}

/* QMXServer20.clsMessHandler: writeToMessageBox (time, text), WriteToAlertBox (time, text). */

static const char* const handler_members[] = {"writeToMessageBox", "WriteToAlertBox"};

static qmx_status handler_resolve(qmx_object* object, const char* name, size_t length, int32_t* id, qmx_error* error) {
  (void)object;
  for (*id = 0; *id < 2; ++*id) {
    if (same_name(handler_members[*id], name, length)) return QMX_OK;
  }
  return fail(error, QMX_E_NO_SUCH_MEMBER, "The message handler has no such member.");
}

static qmx_status handler_invoke(qmx_object* object, int32_t id, qmx_value* const* arguments, size_t count,
                                 qmx_value* result, qmx_error* error) {
  (void)object;
  (void)result; /* stays empty */
  if (count != 2) return fail(error, QMX_E_WRONG_ARGUMENT_COUNT, "A time and a text are expected.");
  return write_line(handler_members[id], arguments, count, error);
}

static const qmx_type handler_type = {
    sizeof(qmx_type), 0, handler_resolve, handler_invoke, add_ref, release, "QMXServer20.clsMessHandler"};

/* QMXServer20.ClientRequests: UpdateStatusByTalbe (request number, table name, status). */

static qmx_status requests_resolve(qmx_object* object, const char* name, size_t length, int32_t* id, qmx_error* error) {
  (void)object;
  *id = 0;
  if (same_name("UpdateStatusByTalbe", name, length)) return QMX_OK;
  return fail(error, QMX_E_NO_SUCH_MEMBER, "The client requests have no such member.");
}

static qmx_status requests_invoke(qmx_object* object, int32_t id, qmx_value* const* arguments, size_t count,
                                  qmx_value* result, qmx_error* error) {
  (void)object;
  (void)id;
  (void)result;
  if (count != 3) return fail(error, QMX_E_WRONG_ARGUMENT_COUNT, "A request, a table and a status are expected.");
  return write_line("UpdateStatusByTalbe", arguments, count, error);
}

static const qmx_type requests_type = {
    sizeof(qmx_type), 0, requests_resolve, requests_invoke, add_ref, release, "QMXServer20.ClientRequests"};

static qmx_status create(const char* prog_id, size_t length, qmx_object** object, qmx_error* error) {
  const qmx_type* type = NULL;
  if (same_name("QMXServer20.clsMessHandler", prog_id, length)) type = &handler_type;
  if (same_name("QMXServer20.ClientRequests", prog_id, length)) type = &requests_type;
  if (!type) return fail(error, QMX_E_CANNOT_CREATE, "Only QMXServer20 objects are served.");

  component* made = malloc(sizeof *made);
  if (!made) return fail(error, 7, "Out of memory.");
  made->head.struct_size = sizeof(qmx_object);
  made->head.reserved = 0;
  made->head.type = type;
  made->references = 1; /* the host's */
  *object = &made->head;
  return QMX_OK;
}

static const qmx_component_server server = {sizeof(qmx_component_server),
                                            QMX_ABI_VERSION,
                                            create,
                                            "messages example 1.0",
                                            NULL, /* it has no settings, and nothing to describe or to check */
                                            NULL,
                                            NULL};

const qmx_component_server* QMX_COMPONENT_SERVER_ENTRY(const qmx_component_host* host, qmx_error* error) {
  (void)host;
  (void)error;
  return &server;
}
