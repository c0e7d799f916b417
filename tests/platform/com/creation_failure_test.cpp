// Each reason why COM gives no object, as the program shows it.
#include "platform/com/creation_failure.h"

#include <gmock/gmock.h>

#include <cstring>
#include <future>

#include "platform/com/com_components.h"
#include "platform/com/hresult.h"
#include "platform/components/installed_components.h"
#include "tests/platform/com/registered_class.h"
#include "tests/platform/com/stub_component.h"
#include "tests/support/fake_clock.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

constexpr const char* kName = "QmxTest.Manager";

// An error's text begins with it, and has the system's own text behind the number.
std::string Shown(unsigned result) { return DescribeHresult(static_cast<HRESULT>(result)); }

class NoObjectOfCom : public testing::Test {
 protected:
  void ExpectRefusal(const std::string& name, bool isRegistered, const std::string& refusal) {
    const FurtherComponents::Answer answer = components_.Create(name);
    EXPECT_FALSE(answer.object);
    EXPECT_EQ(answer.isRegistered, isRegistered);
    EXPECT_EQ(answer.refusal, refusal);
  }

  // The headers of a library for another processor, without anything else.
  std::string LibraryFor(WORD machine, const char* name = "orvan.dll") {
    std::string bytes(256, '\0');
    IMAGE_DOS_HEADER start{};
    start.e_magic = IMAGE_DOS_SIGNATURE;
    start.e_lfanew = 128;
    std::memcpy(bytes.data(), &start, sizeof start);
    const DWORD signature = IMAGE_NT_SIGNATURE;
    std::memcpy(bytes.data() + 128, &signature, sizeof signature);
    std::memcpy(bytes.data() + 128 + sizeof signature, &machine, sizeof machine);
    WriteFile(folder_ / name, bytes);
    return folder_ / name;
  }

  std::shared_ptr<ComApartment> apartment_ = ComApartment::Enter();
  ComComponents components_;
  TempFolder folder_;
};

TEST_F(NoObjectOfCom, IsThereUnderANameThatIsNotRegistered) {
  ExpectRefusal("QmxTest.Unknown", false,
                "COM: nothing is registered under this name: " + Shown(0x800401F3) +
                    "; register the component for this user or for the machine");
}

TEST_F(NoObjectOfCom, IsThereUnderAPrefixThatIsNotRegistered) {
  ExpectRefusal(
      "qmxnone:java.util.Date", false,
      "COM: nothing is registered under this name, nor under \"qmxnone\", which could make an object of it: " +
          Shown(0x800401F3) + "; register the component for this user or for the machine");
}

TEST_F(NoObjectOfCom, IsThereUnderADrive) {
  ExpectRefusal("c:orvan", false,
                "COM: nothing is registered under this name: " + Shown(0x800401F3) +
                    "; register the component for this user or for the machine");
}

TEST_F(NoObjectOfCom, IsThereIfTheRegisteredClsidIsNone) {
  const RegistryValue broken(std::string(kName) + "\\CLSID", "{5A6B1C52}");
  ExpectRefusal(
      kName, true,
      "COM: the registered CLSID \"{5A6B1C52}\" is none: " + Shown(0x800401F3) + "; register the component again");
}

TEST_F(NoObjectOfCom, IsThereIfTheClassIsNotRegistered) {
  const RegisteredProgId registered(kName);
  ExpectRefusal(kName, true,
                "COM: its class " + registered.ClassText() + " is not registered: " + Shown(0x80040154) +
                    "; register the component again");
}

TEST_F(NoObjectOfCom, IsThereIfTheClassHasNoServer) {
  const RegisteredLibrary registered(kName, "");
  ExpectRefusal(kName, true,
                "COM: its class " + registered.ClassText() + " has no server that can be used: " + Shown(0x80040154) +
                    "; register the component again");
}

TEST_F(NoObjectOfCom, IsThereIfTheClassIsThatOf32BitPrograms) {
  const RegisteredLibrary registered(kName, "C:\\orvan\\orvan.dll", KEY_WOW64_32KEY);
  ExpectRefusal(kName, true,
                "COM: its class " + registered.ClassText() +
                    " is registered for 32-bit programs only: " + Shown(0x80040154) +
                    "; install the 64-bit one, or let it run in a surrogate process (DllSurrogate)");
}

