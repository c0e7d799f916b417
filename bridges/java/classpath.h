// The classes of a manifest: a class loader for its classpath.
#pragma once

#include <jni.h>

#include <string>
#include <string_view>

#include "settings.h"

namespace java_bridge {

class Classpath {
 public:
  // Starts the JVM where that is still to be done. The manifest that started it uses Java's own class loader, others
  // with another classpath have one each. Lives until the process ends.
  static const Classpath& Of(JNIEnv* env, const Settings& settings);

  // The class to make objects of, as a local reference. `anyCase` allows a name that differs in case. Raises 429 where
  // there is none, or where it cannot have objects.
  jclass Load(JNIEnv* env, const std::string& name, bool anyCase) const;

 private:
  Classpath(JNIEnv* env, const Settings& settings);
  std::string text_;
  jobject loader_;
  jobjectArray paths_;
};

}  // namespace java_bridge
