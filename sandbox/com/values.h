// Converts values between COM and the C interface of component servers.
#pragma once

#include <oaidl.h>
#include <oleauto.h>

#include <string>

#include "qmx/component_server.h"

namespace orvan {

std::string Utf8(const wchar_t* text, std::size_t length);
std::string Utf8(const wchar_t* text);  // zero-terminated
std::wstring Wide(const char* text, std::size_t length);
BSTR NewBstr(const char* text, std::size_t length);

// An argument of COM as an argument for a server. Keeps what the server borrows. Throws a Failure for a type that the C
// interface does not have.
class ServersArgument {
 public:
  explicit ServersArgument(VARIANT& given);
  ~ServersArgument();
  ServersArgument(const ServersArgument&) = delete;
  ServersArgument& operator=(const ServersArgument&) = delete;

  qmx_value* Get() { return &value_; }

  // Stores what the server wrote into the variable that was given by reference. Throws a Failure if it does not fit.
  void WriteBack();

 private:
  void Fill(const VARIANT& content);

  VARIANT& given_;
  std::string text_;
  qmx_value value_{};
  qmx_value before_{};
  qmx_object* lent_ = nullptr;  // released at the end
};

// Stores a server's result, and takes over the reference to an object. `out` must hold nothing that needs clearing.
void ToCom(const qmx_value& value, VARIANT& out);

}  // namespace orvan
