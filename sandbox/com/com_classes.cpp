#include "com/com_classes.h"

#include <map>

#include "binding/guard.h"
#include "com/clients_object.h"
#include "com/guid.h"
#include "com/manifests.h"
#include "com/values.h"

namespace orvan {
namespace {

// Creates objects of other COM classes for servers.
qmx_status CreateForServer(const char* progId, std::size_t length, qmx_object** object, qmx_error* error) {
  return Guarded(error, [&] {
    CLSID id;
    IDispatch* created = nullptr;
    HRESULT result = CLSIDFromProgID(Wide(progId, length).c_str(), &id);
    if (SUCCEEDED(result)) {
      result = CoCreateInstance(id, nullptr, CLSCTX_ALL, IID_IDispatch, reinterpret_cast<void**>(&created));
    }
    if (FAILED(result))
      throw Failure(QMX_E_CANNOT_CREATE, "Sandbox",
                    "COM creates no object of \"" + std::string(progId, length) + "\".");
    *object = MakeClientsObject(created);
    created->Release();
  });
}

const qmx_component_host kHost = {sizeof(qmx_component_host), QMX_ABI_VERSION, CreateForServer};

[[noreturn]] void Refuse(const std::filesystem::path& library, const char* why) {
  throw Failure(QMX_E_CANNOT_CREATE, "Sandbox", "The component server " + library.string() + " " + why + ".");
}

const qmx_component_server& Load(const std::filesystem::path& library) {
  static std::map<std::filesystem::path, const qmx_component_server*> loaded;
  const qmx_component_server*& server = loaded[library];
  if (server) return *server;
  const HMODULE module = LoadLibraryExW(library.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (!module) Refuse(library, "cannot be loaded");
  const auto entry = reinterpret_cast<qmx_component_server_entry_function>(
      reinterpret_cast<void*>(GetProcAddress(module, QMX_COMPONENT_SERVER_ENTRY_NAME)));
  if (!entry) Refuse(library, "has no entry function");
  qmx_error error{};
  error.struct_size = sizeof error;
  server = entry(&kHost, &error);
  if (!server) Refuse(library, "cannot work");
  return *server;
}

}  // namespace

std::filesystem::path ThisLibrary() {
  HMODULE module = nullptr;
  // Pinned, because the servers' types live until the process ends.
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                     reinterpret_cast<const wchar_t*>(&kHost), &module);
  std::wstring path(MAX_PATH, L'\0');
  DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
  while (length == path.size()) {
    path.resize(path.size() * 2);
    length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
  }
  path.resize(length);
  return path;
}

const std::vector<ComClass>& ComClasses() {
  static const std::vector<ComClass> classes = [] {
    std::vector<ComClass> found;
    for (const ServedLibrary& served : ReadManifests(ThisLibrary().parent_path())) {
      for (const std::string& progId : served.progIds) found.push_back({GuidOf(progId), progId, served.library});
    }
    return found;
  }();
  return classes;
}

qmx_object* Create(const ComClass& served) {
  const qmx_component_server& server = Load(served.library);
  qmx_object* object = nullptr;
  qmx_error error{};
  error.struct_size = sizeof error;
  if (server.create(served.progId.data(), served.progId.size(), &object, &error) != QMX_OK || !object)
    throw Failure(error.number, "Sandbox", std::string(error.description, error.description_length));
  return object;
}

}  // namespace orvan
