/* A server compiled against the header as it was before its structs grew: "Test.Frozen" answers 1 to "getAnswer". */
#include <string.h>

#include "frozen/component_server.h"

static qmx_status resolve(qmx_object* object, const char* name, size_t length, int32_t* id, qmx_error* error) {
  static const char source[] = "Frozen";
  static const char description[] = "No such member.";
  (void)object;
  *id = 0;
  if (length == 9 && memcmp(name, "getAnswer", 9) == 0) return QMX_OK;
  error->number = QMX_E_NO_SUCH_MEMBER;
  error->source = source;
  error->source_length = sizeof source - 1;
  error->description = description;
  error->description_length = sizeof description - 1;
  return QMX_FAILED;
}

static qmx_status invoke(qmx_object* object, int32_t id, qmx_value* const* arguments, size_t count, qmx_value* result,
                         qmx_error* error) {
  (void)object;
  (void)id;
  (void)arguments;
  (void)count;
  (void)error;
  result->kind = QMX_INT32;
  result->as.integer = 1;
  return QMX_OK;
}

static void count(qmx_object* object) { (void)object; } /* the only object lives as long as the library */

/* What follows the structs in memory is no part of them: a host that reads it would show these texts. */
static const struct {
  qmx_type type;
  const char* trap;
} type = {{sizeof(qmx_type), 0, resolve, invoke, count, count}, "read beyond the type"};

static qmx_object object = {sizeof(qmx_object), 0, &type.type};

static qmx_status create(const char* prog_id, size_t length, qmx_object** made, qmx_error* error) {
  (void)prog_id;
  (void)length;
  (void)error;
  *made = &object;
  return QMX_OK;
}

static const qmx_component_server server = {sizeof(qmx_component_server), QMX_ABI_VERSION, create};

const qmx_component_server* QMX_COMPONENT_SERVER_ENTRY(const qmx_component_host* host, qmx_error* error) {
  (void)host;
  (void)error;
  return &server;
}
