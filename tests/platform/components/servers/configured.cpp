// A server that shows what its manifest gave it. "given" answers path, claim, ProgID and settings of the manifest that
// made the object; "fail" fails with details. It finds every ProgID but those with "Missing" in them.
#include <qmx/component_server.h>

#include <string>

namespace {

std::string Text(const char* data, std::size_t length) { return {data, length}; }

qmx_status Fail(qmx_error* error, std::int32_t number, const std::string& description, const std::string& details) {
  static std::string texts[2];
  texts[0] = description;
  texts[1] = details;
  error->number = number;
  error->source = "Configured";
  error->source_length = 10;
  error->description = texts[0].data();
  error->description_length = texts[0].size();
  if (QMX_HAS(error, details_length)) {
    error->details = texts[1].data();
    error->details_length = texts[1].size();
  }
  return QMX_FAILED;
}

extern const qmx_type configuredType;

struct Configured : qmx_object {
  explicit Configured(std::string what) : qmx_object{sizeof(qmx_object), 0, &configuredType}, given(std::move(what)) {}
  int references = 1;
  std::string given;
};

qmx_status Resolve(qmx_object*, const char* name, std::size_t length, std::int32_t* id, qmx_error*) {
  *id = Text(name, length) == "fail" ? 1 : 0;
  return QMX_OK;
}

qmx_status Invoke(qmx_object* object, std::int32_t id, qmx_value* const*, std::size_t, qmx_value* result,
                  qmx_error* error) {
  if (id == 1) return Fail(error, 1017, "The ERP is closed.", "first line\n  second line");
  const Configured& self = *static_cast<Configured*>(object);
  result->kind = QMX_TEXT;
  result->as.text.data = self.given.data();
  result->as.text.length = self.given.size();
  return QMX_OK;
}

void AddReference(qmx_object* object) { ++static_cast<Configured*>(object)->references; }
void Release(qmx_object* object) {
  if (--static_cast<Configured*>(object)->references == 0) delete static_cast<Configured*>(object);
}

const qmx_type configuredType = {sizeof(qmx_type), 0, Resolve, Invoke, AddReference, Release, "configured type"};

qmx_status Check(const qmx_manifest* manifest, const char* progId, std::size_t length, qmx_error* error) {
  const std::string name = Text(progId, length);
  if (name.find("Missing") == std::string::npos) return QMX_OK;
  return Fail(error, QMX_E_CANNOT_CREATE, "No " + name + " is there.", Text(manifest->path, manifest->path_length));
}

qmx_status CreateFor(const qmx_manifest* manifest, const char* progId, std::size_t length, qmx_object** object,
                     qmx_error* error) {
  if (Check(manifest, progId, length, error) != QMX_OK) return QMX_FAILED;
  std::string given = Text(manifest->path, manifest->path_length) + "|" +
                      Text(manifest->claim, manifest->claim_length) + "|" + Text(progId, length);
  for (std::size_t i = 0; i < manifest->setting_count; ++i) {
    const qmx_setting& setting = *manifest->settings[i];
    given += "|" + Text(setting.name, setting.name_length) + "=" + Text(setting.value, setting.value_length);
  }
  *object = new Configured(given);
  return QMX_OK;
}

qmx_status Describe(const qmx_manifest* manifest, qmx_fact_sink sink, void* context, qmx_error* error) {
  if (manifest->setting_count == 0) return Fail(error, 1, "No ERP is set.", "");
  const qmx_setting& first = *manifest->settings[0];
  sink(context, "version", 7, "1.5", 3);
  sink(context, first.name, first.name_length, first.value, first.value_length);
  return QMX_OK;
}

// `create` is for hosts of before settings.
qmx_status Create(const char*, std::size_t, qmx_object** object, qmx_error*) {
  *object = new Configured("nothing");
  return QMX_OK;
}

const qmx_component_server kServer = {
    sizeof(qmx_component_server), QMX_ABI_VERSION, Create, "configured", CreateFor, Describe, Check};

}  // namespace

const qmx_component_server* QMX_COMPONENT_SERVER_ENTRY(const qmx_component_host*, qmx_error*) { return &kServer; }
