// Requests to end this program, while it waits for child processes. Ctrl-C is one.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace qmx {

class ChildProcess;

struct EndRequest {
  int number = 0;    // the system's own: SIGTERM
  std::string name;  // for people: "Terminated"
};

// Keeps the requests while it exists, so that they only show in Take(). Signals that this process ignores, as under
// nohup, stay ignored. There is one instance at a time.
class EndRequests {
 public:
  EndRequests();
  ~EndRequests();
  EndRequests(const EndRequests&) = delete;
  EndRequests& operator=(const EndRequests&) = delete;

  // Returns when there is a request, when a child process has written something or has ended, or after that time.
  void Wait(const std::vector<const ChildProcess*>& children, std::chrono::milliseconds atMost) const;

  std::vector<EndRequest> Take();  // returns those that are pending, without waiting

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace qmx
