// The component server: Java classes as components, by the settings of their manifests (settings.h).
#include <qmx/component_server.h>

#include <string>

#include "calls.h"
#include "classpath.h"
#include "inside.h"
#include "java_object.h"
#include "jvm.h"
#include "settings.h"

namespace java_bridge {
namespace {

// A manifest with a running JVM, and the local references of its use.
class Session {
 public:
  explicit Session(const qmx_manifest& manifest)
      : settings_(ReadSettings(manifest)),
        env_(Jvm::Start(settings_)),
        frame_(env_, 16),
        inside_(Prepare(env_)),
        isPattern_(manifest.claim_length > 0 && manifest.claim[manifest.claim_length - 1] == '*') {}

  JNIEnv* Env() const { return env_; }
  const Settings& Given() const { return settings_; }
  const Inside& Java() const { return inside_; }

  jclass Load(std::string_view progId) const {
    return Classpath::Of(env_, settings_).Load(env_, settings_.ClassOf(progId), isPattern_);
  }

 private:
  Settings settings_;
  JNIEnv* env_;
  Frame frame_;
  const Inside& inside_;
  bool isPattern_;
};

qmx_status CreateFor(const qmx_manifest* manifest, const char* progId, std::size_t length, qmx_object** object,
                     qmx_error* error) {
  return Guarded(error, [&] {
    const Session session(*manifest);
    JNIEnv* const env = session.Env();
    const jobject type = session.Load({progId, length});
    const jobject made = CallObject(env, session.Java().classes, session.Java().make, type);
    *object = new JavaObject(env, made, JavaClass::OfObject(env, made));
  });
}

qmx_status Check(const qmx_manifest* manifest, const char* progId, std::size_t length, qmx_error* error) {
  return Guarded(error, [&] { Session(*manifest).Load({progId, length}); });
}

qmx_status Describe(const qmx_manifest* manifest, qmx_fact_sink sink, void* context, qmx_error* error) {
  return Guarded(error, [&] {
    const Session session(*manifest);
    const auto tell = [&](std::string_view name, std::string_view value) {
      sink(context, name.data(), name.size(), value.data(), value.size());
    };
    const jobject version = CallObject(session.Env(), session.Java().bridge, session.Java().version);
    tell("JVM", Jvm::Library());
    tell("version", TextOf(session.Env(), static_cast<jstring>(version)));
    tell("classpath", session.Given().Classpath());
  });
}

qmx_status Create(const char*, std::size_t, qmx_object**, qmx_error* error) {
  return Guarded(error, [] {
    throw Failure{QMX_E_CANNOT_CREATE, "this program is too old to hand settings to the Java bridge", {}};
  });
}

const qmx_component_server kServer = {
    sizeof(qmx_component_server), QMX_ABI_VERSION, Create, "Java bridge", CreateFor, Describe, Check};

}  // namespace
}  // namespace java_bridge

const qmx_component_server* QMX_COMPONENT_SERVER_ENTRY(const qmx_component_host*, qmx_error*) {
  return &java_bridge::kServer;
}
