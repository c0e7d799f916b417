// A component server that ends or halts the process at a chosen call. Every object of it is the same one: a manager of
// forty service types, their listing, their records, the audit trail in which each of them was updated, and both
// components of the scheduling server.
//
// QMX_TEST_AT=MEMBER says at which member, QMX_TEST_CALL=N at which call of it (else the first), and QMX_TEST_DO what:
// "exit N", "exit N on a thread", "quick_exit N", "quick_exit N on a thread", "_exit N", "raise N", "fault",
// "overflow", "error_mode", or "wait FOLDER": make FOLDER/reached and return when there is FOLDER/go.
#include <qmx/component_server.h>
#include <strings.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "error_mode.h"
#include "quick_exit.h"

namespace {

constexpr int kRecords = 40;

std::string Environment(const char* name) {
  const char* const value = std::getenv(name);
  return value ? value : "";
}

int Overflow(int depth);
int (*volatile overflowAgain)(int) = Overflow;  // the compiler must not make a loop of the calls

// Each call wants a page of its own.
int Overflow(int depth) {
  volatile char page[4096];
  page[depth % 4096] = 1;
  return depth < 0 ? 0 : overflowAgain(depth + 1) + page[0];
}

void WaitIn(const std::filesystem::path& folder) {
  std::ofstream(folder / "reached") << "";
  while (!std::filesystem::exists(folder / "go")) std::this_thread::sleep_for(std::chrono::milliseconds(5));
}

void Do(const std::string& what) {
  const std::string word = what.substr(0, what.find(' '));
  const std::string rest = what.substr(std::min(what.size(), word.size() + 1));
  const int number = std::atoi(rest.c_str());
  if (word == "wait") return WaitIn(rest);
  if (word == "exit" && what.ends_with("on a thread")) std::thread([number] { std::exit(number); }).join();
  if (word == "exit") std::exit(number);
  if (word == "quick_exit" && what.ends_with("on a thread")) std::thread([number] { EndQuickly(number); }).join();
  if (word == "quick_exit") EndQuickly(number);
  if (word == "_exit") _exit(number);
  if (word == "raise") raise(number);
  if (word == "error_mode") std::fprintf(stderr, "error mode %u\n", ErrorMode());
  if (word == "fault") *static_cast<volatile int*>(nullptr) = 1;
  if (word == "overflow") Overflow(0);
}

bool SameName(std::string_view a, std::string_view b) {
  return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

void DoWhatTheTestWants(const std::string& member) {
  static const std::string at = Environment("QMX_TEST_AT");
  static const std::string what = Environment("QMX_TEST_DO");
  static int callsBefore = std::max(1, std::atoi(Environment("QMX_TEST_CALL").c_str()));
  if (SameName(member, at) && --callsBefore == 0) Do(what);
}

extern const qmx_type kType;
qmx_object theObject = {sizeof(qmx_object), 0, &kType};
int listed = 0;
std::string text;  // of the last result

void Give(qmx_value* result, bool value) {
  result->kind = QMX_BOOLEAN;
  result->as.boolean = value ? 1 : 0;
}

void Give(qmx_value* result, std::string value) {
  text = std::move(value);
  result->kind = QMX_TEXT;
  result->as.text.data = text.data();
  result->as.text.length = text.size();
}

std::vector<std::string>& Members() {
  static std::vector<std::string> members;
  return members;
}

qmx_status Resolve(qmx_object*, const char* name, size_t length, int32_t* id, qmx_error*) {
  *id = static_cast<int32_t>(Members().size());
  Members().emplace_back(name, length);
  return QMX_OK;
}

qmx_status Invoke(qmx_object* object, int32_t id, qmx_value* const*, size_t, qmx_value* result, qmx_error*) {
  const std::string& member = Members()[static_cast<size_t>(id)];
  DoWhatTheTestWants(member);
  if (member == "hasMoreElements") Give(result, listed < kRecords);
  if (member == "isUpdated") Give(result, true);
  if (member == "isDeleted" || member == "isInserted") Give(result, false);
  if (member == "nextElement") ++listed;
  if (member == "getServiceType") Give(result, "T" + std::to_string(10 + listed));
  if (member == "getServiceTypeDescription" || member == "getServiceProcedure" || member == "getavailabilityType")
    Give(result, std::string("text"));
  if (member == "List" || member == "nextElement" || member == "getTuple" || member == "getCurrentObject") {
    result->kind = QMX_OBJECT;
    result->as.object = object;
  }
  return QMX_OK;
}

void Count(qmx_object*) {}  // it is there for good

const qmx_type kType = {sizeof(qmx_type), 0, Resolve, Invoke, Count, Count, nullptr};

qmx_status Create(const char*, size_t, qmx_object** object, qmx_error*) {
  *object = &theObject;
  return QMX_OK;
}

const qmx_component_server kServer = {
    sizeof(qmx_component_server), QMX_ABI_VERSION, Create, "ending 1", nullptr, nullptr, nullptr};

}  // namespace

const qmx_component_server* QMX_COMPONENT_SERVER_ENTRY(const qmx_component_host*, qmx_error*) { return &kServer; }
