#include "tools/qmxadmin/check/separate_process.h"

#include <iostream>
#include <nlohmann/json.hpp>

#include "platform/system/write_all.h"
#include "tools/qmxadmin/json_output.h"
#include "tools/qmxadmin/system/separate_work.h"

namespace qmx {
namespace {

constexpr const char* kDone = "done";
constexpr const char* kReportIt = "Report it to the makers of the component server.";

// Writes each finding as one line of JSON.
class PipedFindings : public FindingSink {
 public:
  explicit PipedFindings(int pipe) : pipe_(pipe) {}
  void Add(const Finding& finding) override {
    Write({static_cast<int>(finding.state), finding.what, finding.detail, finding.whatToDo});
  }
  void Done() { Write(kDone); }

 private:
  void Write(const Json& value) { WriteAll(pipe_, JsonText(value) + "\n"); }
  int pipe_;
};

void DoChecks(const std::vector<SeparateCheck>& checks, std::size_t first, int pipe) {
  PipedFindings findings(pipe);
  for (std::size_t check = first; check < checks.size(); ++check) {
    checks[check].run(findings);
    findings.Done();
  }
}

// Adds the findings as they arrive. Returns how many checks came to their end.
std::size_t Receive(SeparateWork& work, FindingSink& findings) {
  std::size_t done = 0;
  std::string text;
  for (std::string read; !(read = work.Read()).empty();) {
    text += read;
    for (std::size_t end = 0; (end = text.find('\n')) != std::string::npos; text.erase(0, end + 1)) {
      const Json line = Json::parse(text.substr(0, end));
      if (line == kDone) {
        ++done;
      } else {
        findings.Add({static_cast<Finding::State>(line[0].get<int>()), line[1], line[2], line[3]});
      }
    }
  }
  return done;
}

}  // namespace

void RunInSeparateProcess(const std::vector<SeparateCheck>& checks, FindingSink& findings) {
  for (std::size_t next = 0; next < checks.size();) {
    std::cout.flush();
    SeparateWork work([&](std::size_t first, int pipe) { DoChecks(checks, first, pipe); }, next);
    next += Receive(work, findings);
    const std::string end = work.WaitForEnd();
    if (next == checks.size()) return;
    findings.Wrong(checks[next].what, end + " during this check", kReportIt);
    ++next;
  }
}

}  // namespace qmx
