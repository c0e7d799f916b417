// The library as COM uses it, and its objects as the program calls them.
#include <gmock/gmock.h>
#include <objbase.h>

#include "com/guid.h"
#include "platform/com/apartment.h"
#include "platform/com/bstr.h"
#include "platform/com/com_components.h"
#include "platform/com/com_ptr.h"
#include "platform/com/objects.h"
#include "platform/components.h"
#include "platform/error.h"
#include "tests/platform/com/host_object.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;

class TheComServer : public testing::Test {
 protected:
  template <typename Function>
  Function Exported(const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library_, name)));
  }

  HRESULT GetFactory(const CLSID& id, ComPtr<IClassFactory>& factory) {
    using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    return Exported<GetClassObject>("DllGetClassObject")(id, IID_IClassFactory, factory.UntypedReceiver());
  }

  Object Create(const std::string& progId) {
    ComPtr<IClassFactory> factory;
    EXPECT_EQ(GetFactory(orvan::GuidOf(progId), factory), S_OK);
    ComPtr<IDispatch> made;
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, made.UntypedReceiver()), S_OK);
    return ObjectFrom(made.Get(), progId);
  }

  HRESULT Call(const char* function) { return Exported<HRESULT(STDAPICALLTYPE*)()>(function)(); }

  std::shared_ptr<ComApartment> apartment_ = ComApartment::Enter();
  HMODULE library_ = LoadLibraryW(Wide(TEST_COM_SERVER).c_str());
};

TEST_F(TheComServer, CreatesTheObjectsOfTheManifestsBesideIt) {
  const Object manager = Create("ServiceTypes.ServiceTypesManager");
  EXPECT_EQ(Raised([&] { manager.Call("none"); }).Number(), 438);
}

TEST_F(TheComServer, HasNoOtherClass) {
  ComPtr<IClassFactory> factory;
  EXPECT_EQ(GetFactory(orvan::GuidOf("ServiceTypes.None"), factory), CLASS_E_CLASSNOTAVAILABLE);
}

TEST_F(TheComServer, StaysLoaded) { EXPECT_EQ(Call("DllCanUnloadNow"), S_FALSE); }

TEST_F(TheComServer, DoesNotAggregate) {
  ComPtr<IClassFactory> factory;
  EXPECT_EQ(GetFactory(orvan::GuidOf("audit.period"), factory), S_OK);
  ComPtr<IUnknown> made;
  EXPECT_EQ(factory->CreateInstance(factory.Get(), IID_IUnknown, made.UntypedReceiver()), CLASS_E_NOAGGREGATION);
}

TEST_F(TheComServer, PassesErrorsOnWithNumberSourceAndDescription) {
  const Object manager = Create("ServiceTypes.ServiceTypesManager");
  const Error error = Raised([&] { manager.Call("initialize"); });
  EXPECT_EQ(error.Number(), 450);
  EXPECT_EQ(error.Source(), "ServiceTypes.ServiceTypesManager");
  EXPECT_EQ(error.Description(), "initialize of ServiceTypes.ServiceTypesManager takes 1 argument, not 0.");
  EXPECT_EQ(error.DetailOf("type"), "ServiceTypes.ServiceTypesManager");
}

TEST_F(TheComServer, RefusesTypesThatServersDoNotKnow) {
  const Object manager = Create("ServiceTypes.ServiceTypesManager");
  const Error error = Raised([&] { manager.Call("initialize", 5); });
  EXPECT_EQ(error.Number(), 13);
  EXPECT_THAT(error.Description(), HasSubstr("The argument \"5\" is not a text"));
}

TEST_F(TheComServer, TakesItsOwnObjectsBackAsThemselves) {
  const Object criteria = Create("audit.auditCriteria");
  const Object period = Create("audit.period");
  EXPECT_EQ(criteria.Call("setPeriod", period), Variant());
  EXPECT_EQ(Raised([&] { criteria.Call("setPeriod", criteria); }).Number(), 13);
}

TEST_F(TheComServer, KeepsObjectsOfTheProgramAsLongAsItNeedsThem) {
  Object date = HostObject::Make();
  const std::weak_ptr<Dispatch> target = date.Target();
  Object period = Create("audit.period");
  period.Call("setFrom", date);
  date = Object();
  EXPECT_FALSE(target.expired());
  period = Object();
  EXPECT_TRUE(target.expired());
}

TEST_F(TheComServer, IsRegisteredAndUnregistered) {
  CLSID id;
  EXPECT_EQ(Call("DllRegisterServer"), S_OK);
  EXPECT_EQ(CLSIDFromProgID(L"audit.AuditReader", &id), S_OK);
  EXPECT_EQ(id, orvan::GuidOf("audit.AuditReader"));
  EXPECT_TRUE(ComComponents().Create("audit.AuditReader").object);
  EXPECT_EQ(Call("DllUnregisterServer"), S_OK);
  EXPECT_NE(CLSIDFromProgID(L"audit.AuditReader", &id), S_OK);
}

}  // namespace
}  // namespace qmx::test
