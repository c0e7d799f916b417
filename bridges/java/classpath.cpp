#include "classpath.h"

#include <filesystem>
#include <map>

#include "calls.h"
#include "inside.h"
#include "jvm.h"

namespace java_bridge {
namespace {

jobjectArray MakePaths(JNIEnv* env, const Settings& settings) {
  const auto count = static_cast<jsize>(settings.classpath.size());
  const auto paths = Required(env, env->NewObjectArray(count, Prepared()->string, nullptr));
  for (jsize i = 0; i < count; ++i) {
    const Local<jstring> path(env, MakeText(env, settings.classpath[static_cast<std::size_t>(i)]));
    env->SetObjectArrayElement(paths, i, path.Get());
    Check(env);
  }
  return paths;
}

}  // namespace

Classpath::Classpath(JNIEnv* env, const Settings& settings) {
  const Frame frame(env, 8);
  const Inside& inside = *Prepared();
  for (const std::string& path : settings.classpath) {
    text_ += (text_.empty() ? "" : ":") + path + (std::filesystem::exists(path) ? "" : " (missing)");
  }
  const jobjectArray paths = MakePaths(env, settings);
  const bool isFirst = settings.Classpath() == Jvm::Classpath();
  const Local<jclass> loaders(env, isFirst ? Required(env, env->FindClass("java/lang/ClassLoader")) : nullptr);
  const jobject loader = isFirst ? CallObject(env, loaders.Get(), inside.systemLoader)
                                 : CallObject(env, inside.classes, inside.loader, static_cast<jobject>(paths));
  Global<> keptLoader(env, loader);
  Global<jobjectArray> keptPaths(env, paths);
  loader_ = keptLoader.Keep();
  paths_ = keptPaths.Keep();
}

const Classpath& Classpath::Of(JNIEnv* env, const Settings& settings) {
  static auto& known = *new std::map<std::string, Classpath>;  // never destroyed
  const std::string key = settings.Classpath();
  const auto found = known.find(key);
  return found != known.end() ? found->second : known.emplace(key, Classpath(env, settings)).first->second;
}

jclass Classpath::Load(JNIEnv* env, const std::string& name, bool anyCase) const {
  const Inside& inside = *Prepared();
  const auto refuse = [&](const std::string& why) {
    throw Failure{QMX_E_CANNOT_CREATE, "the class " + name + " " + why + "; the classpath is " + text_, {}};
  };
  const Local<> text(env, MakeText(env, name));
  const jobject type = CallObject(env, inside.classes, inside.load, loader_, text.Get(), static_cast<jobject>(paths_),
                                  static_cast<jboolean>(anyCase ? JNI_TRUE : JNI_FALSE));
  if (!type) refuse("is not there");
  const Local<> flaw(env, CallObject(env, inside.classes, inside.flaw, type));
  if (flaw) refuse(TextOf(env, static_cast<jstring>(flaw.Get())));
  return static_cast<jclass>(type);
}

}  // namespace java_bridge
