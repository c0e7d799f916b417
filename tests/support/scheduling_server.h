// The scheduling server's two objects, as scripted components named "messages" and "requests".
#pragma once

#include "tests/support/scripted_components.h"

namespace qmx::test {

inline void ServeSchedulingServer(ScriptedErp& components) {
  components.Serves("QMXServer20.clsMessHandler", [&components] {
    const auto messages = components.Make("messages");
    messages->Takes("writeToMessageBox", 2).Takes("WriteToAlertBox", 2);
    return Object(messages);
  });
  components.Serves("QMXServer20.ClientRequests", [&components] {
    const auto requests = components.Make("requests");
    requests->Takes("UpdateStatusByTalbe", 3);
    return Object(requests);
  });
}

}  // namespace qmx::test
