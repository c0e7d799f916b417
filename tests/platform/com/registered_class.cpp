#include "tests/platform/com/registered_class.h"

#include <gtest/gtest.h>
#include <objbase.h>

#include <chrono>
#include <future>
#include <thread>
#include <vector>

#include "platform/com/bstr.h"

namespace qmx::test {
namespace {

class Factory final : public IClassFactory, public IParseDisplayName {
 public:
  Factory(MakeComponent make, HRESULT failure, ParseName parse)
      : make_(std::move(make)), failure_(failure), parse_(std::move(parse)) {}
  virtual ~Factory() = default;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IClassFactory)) *object = static_cast<IClassFactory*>(this);
    if (IsEqualIID(id, IID_IParseDisplayName) && parse_) *object = static_cast<IParseDisplayName*>(this);
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** object) override {
    const ComPtr<IUnknown> made = make_ ? make_() : ComPtr<IUnknown>();
    return FAILED(failure_) ? failure_ : made->QueryInterface(id, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

  HRESULT STDMETHODCALLTYPE ParseDisplayName(IBindCtx*, LPOLESTR name, ULONG* eaten, IMoniker** moniker) override {
    *eaten = static_cast<ULONG>(std::wcslen(name));
    return CreatePointerMoniker(parse_(Utf8(name)).Get(), moniker);
  }

 private:
  ULONG references_ = 1;
  MakeComponent make_;
  HRESULT failure_;
  ParseName parse_;
};

ComPtr<IUnknown> MakeFactory(MakeComponent make, HRESULT failure, ParseName parse) {
  return ComPtr<IUnknown>::Owning(static_cast<IClassFactory*>(new Factory(std::move(make), failure, std::move(parse))));
}

// Waits, and lets calls of another apartment's objects to this thread's pass, such as releases.
template <typename Value>
Value Awaited(std::future<Value> future) {
  while (future.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready) {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  }
  return future.get();
}

std::wstring TextOf(const CLSID& id) {
  wchar_t text[64];
  StringFromGUID2(id, text, 64);
  return text;
}

void SetValueOf(HKEY root, const std::wstring& key, const std::wstring& name, const std::wstring& value,
                REGSAM view = 0) {
  HKEY made = nullptr;
  EXPECT_EQ(RegCreateKeyExW(root, key.c_str(), 0, nullptr, 0, KEY_WRITE | view, nullptr, &made, nullptr),
            ERROR_SUCCESS);
  EXPECT_EQ(RegSetValueExW(made, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                           static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t))),
            ERROR_SUCCESS);
  RegCloseKey(made);
}

// Wine looks for classes in HKEY_CLASSES_ROOT only, and not at the user's own.
void SetClassesValue(const std::wstring& key, const std::wstring& value, REGSAM view = 0) {
  SetValueOf(HKEY_CLASSES_ROOT, key, L"", value, view);
}

}  // namespace

RegistryValue::RegistryValue(const std::string& key, const std::string& value, const std::string& name, Whose whose)
    : key_(Wide(key)) {
  if (whose == Whose::Machine) {
    classes_ = HKEY_CLASSES_ROOT;
  } else {
    EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Classes", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                              &classes_, nullptr),
              ERROR_SUCCESS);
  }
  SetValueOf(classes_, key_, Wide(name), Wide(value));
}

RegistryValue::~RegistryValue() {
  RegDeleteTreeW(classes_, key_.c_str());
  if (classes_ != HKEY_CLASSES_ROOT) RegCloseKey(classes_);
}

RegisteredProgId::RegisteredProgId(const std::string& progId) : progId_(Wide(progId)) {
  EXPECT_EQ(CoCreateGuid(&class_), S_OK);
  SetClassesValue(progId_ + L"\\CLSID", TextOf(class_));
}

RegisteredProgId::~RegisteredProgId() { RegDeleteTreeW(HKEY_CLASSES_ROOT, progId_.c_str()); }

std::string RegisteredProgId::ClassText() const { return Utf8(TextOf(class_)); }

RegisteredLibrary::RegisteredLibrary(const std::string& progId, const std::string& file, REGSAM view,
                                     const std::string& kind)
    : progId_(progId), view_(view) {
  SetClassesValue(L"CLSID\\" + TextOf(progId_.Class()) + L"\\" + Wide(kind), Wide(file), view);
}

void RegisteredLibrary::SetValue(const std::string& name, const std::string& value) const {
  SetValueOf(HKEY_CLASSES_ROOT, L"CLSID\\" + TextOf(progId_.Class()), Wide(name), Wide(value), view_);
}

RegisteredLibrary::~RegisteredLibrary() {
  HKEY classes = nullptr;
  if (RegOpenKeyExW(HKEY_CLASSES_ROOT, L"CLSID", 0, KEY_ALL_ACCESS | view_, &classes) != ERROR_SUCCESS) return;
  RegDeleteTreeW(classes, TextOf(progId_.Class()).c_str());
  RegCloseKey(classes);
}

