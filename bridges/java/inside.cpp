#include "inside.h"

#include <iterator>
#include <optional>
#include <utility>

#include "calls.h"
#include "inside_classes.h"

namespace java_bridge {
namespace {

std::optional<Inside> inside;

class Preparation {
 public:
  explicit Preparation(JNIEnv* env) : env_(env), frame_(env, 64) {}

  Inside Run() {
    Inside all{};
    const jclass loaders = Find("java/lang/ClassLoader");
    all.systemLoader = Static(loaders, "getSystemClassLoader", "()Ljava/lang/ClassLoader;");
    const jobject loader = env_->CallStaticObjectMethodA(loaders, all.systemLoader, nullptr);
    Check(env_);
    jclass unused = nullptr;
    // In the order of CMakeLists.txt.
    jclass* const places[] = {&unused, &unused, &all.classes, &all.dates, &all.bridge};
    static_assert(std::size(places) == std::size(kInsideClasses));
    for (std::size_t i = 0; i < std::size(places); ++i) *places[i] = Define(kInsideClasses[i], loader);

    const auto method = [&](const char* name, const char* signature) { return Static(all.bridge, name, signature); };
    all.kindOf = method("kindOf", "(Ljava/lang/Class;)I");
    all.isValue = method("isValue", "(Ljava/lang/Class;)Z");
    all.find = method("find", "(Ljava/lang/Class;Ljava/lang/String;)[Ljava/lang/reflect/Method;");
    all.getter = method("getter", "([Ljava/lang/reflect/Method;)Ljava/lang/reflect/Method;");
    all.choose =
        method("choose", "(Ljava/lang/Object;[Ljava/lang/reflect/Method;[Ljava/lang/Object;)Ljava/lang/Object;");
    all.nullOf = method("nullOf", "(Ljava/lang/reflect/Method;)I");
    all.resultOf = method("resultOf", "(Ljava/lang/reflect/Method;)C");
    all.exactResultOf = method("exactResultOf", "(Ljava/lang/reflect/Method;)Ljava/lang/Class;");
    all.invoke =
        method("invoke", "(Ljava/lang/reflect/Method;Ljava/lang/Object;[Ljava/lang/Object;)Ljava/lang/Object;");
    all.loader = Static(all.classes, "loader", "([Ljava/lang/String;)Ljava/lang/ClassLoader;");
    all.load =
        Static(all.classes, "load", "(Ljava/lang/ClassLoader;Ljava/lang/String;[Ljava/lang/String;Z)Ljava/lang/Class;");
    all.flaw = Static(all.classes, "flaw", "(Ljava/lang/Class;)Ljava/lang/String;");
    all.make = Static(all.classes, "make", "(Ljava/lang/Class;)Ljava/lang/Object;");
    all.version = method("version", "()Ljava/lang/String;");
    all.close = method("close", "(Ljava/lang/Object;)V");
    all.box = method("box", "(IJ)Ljava/lang/Object;");
    all.text = method("text", "(Ljava/lang/Object;)Ljava/lang/String;");
    all.moment = method("moment", "(Ljava/lang/Object;)J");
    all.iterator = method("iterator", "(Ljava/lang/Object;)Ljava/util/Iterator;");
    all.describe = method("describe", "(Ljava/lang/Throwable;)[Ljava/lang/String;");
    all.getDate = Static(all.dates, "get", "(Ljava/lang/reflect/Method;Ljava/lang/Object;I)J");
    all.dateAt = Static(all.dates, "at", "(I)Ljava/lang/Object;");
    all.fields = Static(all.dates, "fields", "(Ljava/util/Date;)J");
    all.makeDate = Static(all.dates, "make", "(IIIIII)Ljava/util/Date;");

    all.typeName = Method("java/lang/Class", "getTypeName", "()Ljava/lang/String;");
    all.booleanValue = Method("java/lang/Boolean", "booleanValue", "()Z");
    all.charValue = Method("java/lang/Character", "charValue", "()C");
    all.intValue = Method("java/lang/Number", "intValue", "()I");
    all.longValue = Method("java/lang/Number", "longValue", "()J");
    all.doubleValue = Method("java/lang/Number", "doubleValue", "()D");
    all.hasNext = Method("java/util/Iterator", "hasNext", "()Z");
    all.next = Method("java/util/Iterator", "next", "()Ljava/lang/Object;");

    // Global references come last, so that a failure before leaves none.
    Global<jclass> object(env_, Find("java/lang/Object")), string(env_, Find("java/lang/String"));
    Global<jclass> memory(env_, Find("java/lang/OutOfMemoryError"));
    Global<jclass> stack(env_, Find("java/lang/StackOverflowError"));
    Global<jclass> date(env_, Find("java/util/Date"));
    Global<jclass> classes(env_, all.classes), dates(env_, all.dates), bridge(env_, all.bridge);
    all.object = object.Keep();
    all.string = string.Keep();
    all.date = date.Keep();
    all.outOfMemory = memory.Keep();
    all.stackOverflow = stack.Keep();
    all.classes = classes.Keep();
    all.dates = dates.Keep();
    all.bridge = bridge.Keep();
    return all;
  }

 private:
  jclass Find(const char* name) { return Required(env_, env_->FindClass(name)); }
  jmethodID Static(jclass type, const char* name, const char* signature) {
    return Required(env_, env_->GetStaticMethodID(type, name, signature));
  }
  jmethodID Method(const char* type, const char* name, const char* signature) {
    return Required(env_, env_->GetMethodID(Find(type), name, signature));
  }

  // An earlier attempt that failed may have defined the class.
  jclass Define(const InsideClass& bytes, jobject loader) {
    if (isRepeated_) {
      if (const jclass known = env_->FindClass(bytes.name)) return known;
      env_->ExceptionClear();
    }
    return Required(env_, env_->DefineClass(bytes.name, loader, reinterpret_cast<const jbyte*>(bytes.data),
                                            static_cast<jsize>(bytes.size)));
  }

  static inline bool hasBegun = false;

  JNIEnv* env_;
  Frame frame_;
  const bool isRepeated_ = std::exchange(hasBegun, true);
};

}  // namespace

const Inside& Prepare(JNIEnv* env) {
  if (!inside) inside = Preparation(env).Run();
  return *inside;
}

const Inside* Prepared() { return inside ? &*inside : nullptr; }

}  // namespace java_bridge
