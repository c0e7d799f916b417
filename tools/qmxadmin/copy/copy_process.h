// One run of qmxdatacopy, in its own process.
//
// The run reports its progress on a separate descriptor (platform/progress/progress.h). What it prints is kept in
// memory and does not reach our standard streams. Its exit status counts only if its main reported the same one,
// because a component may have called exit. The run has its own process group, so Ctrl-C at the terminal reaches only
// this program, which then decides about its copies.
#pragma once

#include <cstdint>
#include <string>

#include "tools/qmxadmin/system/child_process.h"

namespace qmx {

// Returns the path of qmxdatacopy: in the folder of this program, or else in a folder of $PATH. Raises 53 if there is
// none.
std::string FindDataCopy();

struct CopyMode {
  bool full = false;   // else as tstables says
  bool whole = false;  // else as the environment says
};

class CopyProcess {
 public:
  // Raises 53 when it cannot be started. The destructor does not wait for the process.
  CopyProcess(const std::string& program, const std::string& commandLine, const CopyMode& mode);

  const ChildProcess& Child() const { return child_; }  // to wait for
  void Read();                                          // reads new output, without waiting

  bool HasEnded();  // without waiting
  void PassOn(const EndRequest& request) const { child_.PassOn(request); }

  std::int64_t Rows() const { return rows_; }
  bool IsDeleting() const { return isDeleting_; }  // the rows of a former copy
  const std::string& Output() const { return output_; }
  int ExitStatus() const;                                 // as reported by its main; -1 if something else ended it
  std::string Killer() const { return child_.Killer(); }  // what ended it, if it did not end by itself
  bool WasInterrupted() const;                            // a signal made the copy fail, and its table is released

 private:
  void ReadProgress();

  ChildProcess child_;
  bool hasEnded_ = false;
  std::string progress_;  // an incomplete line
  std::int64_t rows_ = 0;
  bool isDeleting_ = false;
  int reportedStatus_ = -1;
  std::string output_;
};

}  // namespace qmx
