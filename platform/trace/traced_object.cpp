#include "platform/trace/traced_object.h"

#include <vector>

#include "platform/error.h"
#include "platform/trace/trace.h"

namespace qmx {

namespace {

const TracedObject* Traced(const Object& object) { return dynamic_cast<const TracedObject*>(object.Target().get()); }

}  // namespace

Object TracedObject::Wrap(const Object& target, std::string progId, std::shared_ptr<TraceContext> context) {
  if (!target || Traced(target)) return target;
  return Object(std::make_shared<TracedObject>(target, std::move(progId), std::move(context)));
}

int TracedObject::NumberOf(const Object& object) {
  const TracedObject* const traced = Traced(object);
  return traced ? traced->number_ : 0;
}

TracedObject::TracedObject(const Object& target, std::string progId, std::shared_ptr<TraceContext> context)
    : target_(target), progId_(std::move(progId)), context_(std::move(context)), number_(++context_->objects) {}

Variant TracedObject::Invoke(const Member& member, std::span<const Argument> arguments) {
  const auto unwrapped = [](const Variant& value) {
    const TracedObject* const traced = value.IfObject() ? Traced(*value.IfObject()) : nullptr;
    return traced ? Variant(traced->target_) : value;
  };
  JsonLine line = JsonLine::Object();
  line.Add("kind", "component").Add("op", "call").Add("object", number_).Add("progid", progId_);
  line.Add("member", member.Name());
  JsonLine values = JsonLine::Array();
  std::vector<Variant> before;
  for (const Argument& argument : arguments) {
    const std::string value = TraceValue(argument.Value());
    values.AddJson(argument.IsReference() ? JsonLine::Object().AddJson("ref", value).Text() : value);
    before.push_back(unwrapped(argument.Value()));
  }
  line.Add("args", values);
  std::vector<Variant> after = before;
  std::vector<Argument> passed;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    passed.push_back(arguments[i].IsReference() ? Ref(after[i]) : Argument(before[i]));
  }

  try {
    const Variant result = Wrapped(target_.Target()->Invoke(member, passed));
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      // A number that is none differs from itself, also as an argument that cannot be written.
      if (arguments[i].IsReference() && after[i] != before[i]) arguments[i].Write(Wrapped(after[i]));
    }
    line.AddJson("result", TraceValue(result));
    context_->trace.Write(line);
    return result;
  } catch (...) {
    line.Add("error", TraceError(CurrentError()));
    context_->trace.Write(line);
    throw;
  }
}

Variant TracedObject::Wrapped(Variant value) const {
  if (const Object* const object = value.IfObject()) return Wrap(*object, {}, context_);
  return value;
}

}  // namespace qmx
