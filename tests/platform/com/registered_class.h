// Classes that a test registers in COM and serves itself.
#pragma once

#include <oaidl.h>

#include <functional>
#include <memory>
#include <string>

#include "platform/com/com_ptr.h"

namespace qmx::test {

// A ProgID in the registry, with a class that nothing serves. Removed at the end.
class RegisteredProgId {
 public:
  explicit RegisteredProgId(const std::string& progId);
  ~RegisteredProgId();
  RegisteredProgId(const RegisteredProgId&) = delete;
  RegisteredProgId& operator=(const RegisteredProgId&) = delete;

  const CLSID& Class() const { return class_; }
  std::string ClassText() const;  // "{...}"

 private:
  std::wstring progId_;
  CLSID class_{};
};

// A ProgID whose class has its server in a file, which need not exist. Removed at the end.
class RegisteredLibrary {
 public:
  // `view` is KEY_WOW64_32KEY for a class of 32-bit programs. `kind` is LocalServer32 for a program.
  RegisteredLibrary(const std::string& progId, const std::string& file, REGSAM view = 0,
                    const std::string& kind = "InprocServer32");
  ~RegisteredLibrary();
  RegisteredLibrary(const RegisteredLibrary&) = delete;
  RegisteredLibrary& operator=(const RegisteredLibrary&) = delete;

  const CLSID& Class() const { return progId_.Class(); }
  std::string ClassText() const { return progId_.ClassText(); }
  void SetValue(const std::string& name, const std::string& value) const;  // of the class

 private:
  RegisteredProgId progId_;
  REGSAM view_;
};

// Removed at the end.
class RegistryValue {
 public:
  // Whose classes they are. Wine looks for components in the machine's only.
  enum class Whose { Machine, User };

  // A value of a key of the classes; the unnamed one if `name` is empty.
  RegistryValue(const std::string& key, const std::string& value, const std::string& name = {},
                Whose whose = Whose::Machine);
  ~RegistryValue();
  RegistryValue(const RegistryValue&) = delete;
  RegistryValue& operator=(const RegistryValue&) = delete;

 private:
  HKEY classes_ = nullptr;
  std::wstring key_;
};

// Leaves a description of a failure with the thread, as a component does that fails.
void SetErrorText(const wchar_t* text);

using MakeComponent = std::function<ComPtr<IUnknown>()>;
using ParseName = std::function<ComPtr<IUnknown>(const std::string& name)>;

// A class that the test's process serves. With `failure` each creation fails with that result.
class RegisteredClass {
 public:
  RegisteredClass(const std::string& progId, MakeComponent make, HRESULT failure = S_OK);
  ~RegisteredClass();
  RegisteredClass(const RegisteredClass&) = delete;
  RegisteredClass& operator=(const RegisteredClass&) = delete;

 protected:
  RegisteredClass(const std::string& progId, ComPtr<IUnknown> factory);

 private:
  RegisteredProgId progId_;
  DWORD registration_ = 0;
};

// A class that is served from another apartment, as if by a process of its own: over COM's remote calls.
class LocalServer {
 public:
  LocalServer(const std::string& progId, MakeComponent make);
  ~LocalServer();
  LocalServer(const LocalServer&) = delete;
  LocalServer& operator=(const LocalServer&) = delete;

  // Ends the connections to all its objects, as a process does that ends.
  void Disconnect();

 private:
  struct Work;
  RegisteredProgId progId_;
  std::unique_ptr<Work> work_;
  bool isDisconnected_ = false;
};

// A prefix of names, which `parse` makes objects of.
class RegisteredPrefix : public RegisteredClass {
 public:
  RegisteredPrefix(const std::string& prefix, ParseName parse);
};

// A component in an apartment of its own, on another thread.
class OtherApartment {
 public:
  explicit OtherApartment(ComPtr<IUnknown> component);
  ~OtherApartment();
  OtherApartment(const OtherApartment&) = delete;
  OtherApartment& operator=(const OtherApartment&) = delete;

  ComPtr<IDispatch> Unmarshal();  // a proxy for the calling thread, once
  void Disconnect();              // as a component does that ends

 private:
  struct Work;
  std::unique_ptr<Work> work_;
};

}  // namespace qmx::test
