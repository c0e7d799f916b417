// An object of the program whose answers a test decides.
#pragma once

#include <functional>
#include <memory>

#include "platform/components.h"

namespace qmx::test {

class HostObject final : public Dispatch {
 public:
  using Answer = std::function<Variant(const Member& member, std::span<const Argument> arguments)>;

  static Object Make(Answer answer = {}) { return Object(std::make_shared<HostObject>(std::move(answer))); }

  explicit HostObject(Answer answer) : answer_(std::move(answer)) {}
  Variant Invoke(const Member& member, std::span<const Argument> arguments) override {
    return answer_(member, arguments);
  }

 private:
  Answer answer_;
};

}  // namespace qmx::test
