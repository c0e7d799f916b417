#include "java_class.h"

#include <algorithm>
#include <cctype>
#include <memory>
#include <vector>

#include "calls.h"
#include "inside.h"
#include "java_object.h"

namespace java_bridge {
namespace {

constexpr jint kSeveral = 16;
constexpr jint kStream = 32;

bool SameName(std::string_view one, std::string_view other) {
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
}

std::string TypeName(JNIEnv* env, jclass type) {
  const auto name = static_cast<jstring>(env->CallObjectMethodA(type, Prepared()->typeName, nullptr));
  Check(env);
  return TextOf(env, Required(env, name));
}

}  // namespace

JavaClass::JavaClass(JNIEnv* env, jclass type) : qmx_type(ObjectFunctions()) {
  const Inside& inside = *Prepared();
  const jint kind = CallInt(env, inside.bridge, inside.kindOf, static_cast<jobject>(type));
  kind_ = static_cast<Kind>(kind & ~(kSeveral | kStream));
  isSeveral_ = (kind & kSeveral) != 0;
  isStream_ = (kind & kStream) != 0;
  name_ = TypeName(env, type);
  type_ = Global<jclass>(env, type).Keep();
  name = name_.c_str();
}

const JavaClass& JavaClass::OfObject(JNIEnv* env, jobject object) {
  const Local<jclass> type(env, env->GetObjectClass(object));
  return Of(env, type.Get());
}

const JavaClass& JavaClass::Of(JNIEnv* env, jclass type) {
  // The classes of the last objects come first. Never destroyed: objects may be released while the process ends.
  static auto& classes = *new std::vector<std::unique_ptr<JavaClass>>;
  for (std::size_t i = 0; i < classes.size(); ++i) {
    if (env->IsSameObject(type, classes[i]->type_) != JNI_TRUE) continue;
    if (i > 0) std::swap(classes[i], classes[i - 1]);
    return *classes[i > 0 ? i - 1 : 0];
  }
  const Frame frame(env, 8);
  classes.push_back(std::unique_ptr<JavaClass>(new JavaClass(env, type)));
  return *classes.back();
}

std::int32_t JavaClass::Resolve(JNIEnv* env, std::string_view member) const {
  if (const auto known = ids_.find(member); known != ids_.end()) return known->second;
  const Frame frame(env, 16);
  members_.push_back(Find(env, std::string(member)));
  return ids_[std::string(member)] = static_cast<std::int32_t>(members_.size() - 1);
}

void JavaClass::RaiseNoMember(std::int32_t id) const {
  throw Failure{QMX_E_NO_SUCH_MEMBER, "No member of " + name_ + " has the id " + std::to_string(id) + ".", {}};
}

std::unique_ptr<Member> JavaClass::Find(JNIEnv* env, const std::string& name) const {
  const Inside& inside = *Prepared();
  auto found = std::make_unique<Member>();
  Member& member = *found;
  member.name = name;
  const auto methods =
      static_cast<jobjectArray>(Required(env, CallObject(env, inside.bridge, inside.find, static_cast<jobject>(type_),
                                                         static_cast<jobject>(MakeText(env, name)))));
  if (env->GetArrayLength(methods) == 0) {
    const bool asksForMore = SameName(name, "hasMoreElements");
    if (isSeveral_ && (asksForMore || SameName(name, "nextElement"))) {
      member.way = asksForMore ? Member::Way::HasMoreElements : Member::Way::NextElement;
      return found;
    }
    throw Failure{QMX_E_NO_SUCH_MEMBER, "The class " + name_ + " has no public method " + name + ".", {}};
  }
  if (kind_ == Kind::Date) {
    static constexpr std::string_view kFields[] = {"getYear",  "getMonth",   "getDate",
                                                   "getHours", "getMinutes", "getSeconds"};
    for (int i = 0; i < 6; ++i) {
      if (!SameName(name, kFields[i])) continue;
      member.way = Member::Way::DateField;
      member.field = i;
    }
  }
  if (const jobject getter = CallObject(env, inside.bridge, inside.getter, static_cast<jobject>(methods))) {
    member.result = static_cast<char>(CallChar(env, inside.bridge, inside.resultOf, getter));
    member.nullIsValue = CallInt(env, inside.bridge, inside.nullOf, getter) == 1;
    member.getter = Required(env, env->FromReflectedMethod(getter));
    if (member.result == 'U') member.dateGetter = Global<>(env, getter).Keep();
    const jobject exact = CallObject(env, inside.bridge, inside.exactResultOf, getter);
    if (exact) member.exactResult = &Of(env, static_cast<jclass>(exact));
  }
  member.methods = Global<jobjectArray>(env, methods).Keep();
  return found;
}

}  // namespace java_bridge
