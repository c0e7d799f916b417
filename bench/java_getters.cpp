// java_getters [benchmark options]: measures calls of a Java object's getters, as a copy makes them.
#include <benchmark/benchmark.h>

#include <iostream>

#include "platform/components/installed_components.h"
#include "platform/error.h"
#include "platform/posix/clock.h"

namespace {

void Add(const char* name, const qmx::Object& object, const char* getter) {
  benchmark::RegisterBenchmark(name, [&object, member = qmx::Member(getter)](benchmark::State& state) {
    for (auto iteration : state) benchmark::DoNotOptimize(object.Call(member));
  });
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (argc != 1) {
    std::cerr << "usage: java_getters [benchmark options]\n";
    return 2;
  }
  try {
    qmx::PosixClock clock;
    qmx::InstalledComponents components(clock);
    const qmx::Object getters = components.CreateObject("getters.Getters");
    Add("Java getter, int", getters, "getNumber");
    Add("Java getter, text of 20 letters", getters, "getText");
    benchmark::RunSpecifiedBenchmarks();
  } catch (const qmx::Error& failure) {
    std::cerr << "java_getters: " << failure.Description() << '\n';
    return 1;
  }
}
