// A Java object as an object of the C interface. Keeps it from Java's collector until the last release.
#pragma once

#include <jni.h>
#include <qmx/component_server.h>

#include <cstdint>
#include <optional>
#include <string>

#include "calls.h"
#include "date_place.h"
#include "java_class.h"

namespace java_bridge {

// The functions of every JavaClass.
qmx_type ObjectFunctions();

class JavaObject : public qmx_object {
 public:
  JavaObject(JNIEnv* env, jobject object, const JavaClass& type);
  JavaObject(DatePlace place, std::int64_t fields, const JavaClass& type);  // a java.util.Date that Java holds
  ~JavaObject();
  JavaObject(const JavaObject&) = delete;
  JavaObject& operator=(const JavaObject&) = delete;

  // Null for an object of another server or of the host.
  static JavaObject* From(qmx_object* object);

  jobject Get(JNIEnv* env) { return object_ ? object_ : FromPlace(env); }
  const JavaClass& Class() const { return static_cast<const JavaClass&>(*type); }
  void AddReference() { ++references_; }
  void Release();

  void Call(JNIEnv* env, const Member& member, qmx_value* const* arguments, std::size_t count, qmx_value& result);

 private:
  jobject FromPlace(JNIEnv* env);
  void CallGetter(JNIEnv* env, const Member& member, qmx_value& result);
  void GiveDate(JNIEnv* env, const Member& member, qmx_value& result);
  void CallWithArguments(JNIEnv* env, const Member& member, qmx_value* const* arguments, std::size_t count,
                         qmx_value& result);
  jobject Iterator(JNIEnv* env);
  void Close(JNIEnv* env) noexcept;  // of a Stream
  jint DateField(JNIEnv* env, int field);

  jobject object_ = nullptr;  // for a date in a place from its first need on
  std::optional<DatePlace> place_;
  std::uint32_t references_ = 1;
  std::string text_;            // of the last result
  jobject iterator_ = nullptr;  // for an object with elements that is no java.util.Enumeration

  // The fields of a java.util.Date, read in one call of Java. They are valid until other code runs in Java.
  std::uint64_t fieldsReadAt_ = 0;
  std::int64_t fields_ = 0;
};

}  // namespace java_bridge
