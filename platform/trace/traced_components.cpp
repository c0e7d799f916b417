#include "platform/trace/traced_components.h"

#include "platform/error.h"
#include "platform/trace/trace.h"

namespace qmx {

TracedComponents::TracedComponents(Components& target, Trace& trace)
    : target_(target), context_(std::make_shared<TraceContext>(TraceContext{trace})) {}

Object TracedComponents::CreateObject(std::string_view progId) {
  JsonLine line = JsonLine::Object();
  line.Add("kind", "component").Add("op", "create").Add("progid", progId);
  try {
    const Object object = TracedObject::Wrap(target_.CreateObject(progId), std::string(progId), context_);
    line.Add("object", TracedObject::NumberOf(object));
    context_->trace.Write(line);
    return object;
  } catch (...) {
    line.Add("error", TraceError(CurrentError()));
    context_->trace.Write(line);
    throw;
  }
}

}  // namespace qmx