void SetErrorText(const wchar_t* text) {
  ComPtr<ICreateErrorInfo> made;
  EXPECT_EQ(CreateErrorInfo(made.Receiver()), S_OK);
  std::wstring description = text;
  EXPECT_EQ(made->SetDescription(description.data()), S_OK);
  ComPtr<IErrorInfo> information;
  EXPECT_EQ(made->QueryInterface(IID_IErrorInfo, information.UntypedReceiver()), S_OK);
  EXPECT_EQ(SetErrorInfo(0, information.Get()), S_OK);
}

RegisteredClass::RegisteredClass(const std::string& progId, MakeComponent make, HRESULT failure)
    : RegisteredClass(progId, MakeFactory(std::move(make), failure, {})) {}

RegisteredClass::RegisteredClass(const std::string& progId, ComPtr<IUnknown> factory) : progId_(progId) {
  EXPECT_EQ(
      CoRegisterClassObject(progId_.Class(), factory.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &registration_),
      S_OK);
}

RegisteredClass::~RegisteredClass() { CoRevokeClassObject(registration_); }

RegisteredPrefix::RegisteredPrefix(const std::string& prefix, ParseName parse)
    : RegisteredClass(prefix, MakeFactory({}, E_FAIL, std::move(parse))) {}

struct OtherApartment::Work {
  ComPtr<IUnknown> component;
  IStream* stream = nullptr;
  std::promise<HRESULT> marshalled;
  std::promise<void> mayDisconnect;
  std::promise<HRESULT> disconnected;
  std::promise<void> mayEnd;
  std::promise<void> ended;
  bool isDisconnected = false;
  std::thread thread;

  void Run() {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    marshalled.set_value(CoMarshalInterThreadInterfaceInStream(IID_IDispatch, component.Get(), &stream));
    mayDisconnect.get_future().wait();
    disconnected.set_value(CoDisconnectObject(component.Get(), 0));
    mayEnd.get_future().wait();
    component = {};
    CoUninitialize();
    ended.set_value();
  }
};

OtherApartment::OtherApartment(ComPtr<IUnknown> component) : work_(std::make_unique<Work>()) {
  work_->component = std::move(component);
  work_->thread = std::thread([this] { work_->Run(); });
  EXPECT_EQ(Awaited(work_->marshalled.get_future()), S_OK);
}

OtherApartment::~OtherApartment() {
  if (!work_->isDisconnected) Disconnect();
  work_->mayEnd.set_value();
  Awaited(work_->ended.get_future());
  work_->thread.join();
}

ComPtr<IDispatch> OtherApartment::Unmarshal() {
  ComPtr<IDispatch> proxy;
  EXPECT_EQ(CoGetInterfaceAndReleaseStream(work_->stream, IID_IDispatch, proxy.UntypedReceiver()), S_OK);
  return proxy;
}

void OtherApartment::Disconnect() {
  work_->isDisconnected = true;
  work_->mayDisconnect.set_value();
  EXPECT_EQ(Awaited(work_->disconnected.get_future()), S_OK);
}

struct LocalServer::Work {
  CLSID id;
  MakeComponent make;
  std::vector<ComPtr<IUnknown>> made;
  std::promise<HRESULT> registered;
  std::promise<void> mayDisconnect, disconnected, mayEnd, ended;
  std::thread thread;

  void Run() {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    const auto makeAndKeep = [this] {
      made.push_back(make());
      return made.back();
    };
    const ComPtr<IUnknown> factory = MakeFactory(makeAndKeep, S_OK, {});
    DWORD registration = 0;
    registered.set_value(
        CoRegisterClassObject(id, factory.Get(), CLSCTX_LOCAL_SERVER, REGCLS_MULTIPLEUSE, &registration));
    mayDisconnect.get_future().wait();
    CoRevokeClassObject(registration);
    for (const ComPtr<IUnknown>& object : made) CoDisconnectObject(object.Get(), 0);
    disconnected.set_value();
    mayEnd.get_future().wait();
    made.clear();
    CoUninitialize();
    ended.set_value();
  }
};

LocalServer::LocalServer(const std::string& progId, MakeComponent make)
    : progId_(progId), work_(std::make_unique<Work>()) {
  work_->id = progId_.Class();
  work_->make = std::move(make);
  work_->thread = std::thread([this] { work_->Run(); });
  EXPECT_EQ(Awaited(work_->registered.get_future()), S_OK);
}

LocalServer::~LocalServer() {
  Disconnect();
  work_->mayEnd.set_value();
  Awaited(work_->ended.get_future());
  work_->thread.join();
}

void LocalServer::Disconnect() {
  if (isDisconnected_) return;
  isDisconnected_ = true;
  work_->mayDisconnect.set_value();
  Awaited(work_->disconnected.get_future());
}

}  // namespace qmx::test