// Windows starts a 32-bit process for a 64-bit program.
TEST_F(NoObjectOfCom, Of32BitProgramsHasTheReasonOfItsProcess) {
  const RegisteredLibrary registered(kName, "C:\\orvan\\orvan.exe", KEY_WOW64_32KEY, "LocalServer32");
  EXPECT_EQ(WhyNoObject(registered.Class(), E_ACCESSDENIED),
            "the creation failed: " + Shown(0x80070005) +
                "; let the program's user launch and activate the component (dcomcnfg)");
  EXPECT_EQ(WhyNoObject(registered.Class(), REGDB_E_CLASSNOTREG),
            "its class " + registered.ClassText() + " has no server that can be used: " + Shown(0x80040154) +
                "; register the component again");
}

TEST_F(NoObjectOfCom, Of32BitProgramsHasTheReasonOfItsSurrogate) {
  const RegisteredLibrary registered(kName, "C:\\orvan\\orvan.dll", KEY_WOW64_32KEY);
  const RegistryValue surrogate("AppID\\{5A6B1C52-0000-0000-0000-000000000001}", "", "DllSurrogate");
  registered.SetValue("AppID", "{5A6B1C52-0000-0000-0000-000000000001}");
  EXPECT_EQ(WhyNoObject(registered.Class(), static_cast<HRESULT>(0x80080005)),
            "the creation failed: " + Shown(0x80080005) +
                "; start its process by hand, and check the component's user (dcomcnfg)");
}

TEST_F(NoObjectOfCom, Of32BitProgramsHasAnotherReasonIfComGivesOne) {
  const RegisteredLibrary registered(kName, "C:\\orvan\\orvan.dll", KEY_WOW64_32KEY);
  EXPECT_EQ(WhyNoObject(registered.Class(), E_FAIL),
            "the creation failed: " + Shown(0x80004005) + "; see the component's own logs");
}

TEST_F(NoObjectOfCom, HasTheReasonsOfAProcessThatDoesNotStart) {
  const RegisteredProgId registered(kName);
  const auto advice = [&](unsigned result) {
    const std::string why = WhyNoObject(registered.Class(), static_cast<HRESULT>(result));
    return why.substr(why.rfind("; ") + 2);
  };
  EXPECT_EQ(advice(0x80070005), "let the program's user launch and activate the component (dcomcnfg)");
  EXPECT_EQ(advice(0x80080005), "start its process by hand, and check the component's user (dcomcnfg)");
  EXPECT_EQ(advice(0x8000401A), "check the component's user and its password (dcomcnfg)");
  EXPECT_EQ(advice(0x80070422), "let the component's service start (services.msc)");
  EXPECT_EQ(advice(0x800706BA), "see the component's own logs");
}

// Windows hides the user's own classes from programs that run as administrator, and Wine from all.
TEST_F(NoObjectOfCom, IsThereIfANameOfTheUserIsHidden) {
  const RegistryValue users(std::string(kName) + "\\CLSID", "{5A6B1C52-0000-0000-0000-000000000002}", "",
                            RegistryValue::Whose::User);
  ExpectRefusal(kName, true,
                "COM: it is registered for this user only, and Windows hides such components from programs that run "
                "as administrator: " +
                    Shown(0x800401F3) + "; register the component for the machine");
}

TEST_F(NoObjectOfCom, IsThereIfAClassOfTheUserIsHidden) {
  const RegisteredProgId registered(kName);
  const RegistryValue users("CLSID\\" + registered.ClassText() + "\\InprocServer32", "oleaut32.dll", "",
                            RegistryValue::Whose::User);
  ExpectRefusal(kName, true,
                "COM: its class " + registered.ClassText() +
                    " is registered for this user only, and Windows hides such components from programs that run as "
                    "administrator: " +
                    Shown(0x80040154) + "; register the component for the machine");
}

TEST_F(NoObjectOfCom, IsThereIfTheUsersClsidIsNone) {
  const RegistryValue broken(std::string(kName) + "\\CLSID", "{5A6B1C52}", "", RegistryValue::Whose::User);
  ExpectRefusal(
      kName, true,
      "COM: the registered CLSID \"{5A6B1C52}\" is none: " + Shown(0x800401F3) + "; register the component again");
}

