/* A JVM that is older than what it is asked for. */
#include <jni.h>

__attribute__((visibility("default"))) jint JNI_CreateJavaVM(JavaVM** vm, void** env, void* arguments) {
  (void)vm;
  (void)env;
  return ((JavaVMInitArgs*)arguments)->version >= JNI_VERSION_10 ? JNI_EVERSION : JNI_OK;
}
