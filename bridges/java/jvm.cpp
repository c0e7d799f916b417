#include "jvm.h"

#include <dlfcn.h>

#include <chrono>
#include <clocale>
#include <condition_variable>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <thread>

#include "failure.h"
#include "jvm_places.h"

namespace java_bridge {
namespace {

using CreateFunction = jint (*)(JavaVM**, void**, void*);

struct Running {
  JavaVM* vm = nullptr;
  std::thread::id thread;
  std::string library;
  Settings settings;
};
Running& running = *new Running;  // never destroyed: the JVM is destroyed while the process ends

// Collects what the JVM prints while it starts, for the error if it fails.
bool isStarting = false;
std::string& printed = *new std::string;

jint Print(FILE* file, const char* format, va_list arguments) {
  if (file != stdout && file != stderr) return std::vfprintf(file, format, arguments);
  va_list copy;
  va_copy(copy, arguments);
  const int length = isStarting ? std::vsnprintf(nullptr, 0, format, copy) : 0;
  va_end(copy);
  if (!isStarting) return std::vfprintf(stderr, format, arguments);
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  std::vsnprintf(text.data(), text.size(), format, arguments);
  text.pop_back();
  printed += text;
  return length;
}

// If the JVM ends the process while it starts, it has printed the reason.
void ShowPrinted() {
  if (isStarting) std::fputs(printed.c_str(), stderr);
}

std::vector<std::string> Options(const Settings& settings) {
  std::vector<std::string> options = {
      "-Djava.class.path=" + settings.Classpath(),
      "-Xrs",                     // the program handles signals
      "-XX:-MaxFDLimit",          // and keeps its limits
      "-Xshare:auto",             // classes of the JVM come from its archive: it starts in half the time
      "-XX:TieredStopAtLevel=1",  // records are read by short calls: the second compiler costs memory and gains nothing
      "-Xms8m",                   // records die young: without it the heap grows by the machine's memory, unused
  };
  bool choosesCollector = false;
  for (const std::string& option : settings.options) {
    choosesCollector |= option.starts_with("-XX:+Use") && option.ends_with("GC");
  }
  if (!choosesCollector) options.emplace_back("-XX:+UseSerialGC");  // no threads and the least memory
  options.insert(options.end(), settings.options.begin(), settings.options.end());
  return options;
}

std::string MeaningOf(jint result) {
  switch (result) {
    case JNI_EVERSION:
      return "it is too old: Java 11 or newer is needed";
    case JNI_ENOMEM:
      return "it has not enough memory";
    case JNI_EEXIST:
      return "the process has a JVM already, which this library did not start";
    case JNI_EINVAL:
      return "it refuses an option";
    default:
      return "it does not start (result " + std::to_string(result) + ")";
  }
}

// Returns why the JVM of that library does not start; empty if it does, and then `env` is this thread's.
std::string Try(const std::string& library, const Settings& settings, JNIEnv*& env) {
  void* const handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!handle) return dlerror();
  const auto create = reinterpret_cast<CreateFunction>(dlsym(handle, "JNI_CreateJavaVM"));
  if (!create) return "it has no function JNI_CreateJavaVM";

  std::vector<std::string> texts = Options(settings);
  std::string hook = "vfprintf";  // first: the options after it may print
  std::vector<JavaVMOption> options = {{hook.data(), reinterpret_cast<void*>(Print)}};
  for (std::string& text : texts) options.push_back({text.data(), nullptr});
  JavaVMInitArgs arguments{JNI_VERSION_10, static_cast<jint>(options.size()), options.data(), JNI_FALSE};

  const std::string locale = std::setlocale(LC_ALL, nullptr);  // the JVM sets the user's
  printed.clear();
  static const int registered = std::atexit(ShowPrinted);
  (void)registered;
  isStarting = true;
  JavaVM* vm = nullptr;
  void* environment = nullptr;
  const jint result = create(&vm, &environment, &arguments);
  isStarting = false;
  std::setlocale(LC_ALL, locale.c_str());
  if (result != JNI_OK) {
    while (!printed.empty() && printed.back() == '\n') printed.pop_back();
    return MeaningOf(result) + (printed.empty() ? "" : ": " + printed);
  }
  running = {vm, std::this_thread::get_id(), library, settings};
  env = static_cast<JNIEnv*>(environment);
  return {};
}

void RequireSame(const Settings& settings) {
  const Settings& first = running.settings;
  if (settings.jvm == first.jvm && settings.options == first.options) return;
  throw Failure{QMX_E_CANNOT_CREATE,
                "the JVM was started by " + first.manifest +
                    " with other settings \"jvm\" or \"option\"; a process has one JVM: make them the same in both",
                {}};
}

}  // namespace

JNIEnv* Jvm::Start(const Settings& settings) {
  if (environment_) {
    RequireSame(settings);
    return environment_;
  }
  if (running.vm) throw Failure{QMX_E_CANNOT_CREATE, "the process is ending, and its JVM is gone", {}};
  std::string tried;
  for (const std::string& place : JvmPlaces(settings.jvm)) {
    const std::string why = Try(place, settings, environment_);
    if (why.empty()) {
      std::atexit(LetGo);
      return environment_;
    }
    tried.append("; ").append(place).append(": ").append(why);
  }
  throw Failure{QMX_E_CANNOT_CREATE,
                "no JVM can be started" + tried +
                    ". Install default-jre-headless, or name a JVM with \"setting jvm\" or JAVA_HOME",
                {}};
}

const std::string& Jvm::Library() { return running.library; }

const std::string& Jvm::Classpath() {
  static std::string text;
  return text = running.settings.Classpath();
}

void Jvm::LetGo() {
  if (!environment_ || std::this_thread::get_id() != running.thread) return;
  environment_ = nullptr;
  // Fails if Java is on this thread's stack: Java ends the process then, so the JVM must not be destroyed.
  if (running.vm->DetachCurrentThread() != JNI_OK) return;

  struct End {
    std::mutex mutex;
    std::condition_variable changed;
    bool isReached = false;
  };
  try {
    const auto end = std::make_shared<End>();
    std::thread([end, vm = running.vm] {
      vm->DestroyJavaVM();  // waits for Java's threads that are not daemons
      const std::lock_guard lock(end->mutex);
      end->isReached = true;
      end->changed.notify_one();
    }).detach();
    std::unique_lock lock(end->mutex);
    end->changed.wait_for(lock, std::chrono::seconds(2), [&] { return end->isReached; });
  } catch (const std::exception&) {
    return;  // no thread or no memory: the end of the process ends the JVM too
  }
}

}  // namespace java_bridge
