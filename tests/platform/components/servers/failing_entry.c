/* A server that cannot work, and says so; a second request to enter would change what it says. */
#include <qmx/component_server.h>

const qmx_component_server* QMX_COMPONENT_SERVER_ENTRY(const qmx_component_host* host, qmx_error* error) {
  static int entered;
  static const char source[] = "Failing server";
  static const char first[] = "The ERP client is not installed.";
  static const char again[] = "Entered twice.";
  (void)host;
  error->number = QMX_E_INTERNAL;
  error->source = source;
  error->source_length = sizeof source - 1;
  error->description = entered ? again : first;
  error->description_length = (entered ? sizeof again : sizeof first) - 1;
  entered = 1;
  return NULL;
}
