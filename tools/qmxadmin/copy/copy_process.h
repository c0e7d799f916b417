// One run of qmxdatacopy as a process of its own.
//
// Its progress comes on a descriptor of its own (platform/progress/progress.h), what it says on its standard streams is
// kept; nothing of it reaches ours. Its exit status counts only where its main told the same one there: a component
// may have called exit. It stands in a process group of its own, so that a key at the terminal ends this
// program, which then decides about its copies.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace qmx {

// Beside this program, else where $PATH has it. Raises 53 where it is not.
std::string FindDataCopy();

class CopyProcess {
 public:
  CopyProcess(const std::string& program, const std::string& commandLine);  // raises 53 when it cannot be started
  ~CopyProcess();                                                           // does not wait for its end
  CopyProcess(const CopyProcess&) = delete;
  CopyProcess& operator=(const CopyProcess&) = delete;

  const std::vector<int>& Descriptors() const { return descriptors_; }  // on which something may come
  void Read();                                                          // what has come, without waiting

  bool HasEnded();  // does not wait either
  void Signal(int signal) const;

  std::int64_t Rows() const { return rows_; }
  const std::string& Said() const { return said_; }
  int ExitStatus() const;       // as its main told; -1 when something else ended it
  int EndingSignal() const;     // 0 when no signal ended it
  bool WasInterrupted() const;  // by a signal that made the copy fail; its table is released

 private:
  enum { kProgress, kSaid };
  void Launch(const std::string& program, const std::string& commandLine, int progress, int said);
  void ReadProgress();

  std::vector<int> descriptors_;
  pid_t process_ = -1;
  bool hasEnded_ = false;
  int state_ = 0;
  std::string progress_;  // the line that is not whole yet
  std::int64_t rows_ = 0;
  int toldStatus_ = -1;
  std::string said_;
};

}  // namespace qmx
