// The JVM of this process: found, started and let go. There is one, and it is started once.
#pragma once

#include <jni.h>

#include <string>

#include "settings.h"

namespace java_bridge {

class Jvm {
 public:
  // Starts the JVM with the settings, unless it runs. Raises 429 where no JVM can be started, with every place that was
  // tried, and where the one that runs was started with another "jvm" or other options.
  static JNIEnv* Start(const Settings& settings);

  // Null before the start, and from the moment on in which the JVM is let go.
  static JNIEnv* Environment() { return environment_; }

  static const std::string& Library();    // the libjvm.so that runs
  static const std::string& Classpath();  // that it was started with

  // Lets the JVM go, at the process's end. Does not wait longer than two seconds for it: other threads of Java may run
  // on. Nothing happens where Java itself ends the process.
  static void LetGo();

 private:
  static inline JNIEnv* environment_ = nullptr;
};

}  // namespace java_bridge
