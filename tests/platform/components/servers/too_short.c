/* A server whose description ends before it can create anything. */
#include <qmx/component_server.h>

const qmx_component_server* QMX_COMPONENT_SERVER_ENTRY(const qmx_component_host* host, qmx_error* error) {
  static const qmx_component_server server = {8, QMX_ABI_VERSION, NULL, NULL, NULL, NULL, NULL};
  (void)host;
  (void)error;
  return &server;
}
