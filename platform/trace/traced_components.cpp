#include "platform/trace/traced_components.h"

#include <nlohmann/json.hpp>

#include "platform/error.h"
#include "platform/trace/trace.h"

namespace qmx {

TracedComponents::TracedComponents(Components& target, Trace& trace)
    : target_(target), context_(std::make_shared<TraceContext>(TraceContext{trace})) {}

Object TracedComponents::CreateObject(std::string_view progId) {
  nlohmann::ordered_json line = {{"kind", "component"}, {"op", "create"}, {"progid", progId}};
  try {
    const Object object = TracedObject::Wrap(target_.CreateObject(progId), std::string(progId), context_);
    line["object"] = TracedObject::NumberOf(object);
    context_->trace.Write(line);
    return object;
  } catch (...) {
    line["error"] = TraceError(CurrentError());
    context_->trace.Write(line);
    throw;
  }
}

}  // namespace qmx
