// Traces creations and calls, and passes them on.
#pragma once

#include "platform/components.h"
#include "platform/trace/traced_object.h"

namespace qmx {

class TracedComponents : public Components {
 public:
  TracedComponents(Components& target, Trace& trace);  // both borrowed; objects use the trace during their lifetime
  Object CreateObject(std::string_view progId) override;

 private:
  Components& target_;
  std::shared_ptr<TraceContext> context_;
};

}  // namespace qmx
