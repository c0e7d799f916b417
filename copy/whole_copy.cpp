// Whole mode: the rows of a copy and the new last update time become visible in one commit, or not at all.
//
// The in-progress flag is written before and after it, each time visible at once.
#include "copy/clsDataCopy.h"
#include "platform/error.h"
#include "platform/failure_report.h"

namespace qmx {
namespace {

constexpr std::int64_t kOthersWait = 30;  // seconds, the default time-out of a statement

}  // namespace

// Before anything is written. The control record is checked too: its last update time has to be rolled back with the
// rows.
void clsDataCopy::RequireWholeCopy(const std::string& tableCode) {
  OpenedConnection().PrepareAtomic({tableCode, "tstables"});
}

// The one place where a copy's transaction begins and ends. Without whole mode there is none.
void clsDataCopy::WriteRows(const std::string& tableCode, const std::function<void()>& write) {
  if (!declarations_.copiesWhole) return write();
  std::optional<DateTime>& lastUpdateTime = declarations_.facts.lastUpdateTime;
  std::optional<DateTime> begin;  // after the wait for another program's lock
  std::exception_ptr failure;
  try {
    OpenedConnection().Atomically([&] {
      begin = Now();
      write();
    });
  } catch (Error& error) {
    error.With("rows", "as they were before the copy");
    if (lastUpdateTime) error.With("last update time of the new rows", lastUpdateTime->ToText());
    lastUpdateTime.reset();
    failure = std::current_exception();
  }
  if (begin) ReportLongLock(tableCode, *begin);
  if (failure) std::rethrow_exception(failure);
}

void clsDataCopy::ReportLongLock(const std::string& tableCode, DateTime begin) {
  const std::int64_t held = Now().Seconds() - begin.Seconds();
  if (held <= kOthersWait || !OpenedConnection().LocksWholeDatabase()) return;
  platform_.failures.Report(Error(errors::kTimeout, "clsDataCopy",
                                  "The copy of table " + tableCode +
                                      " kept other programs from writing the database for " + std::to_string(held) +
                                      " seconds. Most of them wait for " + std::to_string(kOthersWait) +
                                      " seconds, so their writes may have failed.")
                                .With("what to do", "copy without \"whole\", or when no other program writes"));
}

}  // namespace qmx
