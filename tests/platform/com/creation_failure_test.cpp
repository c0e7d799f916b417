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
  std::string LibraryFor(WORD machine) {
    std::string bytes(256, '\0');
    IMAGE_DOS_HEADER start{};
    start.e_magic = IMAGE_DOS_SIGNATURE;
    start.e_lfanew = 128;
    std::memcpy(bytes.data(), &start, sizeof start);
    const DWORD signature = IMAGE_NT_SIGNATURE;
    std::memcpy(bytes.data() + 128, &signature, sizeof signature);
    std::memcpy(bytes.data() + 128 + sizeof signature, &machine, sizeof machine);
    WriteFile(folder_ / "orvan.dll", bytes);
    return folder_ / "orvan.dll";
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
  wchar_t text[64];
  StringFromGUID2(registered.Class(), text, 64);
  ExpectRefusal(kName, true,
                "COM: its class " + std::filesystem::path(text).string() + " is not registered: " + Shown(0x80040154) +
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
  ExpectRefusal(kName, true, "COM: the creation failed: " + Shown(0x80070005) + "; see the component's own logs");
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
  EXPECT_EQ(Raised([&] { components.CreateObject("java:java.util.Date"); }).Description(),
            "Cannot create an object of \"java:java.util.Date\"; COM: the registered CLSID \"none\" is none: " +
                Shown(0x800401F3) +
                "; register the component again; built-in: not used, because the date is registered. The folders of "
                "QMX_COMPONENTS are searched for component manifests.");
}

}  // namespace
}  // namespace qmx::test
