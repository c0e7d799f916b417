// Components whose creations and calls are traced, around those that serve them.
#pragma once

#include "platform/components.h"
#include "platform/trace/traced_object.h"

namespace qmx {

class TracedComponents : public Components {
 public:
  TracedComponents(Components& target, Trace& trace);  // both borrowed; objects use the trace as long as they live
  Object CreateObject(std::string_view progId) override;

 private:
  Components& target_;
  std::shared_ptr<TraceContext> context_;
};

}  // namespace qmx
