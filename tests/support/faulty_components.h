// Components around other ones that count every creation and every call, keep a record of them, and can make the Nth
// one fail.
//
// A failing operation does nothing but raise the given error; those after it work again, unless everything is to fail
// from there on, as when the ERP is gone.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/components.h"
#include "platform/error.h"

namespace qmx::test {

class FaultyComponents : public Components {
 public:
  explicit FaultyComponents(Components& inner) : inner_(inner) {}

  void FailAt(std::int64_t operation) { failAt_ = operation, failFrom_ = 0; }    // counted from 1; 0 for none
  void FailFrom(std::int64_t operation) { failFrom_ = operation, failAt_ = 0; }  // that one and all after it
  void FailWith(Error error) { failure_ = std::move(error); }
  std::int64_t Operations() const { return static_cast<std::int64_t>(record_.size()); }
  bool HasFailed() const { return hasFailed_; }
  void Restart() { record_.clear(), hasFailed_ = false; }

  const std::vector<std::string>& Record() const { return record_; }  // "create PROGID", "call MEMBER"

  Object CreateObject(std::string_view progId) override {
    Count("create " + std::string(progId));
    return Wrapped(inner_.CreateObject(progId));
  }

 private:
  class Called : public Dispatch {
   public:
    Called(FaultyComponents& owner, Object target) : owner_(owner), target_(std::move(target)) {}

    // Objects that are passed on reach the component without their wrappers.
    Variant Invoke(const Member& member, std::span<const Argument> arguments) override {
      owner_.Count("call " + std::string(member.Name()));
      std::vector<Argument> passed;
      for (const Argument& argument : arguments) {
        const Object* const object = argument.Value().IfObject();
        const auto* const own = object ? dynamic_cast<const Called*>(object->Target().get()) : nullptr;
        passed.push_back(own && !argument.IsReference() ? Argument(own->target_) : argument);
      }
      Variant result = target_.Target()->Invoke(member, passed);
      const Object* const object = result.IfObject();
      return object ? owner_.Wrapped(*object) : result;
    }

   private:
    FaultyComponents& owner_;
    Object target_;
  };

  Object Wrapped(const Object& object) { return object ? Object(std::make_shared<Called>(*this, object)) : object; }

  void Count(std::string operation) {
    record_.push_back(std::move(operation));
    const std::int64_t number = Operations();
    if (number != failAt_ && (failFrom_ == 0 || number < failFrom_)) return;
    hasFailed_ = true;
    Error error(failure_.Number(), failure_.Source(), failure_.Description());  // a new one, with the cause of its own
    throw error.With("operation", std::to_string(number) + ", " + record_.back());
  }

  Components& inner_;
  Error failure_{errors::kInternal, "Faulty components", "This operation was made to fail."};
  std::int64_t failAt_ = 0;
  std::int64_t failFrom_ = 0;
  bool hasFailed_ = false;
  std::vector<std::string> record_;
};

}  // namespace qmx::test
