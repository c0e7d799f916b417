/* A server of another version of the interface. */
#include <qmx/component_server.h>

const qmx_component_server* QMX_COMPONENT_SERVER_ENTRY(const qmx_component_host* host, qmx_error* error) {
  static const qmx_component_server server = {sizeof(qmx_component_server), 7, NULL, NULL, NULL, NULL, NULL};
  (void)host;
  (void)error;
  return &server;
}
