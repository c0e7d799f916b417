// com_getters: measures getters of a COM component as a copy calls them, and the bare IDispatch::Invoke that each
// needs.
//
// Both take turns, and the shortest of their rounds counts, so that a busy machine does not decide. Exit status 1 if a
// getter takes more than 200 ns above the bare call.
#include <objbase.h>
#include <oleauto.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <limits>

#include "platform/com/apartment.h"
#include "platform/com/com_ptr.h"
#include "platform/com/objects.h"
#include "platform/components.h"
#include "platform/error.h"
#include "tests/platform/com/stub_component.h"

namespace {

using qmx::test::StubComponent;

constexpr double kAllowed = 200;
constexpr int kRounds = 15;
constexpr int kCalls = 100000;

void Require(HRESULT result, const char* what) {
  if (FAILED(result)) throw qmx::Error(result, "com_getters", what);
}

// A component with type information, as a record of an ERP has it.
qmx::ComPtr<StubComponent> MakeRecord() {
  const std::vector<std::wstring> names = {L"getNumber", L"getText", L"getDate"};  // their ids count from 1
  auto record = StubComponent::Make(
      [](const StubComponent::Call& call) {
        VARIANT& result = *call.result;
        switch (call.id) {
          case 1:
            result.vt = VT_I4;
            result.lVal = 20261120;
            return S_OK;
          case 2:
            result.vt = VT_BSTR;
            result.bstrVal = SysAllocString(L"Twenty letters of it");
            return S_OK;
          default:
            result.vt = VT_DATE;
            result.date = 46346.5;
            return S_OK;
        }
      },
      names);
  constexpr GUID kRecord = {0x2B4D6F10, 0x8A2C, 0x4E5D, {0x90, 0x11, 0x7F, 0x3A, 0x5C, 0x6E, 0x10, 0x2D}};
  record->information = qmx::ComPtr<ITypeInfo>::Owning(new qmx::test::StubTypeInfo(kRecord, L"Record", names));
  return record;
}

template <typename Call>
double NanosecondsPerCall(Call&& call) {
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < kCalls; ++i) call();
  const std::chrono::duration<double, std::nano> taken = std::chrono::steady_clock::now() - begin;
  return taken.count() / kCalls;
}

void InvokeAlone(IDispatch& component, DISPID id) {
  DISPPARAMS none{};
  VARIANT result;
  VariantInit(&result);
  Require(component.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none, &result, nullptr, nullptr),
          "a call failed");
  VariantClear(&result);
}

// Returns whether the getter is within the limit.
bool Measure(IDispatch& component, const qmx::Object& object, const char* name, DISPID id) {
  const qmx::Member member(name);
  double bare = std::numeric_limits<double>::max();
  double getter = bare;
  for (int round = 0; round < kRounds; ++round) {
    bare = std::min(bare, NanosecondsPerCall([&] { InvokeAlone(component, id); }));
    getter = std::min(getter, NanosecondsPerCall([&] { object.Call(member); }));
  }
  const bool isWithin = getter - bare <= kAllowed;
  std::printf("%-10s  bare %6.0f ns  getter %6.0f ns  above %5.0f ns%s\n", name, bare, getter, getter - bare,
              isWithin ? "" : "  TOO MUCH");
  return isWithin;
}

int Run() {
  const std::shared_ptr<qmx::ComApartment> apartment = qmx::ComApartment::Enter();
  const qmx::ComPtr<StubComponent> record = MakeRecord();
  const qmx::Object object = qmx::ObjectFrom(record.Get());
  int tooSlow = 0;
  DISPID id = 0;
  for (const char* name : {"getNumber", "getText", "getDate"}) tooSlow += !Measure(*record, object, name, ++id);
  return tooSlow > 0 ? 1 : 0;
}

}  // namespace

int main() {
  try {
    return Run();
  } catch (const qmx::Error& error) {
    std::fprintf(stderr, "com_getters: %s (%d)\n", error.Description().c_str(), static_cast<int>(error.Number()));
    return 2;
  }
}
