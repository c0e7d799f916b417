#include "platform/system/environment.h"

#include <windows.h>

#include "platform/windows/wide_text.h"

namespace qmx {

std::optional<std::string> EnvironmentVariable(const std::string& name) {
  const std::wstring wideName = WideText(name);
  std::wstring value(256, L'\0');
  for (;;) {
    SetLastError(ERROR_SUCCESS);
    const DWORD length = GetEnvironmentVariableW(wideName.c_str(), value.data(), static_cast<DWORD>(value.size()));
    if (length == 0 && GetLastError() == ERROR_ENVVAR_NOT_FOUND) return std::nullopt;
    const bool fits = length < value.size();
    value.resize(length);
    if (fits) return NarrowText(value);
  }
}

void SetVariable(const std::string& name, const std::string& value) {
  SetEnvironmentVariableW(WideText(name).c_str(), WideText(value).c_str());
}

const char kSearchPathSeparator = ';';

}  // namespace qmx
