// A server that breaks the contract: an exception leaves its entry function.
#include <qmx/component_server.h>

#include <stdexcept>

const qmx_component_server* QMX_COMPONENT_SERVER_ENTRY(const qmx_component_host*, qmx_error*) {
  throw std::runtime_error("there is no licence");
}
