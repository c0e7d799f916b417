#include "platform/system/failure_report.h"

#include "platform/system/write_all.h"

namespace qmx {

void StandardErrorReport::Report(const Error& error) noexcept {
  try {
    WriteAll(descriptor_, DescribeChain(error) + "\n");
  } catch (...) {  // no memory for the text
    WriteAll(descriptor_, "A failure could not be described: out of memory.\n");
  }
}

}  // namespace qmx
