#include "platform/unit_of_work.h"

#include <utility>

namespace qmx {
namespace {

constexpr const char* kConnectionSource = "ADODB.Connection";

}  // namespace

void UnitOfWork::Run(const std::function<void()>& work) {
  session_.Begin();
  isOpen_ = true;
  hasFailed_ = false;
  failure_.reset();
  try {
    work();
    RaiseFailure();
    if (!isOpen_)
      throw Error(errors::kConnectionClosed, kConnectionSource, "The connection was closed: nothing was saved.");
  } catch (...) {
    Abandon();
    throw;
  }
  isOpen_ = false;
  Commit();
}

void UnitOfWork::Fail(const Error& failure) noexcept {
  if (!isOpen_ || hasFailed_) return;
  hasFailed_ = true;
  try {
    failure_ = failure;
  } catch (...) {  // no memory
  }
}

void UnitOfWork::RaiseFailure() const {
  if (failure_) throw *failure_;
  if (hasFailed_) throw Error(errors::kOutOfMemory, kConnectionSource, "Out of memory: nothing was saved.");
}

// The failure that led here counts. If the rollback fails too, the session refuses every further call, and the database
// rolls the transaction back when the connection ends.
void UnitOfWork::Abandon() noexcept {
  if (std::exchange(isOpen_, false)) RollBack();
}

bool UnitOfWork::RollBack() noexcept {
  try {
    session_.Rollback();
    return true;
  } catch (...) {
    return false;
  }
}

void UnitOfWork::Commit() {
  try {
    session_.Commit();
  } catch (...) {
    if (RollBack()) throw;
    throw Error(CurrentError().Number(), kConnectionSource,
                "It is not known whether the transaction was committed: the database's answer to the COMMIT was lost.")
        .With("rows", "all old or all new");
  }
}

}  // namespace qmx
