// The classes of a manifest: a class loader for its classpath.
#pragma once

#include <jni.h>

#include <string>
#include <string_view>

#include "settings.h"

namespace java_bridge {

class Classpath {
 public:
  // Starts the JVM unless it runs. The manifest that started it uses Java's own class loader, and each other classpath
  // has a class loader of its own. Lives until the process ends.
  static const Classpath& Of(JNIEnv* env, const Settings& settings);

  // Returns the class to create objects of, as a local reference. `anyCase` allows a name that differs in case. Raises
  // 429 if there is none, or if it cannot have objects.
  jclass Load(JNIEnv* env, const std::string& name, bool anyCase) const;

 private:
  Classpath(JNIEnv* env, const Settings& settings);
  std::string text_;
  jobject loader_;
  jobjectArray paths_;
};

}  // namespace java_bridge
