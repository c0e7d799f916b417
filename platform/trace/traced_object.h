// Traces the calls of an object, and passes them on.
//
// Objects are numbered in the order of their first appearance. Objects in arguments reach the callee without this
// wrapper. Returned objects are wrapped.
#pragma once

#include <string>

#include "platform/components.h"

namespace qmx {

class Trace;

// Shared by all objects of one trace.
struct TraceContext {
  Trace& trace;
  int objects = 0;  // numbered so far
};

class TracedObject final : public Dispatch {
 public:
  static Object Wrap(const Object& target, std::string progId, std::shared_ptr<TraceContext> context);
  static int NumberOf(const Object& object);  // 0 for an untraced object

  TracedObject(const Object& target, std::string progId, std::shared_ptr<TraceContext> context);
  Variant Invoke(const Member& member, std::span<const Argument> arguments) override;
  void Describe(Error& error, const Member& member) const override { target_.Target()->Describe(error, member); }

 private:
  Variant Wrapped(Variant value) const;

  Object target_;
  std::string progId_;  // empty for an object that a call returned
  std::shared_ptr<TraceContext> context_;
  int number_;
};

}  // namespace qmx