TEST_F(NoObjectOfCom, OfDotNetHasTheReasonsOfItsRuntime) {
  const std::string host = LibraryFor(IMAGE_FILE_MACHINE_AMD64, "Orvan.ComHost.dll");
  for (const std::string& library : {std::string("mscoree.dll"), host}) {
    const RegisteredLibrary registered(kName, library);
    for (const unsigned result : {0x80070002U, 0x80131522U, 0x80131700U, 0x80008093U, 0x80008096U}) {
      EXPECT_EQ(WhyNoObject(registered.Class(), static_cast<HRESULT>(result)),
                "its .NET library behind " + library + " cannot be used: " + Shown(result) +
                    "; register it again with the 64-bit regasm /codebase, or install the .NET version that it needs");
    }
    EXPECT_EQ(WhyNoObject(registered.Class(), E_FAIL).find(".NET"), std::string::npos);
  }
  const RegisteredLibrary other(kName, "oleaut32.dll");
  EXPECT_EQ(WhyNoObject(other.Class(), static_cast<HRESULT>(0x80070002)).find(".NET"), std::string::npos);
}

TEST_F(NoObjectOfCom, HasTheTextThatTheComponentLeavesWithTheThread) {
  const auto leaveText = [] {
    SetErrorText(L"There is no licence.");
    return ComPtr<IUnknown>();
  };
  const RegisteredClass served(kName, leaveText, E_FAIL);
  ExpectRefusal(kName, true,
                "COM: the creation failed: " + Shown(0x80004005) +
                    "; see the component's own logs (it says: There is no licence.)");
}

TEST_F(NoObjectOfCom, HasNoTextOfAnEarlierFailure) {
  const RegisteredClass served(
      kName, [] { return ComPtr<IUnknown>(); }, E_FAIL);
  SetErrorText(L"An earlier failure.");
  ExpectRefusal(kName, true, "COM: the creation failed: " + Shown(0x80004005) + "; see the component's own logs");
}

TEST_F(NoObjectOfCom, IsThereIfTheLibraryIsMissing) {
  const RegisteredLibrary registered(kName, "C:\\orvan\\orvan.dll");
  ExpectRefusal(
      kName, true,
      "COM: its library C:\\orvan\\orvan.dll is missing: " + Shown(0x80040154) + "; install the component again");
}

TEST_F(NoObjectOfCom, IsThereIfTheLibraryIsA32BitOne) {
  const std::string library = LibraryFor(IMAGE_FILE_MACHINE_I386);
  const RegisteredLibrary registered(kName, library);
  ExpectRefusal(kName, true,
                "COM: its library " + library + " is a 32-bit one: " + Shown(0x80040154) +
                    "; install the 64-bit one, or let it run in a surrogate process (DllSurrogate)");
}

TEST_F(NoObjectOfCom, IsThereIfTheLibraryCannotBeLoaded) {
  const std::string library = LibraryFor(IMAGE_FILE_MACHINE_AMD64);
  const RegisteredLibrary registered(kName, library);
  ExpectRefusal(kName, true,
                "COM: its library " + library + " cannot be used: " + Shown(0x80040154) +
                    "; install the libraries that it needs, then register the component again");
}

// Wine gives 0x80040154 in place of these results.
TEST_F(NoObjectOfCom, HasTheReasonsThatOnlyWindowsGives) {
  const RegisteredLibrary registered(kName, "oleaut32.dll");
  const auto why = [&](unsigned result) { return WhyNoObject(registered.Class(), static_cast<HRESULT>(result)); };
  EXPECT_EQ(why(0x80040111), "its library oleaut32.dll does not serve the class " + registered.ClassText() + ": " +
                                 Shown(0x80040111) + "; install a version of the component that does");
  for (const unsigned result : {0x800401F8U, 0x800401F9U, 0x8007007EU, 0x8007007FU, 0x800700C1U, 0x8007045AU}) {
    EXPECT_EQ(why(result), "its library oleaut32.dll cannot be used: " + Shown(result) +
                               "; install the libraries that it needs, then register the component again");
  }
  EXPECT_EQ(why(0x80070005), "the creation failed: " + Shown(0x80070005) + "; see the component's own logs");
}

