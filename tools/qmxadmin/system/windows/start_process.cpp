#include "tools/qmxadmin/system/windows/start_process.h"

#include <algorithm>
#include <memory>

#include "platform/error.h"
#include "platform/windows/handle.h"
#include "platform/windows/wide_text.h"

namespace qmx {
namespace {

bool SameVariable(std::wstring_view a, std::wstring_view b) {
  return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(), static_cast<int>(b.size()), TRUE) ==
         CSTR_EQUAL;
}

// The name may begin with "=", as those of the drives' current folders do.
std::wstring_view NameOf(std::wstring_view entry) { return entry.substr(0, entry.find(L'=', 1)); }

// Entries "NAME=value", each with a final NUL, and one NUL more.
std::wstring EnvironmentWith(const std::vector<ChildProcess::Variable>& variables) {
  std::wstring environment;
  std::vector<std::wstring> names;
  for (const auto& [name, value] : variables) {
    names.push_back(WideText(name));
    environment += names.back() + L"=" + WideText(value) + L'\0';
  }
  wchar_t* const own = GetEnvironmentStringsW();
  for (const wchar_t* entry = own; entry && *entry; entry += std::wcslen(entry) + 1) {
    const bool isReplaced = std::any_of(names.begin(), names.end(),
                                        [&](const std::wstring& name) { return SameVariable(name, NameOf(entry)); });
    if (!isReplaced) environment.append(entry).push_back(L'\0');
  }
  FreeEnvironmentStringsW(own);
  return environment + L'\0';
}

// The list of the handles that a process inherits.
class InheritedHandles {
 public:
  explicit InheritedHandles(std::vector<HANDLE> handles) : handles_(std::move(handles)) {
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    memory_.resize(size);
    areListed_ = InitializeProcThreadAttributeList(List(), 1, 0, &size) &&
                 UpdateProcThreadAttribute(List(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles_.data(),
                                           handles_.size() * sizeof(HANDLE), nullptr, nullptr);
  }
  ~InheritedHandles() { DeleteProcThreadAttributeList(List()); }
  InheritedHandles(const InheritedHandles&) = delete;
  InheritedHandles& operator=(const InheritedHandles&) = delete;

  bool AreListed() const { return areListed_; }
  LPPROC_THREAD_ATTRIBUTE_LIST List() { return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.data()); }

 private:
  std::vector<HANDLE> handles_;
  std::vector<char> memory_;
  bool areListed_ = false;
};

}  // namespace

PROCESS_INFORMATION StartProcess(const Start& start) {
  SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  const Handle nothing(CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                   &inheritable, OPEN_EXISTING, 0, nullptr));
  const HANDLE output = start.output ? start.output : nothing.Get();
  std::vector<HANDLE> handles = {nothing.Get(), start.inherited};
  if (start.output) handles.push_back(start.output);
  InheritedHandles inherited(std::move(handles));
  if (!inherited.AreListed()) return {};  // without the list, the process would inherit every inheritable handle

  STARTUPINFOEXW startup{};
  startup.StartupInfo.cb = sizeof startup;
  startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
  startup.StartupInfo.hStdInput = nothing.Get();
  startup.StartupInfo.hStdOutput = output;
  startup.StartupInfo.hStdError = output;
  startup.lpAttributeList = inherited.List();
  std::wstring commandLine = start.commandLine;  // CreateProcessW may write into it
  std::wstring environment = EnvironmentWith(start.variables);
  PROCESS_INFORMATION process{};
  const DWORD flags = start.flags | CREATE_UNICODE_ENVIRONMENT | EXTENDED_STARTUPINFO_PRESENT;
  if (!CreateProcessW(start.program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, flags, environment.data(),
                      nullptr, &startup.StartupInfo, &process))
    return {};
  CloseHandle(process.hThread);
  return process;
}

InheritablePipe::InheritablePipe() {
  SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  if (!CreatePipe(&reader, &writer, &inheritable, 0))
    throw Error(errors::kDeviceIo, "qmxadmin", "No pipe can be created.");
  SetHandleInformation(reader, HANDLE_FLAG_INHERIT, 0);
}

void InheritablePipe::CloseWriter() { CloseHandle(writer); }

// A program reads "\" as an escape only before a quote.
std::wstring Quoted(std::wstring_view word) {
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t c : word) {
    if (c == L'"') quoted.append(backslashes + 1, L'\\');
    backslashes = c == L'\\' ? backslashes + 1 : 0;
    quoted += c;
  }
  return quoted.append(backslashes, L'\\') + L"\"";
}

}  // namespace qmx
