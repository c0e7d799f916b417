#include "tools/qmxadmin/copy/copy_process.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>

#include "platform/error.h"
#include "tools/qmxadmin/system/find_program.h"

namespace qmx {
namespace {

constexpr const char* kName = "qmxdatacopy";
constexpr int kCopyFailed = 1;
constexpr std::size_t kMostOutput = 64 * 1024;  // keeps the beginning of a chain of causes

std::vector<ChildProcess::Variable> VariablesOf(const CopyMode& mode) {
  std::vector<ChildProcess::Variable> variables;
  if (mode.full) variables.push_back({"QMX_METHOD", "full"});
  if (mode.whole) variables.push_back({"QMX_COPY", "whole"});
  return variables;
}

}  // namespace

std::string FindDataCopy() {
  const std::string program = FindProgram(kName);
  if (!program.empty()) return program;
  throw Error(errors::kFileNotFound, "qmxadmin copy",
              fmt::format("{} is neither in the folder of qmxadmin nor in a folder of $PATH.", kName));
}

CopyProcess::CopyProcess(const std::string& program, const std::string& commandLine, const CopyMode& mode)
    : child_(program, commandLine, VariablesOf(mode)) {}

void CopyProcess::Read() {
  ReadProgress();
  output_ += child_.ReadOutput();
  output_.resize(std::min(output_.size(), kMostOutput));
}

void CopyProcess::ReadProgress() {
  progress_ += child_.ReadProgress();
  for (std::size_t end = 0; (end = progress_.find('\n')) != std::string::npos;) {
    isDeleting_ = progress_.starts_with("deleting");
    if (progress_.starts_with("rows ")) rows_ = std::atoll(progress_.c_str() + 5);
    if (progress_.starts_with("end ")) reportedStatus_ = std::atoi(progress_.c_str() + 4);
    progress_.erase(0, end + 1);
  }
}

bool CopyProcess::HasEnded() {
  if (!hasEnded_ && child_.HasEnded()) {
    hasEnded_ = true;
    Read();
  }
  return hasEnded_;
}

int CopyProcess::ExitStatus() const { return child_.ExitStatus() == reportedStatus_ ? reportedStatus_ : -1; }

bool CopyProcess::WasInterrupted() const {
  return ExitStatus() == kCopyFailed && output_.find(", Interrupted: ") != std::string::npos;
}

}  // namespace qmx