TEST_F(NoObjectOfCom, IsThereIfTheComponentFails) {
  const RegisteredClass served(
      kName, [] { return ComPtr<IUnknown>(); }, E_ACCESSDENIED);
  ExpectRefusal(kName, true,
                "COM: the creation failed: " + Shown(0x80070005) +
                    "; let the program's user launch and activate the component (dcomcnfg)");
}

TEST_F(NoObjectOfCom, IsThereIfItCannotBeCalledByName) {
  const RegisteredClass served(kName, ObjectWithoutDispatch);
  ExpectRefusal(kName, true,
                "COM: its object has no IDispatch, so it cannot be called by name: " + Shown(0x80004002) +
                    "; use a component that is made for late binding");
}

TEST_F(NoObjectOfCom, IsThereIfTheComponentSucceedsWithoutOne) {
  const RegisteredClass served(kName, ObjectThatGivesNothing);
  ExpectRefusal(kName, true,
                "COM: the creation succeeded without giving an object; report this to the component's maker");
}

TEST_F(NoObjectOfCom, IsThereIfTheMonikersObjectCannotBeCalledByName) {
  const RegisteredPrefix prefix("qmxtest", [](const std::string&) { return ObjectWithoutDispatch(); });
  ExpectRefusal("qmxtest:java.util.Date", true,
                "COM: its object has no IDispatch, so it cannot be called by name: " + Shown(0x80004002) +
                    "; use a component that is made for late binding");
}

TEST(NoObjectOfComInAnotherApartment, IsThere) {
  auto answer = std::async(std::launch::async, [] {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    ComComponents components;
    const FurtherComponents::Answer given = components.Create(kName);
    CoUninitialize();
    return given;
  });
  const FurtherComponents::Answer given = answer.get();
  EXPECT_FALSE(given.object);
  EXPECT_FALSE(given.isRegistered);
  EXPECT_EQ(given.refusal, "COM: it does not start: " + Shown(0x80010106) +
                               "; a component server has put the program's thread into a multithreaded apartment: let "
                               "it use a thread of its own");
}

// Manifests, COM and the built-in date, in this order.
TEST_F(NoObjectOfCom, IsListedBetweenTheManifestsAndTheDate) {
  const std::string library = folder_ / "missing.dll";
  WriteFile(folder_ / "orvan.component", "library = missing.dll\nprogid = QmxTest.Manager\n");
  FakeClock clock;
  InstalledComponents components(clock, {folder_.Path()}, std::make_unique<ComComponents>());
  const RegisteredLibrary registered(kName, "C:\\orvan\\orvan.dll");
  const Error error = Raised([&] { components.CreateObject(kName); });
  EXPECT_EQ(error.Number(), 429);
  EXPECT_THAT(
      error.Description(),
      testing::AllOf(testing::StartsWith("Cannot create an object of \"QmxTest.Manager\"; " +
                                         (folder_ / "orvan.component") + ", library " + library + ": "),
                     testing::EndsWith("; COM: its library C:\\orvan\\orvan.dll is missing: " + Shown(0x80040154) +
                                       "; install the component again; built-in: only the date. The folders of "
                                       "QMX_COMPONENTS are searched for component manifests.")));
}

TEST_F(NoObjectOfCom, OfTheDateLeavesItToTheBuiltInOneUnlessItIsRegistered) {
  FakeClock clock;
  InstalledComponents components(clock, {}, std::make_unique<ComComponents>());
  EXPECT_TRUE(components.CreateObject("java:java.util.Date"));
  const RegistryValue broken("java:java.util.Date\\CLSID", "none");
  InstalledComponents others(clock, {}, std::make_unique<ComComponents>());
  EXPECT_EQ(Raised([&] { others.CreateObject("java:java.util.Date"); }).Description(),
            "Cannot create an object of \"java:java.util.Date\"; COM: the registered CLSID \"none\" is none: " +
                Shown(0x800401F3) +
                "; register the component again; built-in: not used, because the date is registered. The folders of "
                "QMX_COMPONENTS are searched for component manifests.");
}

}  // namespace
}  // namespace qmx::test
