#include "platform/posix/failure_report.h"

#include "platform/write_all.h"

namespace qmx {

void PosixFailureReport::Report(const Error& error) noexcept {
  try {
    WriteAll(descriptor_, DescribeChain(error) + "\n");
  } catch (...) {  // no memory for the text
    WriteAll(descriptor_, "A failure could not be described: out of memory.\n");
  }
}

}  // namespace qmx
