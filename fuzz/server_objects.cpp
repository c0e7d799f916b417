// Objects of a hostile component server, and the program's objects in its hands: nothing but an Error reaches the
// caller, no object is called after its last release, and each is released in the end.
#include <cstdint>
#include <memory>
#include <stdexcept>

#include "fuzz/hostile_server.h"
#include "fuzz/input.h"
#include "fuzz/raised.h"
#include "fuzz/require.h"
#include "platform/components/abi_values.h"

namespace qmx::fuzz {
namespace {

constexpr int kMostSteps = 30;
constexpr std::size_t kMostHeld = 6;
const Member kMembers[] = {"List", "nextElement", "Close", "getKey"};

int aliveHostObjects = 0;

// An object of the program that the server may call.
class HostThing final : public Dispatch {
 public:
  explicit HostThing(Input& input) : input_(input) { ++aliveHostObjects; }
  ~HostThing() override { --aliveHostObjects; }
  HostThing(const HostThing&) = delete;
  HostThing& operator=(const HostThing&) = delete;

  Variant Invoke(const Member&, std::span<const Argument> arguments) override {
    if (input_.Chance(10)) throw Error(input_.Next<std::int16_t>(), "Host", input_.Text(8));
    if (input_.Chance(5)) throw std::runtime_error("an exception of the host");
    for (const Argument& argument : arguments) {
      if (argument.IsReference() && input_.Chance(60)) argument.Write(Any(argument.Value()));
    }
    return Any(arguments.empty() ? Variant() : arguments[0].Value());
  }

 private:
  Variant Any(const Variant& given) {
    switch (input_.Below(5)) {
      case 0:
        return Object(std::make_shared<HostThing>(input_));
      case 1:
        return given;
      case 2:
        return input_.Text(8);
      case 3:
        return Object();
      default:
        return input_.Next<std::int32_t>();
    }
  }
  Input& input_;
};

// The program's side: objects and variables that it holds.
class Program {
 public:
  Program(Input& input, HostileServer& server) : input_(input), server_(server) {}

  void Step() {
    if (held_.empty() || input_.Chance(15)) return Take();
    if (held_.size() > kMostHeld || input_.Chance(10)) return Drop();
    Call(held_[input_.Below(held_.size())]);
  }

 private:
  void Take() {
    NumberRaised([&] { held_.push_back(ObjectFromAbi(server_.Make(), Reference::Given)); });
  }
  void Drop() { held_.erase(held_.begin() + static_cast<std::ptrdiff_t>(input_.Below(held_.size()))); }

  void Call(const Object& callee) {
    const Object object = callee;                                       // the vector may grow
    if (dynamic_cast<const HostThing*>(object.Target().get())) return;  // it came back as itself
    Variant variables[] = {Any(), Any()};
    std::vector<Argument> arguments;
    for (Variant& variable : variables) {
      if (input_.Chance(40)) arguments.push_back(Ref(variable));
      if (input_.Chance(40)) arguments.emplace_back(Any());
    }
    for (std::size_t more = input_.Chance(5) ? 9 : 0; more > 0; --more) arguments.emplace_back(Any());
    const Member& member = kMembers[input_.Below(std::size(kMembers))];
    Variant result;
    const std::optional<Error> error = Raised([&] { result = Invoke(object, member, arguments); });
    if (error) Require(!error->Details().empty(), "the error of a call names the call");
    for (const Variant& value : {result, variables[0], variables[1]}) {
      if (value.IfObject() && *value.IfObject()) held_.push_back(*value.IfObject());
    }
  }

  Variant Any() {
    if (input_.Chance(20)) return Object(std::make_shared<HostThing>(input_));
    if (!held_.empty() && input_.Chance(30)) return held_[input_.Below(held_.size())];
    if (input_.Chance(20)) return input_.Text(6);
    return input_.Next<std::int16_t>();
  }

  Input& input_;
  HostileServer& server_;
  std::vector<Object> held_;
};

}  // namespace
}  // namespace qmx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qmx::fuzz;
  Input input(data, size);
  HostileServer server(input);
  {
    Program program(input, server);
    for (int i = 0; i < kMostSteps && !input.IsAtEnd(); ++i) program.Step();
  }
  server.ReleaseWhatItKeeps();
  Require(server.Alive() == 0, std::to_string(server.Alive()) + " of the server's objects are never released");
  Require(aliveHostObjects == 0, std::to_string(aliveHostObjects) + " of the program's objects are never released");
  return 0;
}
