// Finds, starts and destroys the JVM of this process. There is one, and it is started once.
#pragma once

#include <jni.h>

#include <string>

#include "settings.h"

namespace java_bridge {

class Jvm {
 public:
  // Starts the JVM with the settings unless it runs. Raises 429 if no JVM can be started, with every place that was
  // tried, and if the running one was started with another "jvm" or other options.
  static JNIEnv* Start(const Settings& settings);

  // Null before the start and after Java is ended.
  static JNIEnv* Environment() { return environment_; }

  static const std::string& Library();    // the libjvm.so that runs
  static const std::string& Classpath();  // of its start

  // Destroys the JVM at the end of the process. Waits for at most two seconds, because other threads of Java may
  // continue. Does nothing if Java itself ends the process.
  static void LetGo();

 private:
  static inline JNIEnv* environment_ = nullptr;
};

}  // namespace java_bridge
