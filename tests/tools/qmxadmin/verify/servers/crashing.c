/* An ERP that lists 1500 service types and then ends the process: by SIGKILL if QMX_TEST_KILL is set, else by SIGABRT.
   With QMX_TEST_AT_LIST it ends at the listing: "abort" by SIGABRT, "exit" by exit(0). It has no member of the name in
   QMX_TEST_UNKNOWN. One object plays all parts. */
#include <qmx/component_server.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { INITIALIZE, LIST, HAS_MORE, NEXT, TEXT };
static const char* const kNames[] = {"initialize", "List", "hasMoreElements", "nextElement"};

static int records = 0;
static qmx_object only;

static qmx_status Resolve(qmx_object* object, const char* name, size_t length, int32_t* id, qmx_error* error) {
  (void)object;
  const char* const unknown = getenv("QMX_TEST_UNKNOWN");
  if (unknown && strlen(unknown) == length && memcmp(unknown, name, length) == 0) {
    error->number = QMX_E_NO_SUCH_MEMBER;
    return QMX_FAILED;
  }
  for (*id = INITIALIZE; *id < TEXT; ++*id) {
    if (strlen(kNames[*id]) == length && memcmp(kNames[*id], name, length) == 0) break;
  }
  return QMX_OK;
}

static qmx_status Invoke(qmx_object* object, int32_t id, qmx_value* const* arguments, size_t count, qmx_value* result,
                         qmx_error* error) {
  static char text[16];
  (void)arguments, (void)count, (void)error;
  const char* const atList = getenv("QMX_TEST_AT_LIST");
  if (id == LIST && atList) strcmp(atList, "exit") == 0 ? exit(0) : abort();
  if (id == NEXT && ++records > 1500) raise(getenv("QMX_TEST_KILL") ? SIGKILL : SIGABRT);
  if (id == LIST || id == NEXT) {
    result->kind = QMX_OBJECT;
    result->as.object = object;
  } else if (id == HAS_MORE) {
    result->kind = QMX_BOOLEAN;
    result->as.boolean = 1;
  } else if (id == TEXT) {
    result->kind = QMX_TEXT;
    result->as.text.data = text;
    result->as.text.length = (size_t)snprintf(text, sizeof text, "KEY%d", records);
  }
  return QMX_OK;
}

static void Count(qmx_object* object) { (void)object; }

static const qmx_type kType = {sizeof(qmx_type), 0, Resolve, Invoke, Count, Count, "Crashing"};

static qmx_status Create(const char* prog_id, size_t length, qmx_object** object, qmx_error* error) {
  (void)prog_id, (void)length, (void)error;
  only.struct_size = sizeof only;
  only.type = &kType;
  *object = &only;
  return QMX_OK;
}

static const qmx_component_server kServer = {
    sizeof(qmx_component_server), QMX_ABI_VERSION, Create, NULL, NULL, NULL, NULL};

const qmx_component_server* QMX_COMPONENT_SERVER_ENTRY(const qmx_component_host* host, qmx_error* error) {
  (void)host, (void)error;
  return &kServer;
}
