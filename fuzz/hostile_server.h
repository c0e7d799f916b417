// A component server that does what an input says: gives objects, texts and statuses that no honest server gives, calls
// back into the host, keeps what it was lent. It counts the references to its objects and ends the process when one is
// called or released that nobody holds.
#pragma once

#include <qmx/component_server.h>

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "fuzz/input.h"

namespace qmx::fuzz {

class HostileServer {
 public:
  explicit HostileServer(Input& input) : input_(input) {}
  ~HostileServer();
  HostileServer(const HostileServer&) = delete;
  HostileServer& operator=(const HostileServer&) = delete;

  qmx_object* Make();         // with one reference, for the host; sometimes an object that cannot be used
  void ReleaseWhatItKeeps();  // of the host's objects and of its own
  int Alive() const { return alive_; }

 private:
  struct Thing;
  static HostileServer& Of(qmx_object* object);
  static bool IsUsable(qmx_object* object);  // also of the host's
  static qmx_status Resolve(qmx_object* object, const char* name, std::size_t length, std::int32_t* id,
                            qmx_error* error);
  static qmx_status Invoke(qmx_object* object, std::int32_t id, qmx_value* const* arguments, std::size_t count,
                           qmx_value* result, qmx_error* error);
  static void AddReference(qmx_object* object);
  static void Release(qmx_object* object);
  static const qmx_type kTypes[];

  qmx_status Answer(qmx_object* self, qmx_value* const* arguments, std::size_t count, qmx_value* result,
                    qmx_error* error);
  void Put(qmx_object* self, qmx_value& value);  // any value, with a reference for the host if it is an object
  void CallBack(qmx_object* object);
  void Keep(qmx_object* object);
  qmx_status Fail(qmx_error* error);
  const std::string& NewText(std::size_t most) { return texts_.emplace_back(input_.Text(most)); }

  Input& input_;
  int alive_ = 0;
  int depth_ = 0;
  std::deque<std::string> texts_;  // that were given
  std::vector<qmx_object*> kept_;
  std::vector<Thing*> unusable_;
};

}  // namespace qmx::fuzz
