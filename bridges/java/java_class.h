// A Java class as a type of the C interface, with the members that were resolved so far.
#pragma once

#include <jni.h>
#include <qmx/component_server.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace java_bridge {

// How the program treats a value of the class. The numbers are those of Bridge.java.
enum class Kind { Object, Text, Boolean, Character, Integer, Long, Double, BigNumber, Moment, Date, Array, Map };

class JavaClass;

struct Member {
  enum class Way {
    Method,
    HasMoreElements,  // through an Iterator, because the object is no java.util.Enumeration
    NextElement,
    DateField  // of a java.util.Date
  };
  std::string name;  // in the caller's spelling
  Way way = Way::Method;
  jobjectArray methods = nullptr;  // all of that name
  jmethodID getter = nullptr;      // the one without arguments, if there is one
  char result = 'L';  // of the getter: a primitive type's letter, T for a String, U for a Date, L for another object
  const JavaClass* exactResult = nullptr;  // the class of every object that the getter gives, if it is known
  jobject dateGetter = nullptr;            // the getter as Java sees it, for a Date
  bool nullIsValue = false;
  int field = 0;  // of a date, from 0 for the year to 5 for the second
};

class JavaClass : public qmx_type {
 public:
  // Live until the process ends.
  static const JavaClass& OfObject(JNIEnv* env, jobject object);
  static const JavaClass& Of(JNIEnv* env, jclass type);

  Kind GetKind() const { return kind_; }
  const std::string& Name() const { return name_; }
  bool IsStream() const { return isStream_; }

  // Returns the member's id. Raises 438 if the class has no such member.
  std::int32_t Resolve(JNIEnv* env, std::string_view member) const;
  const Member& At(std::int32_t id) const {
    if (static_cast<std::size_t>(id) < members_.size()) return *members_[static_cast<std::size_t>(id)];
    RaiseNoMember(id);
  }

 private:
  JavaClass(JNIEnv* env, jclass type);
  [[noreturn]] void RaiseNoMember(std::int32_t id) const;
  std::unique_ptr<Member> Find(JNIEnv* env, const std::string& name) const;

  jclass type_;
  std::string name_;
  Kind kind_;
  bool isSeveral_;  // an Iterator, an Iterable or a Stream
  bool isStream_;
  mutable std::map<std::string, std::int32_t, std::less<>> ids_;
  mutable std::vector<std::unique_ptr<const Member>> members_;
};

}  // namespace java_bridge
