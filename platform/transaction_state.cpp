#include "platform/transaction_state.h"

#include "platform/retryable.h"

namespace qmx {
namespace {

constexpr const char* kUnknown =
    "It is not known whether the last rows were saved, so nothing more is written over this connection";

}  // namespace

void TransactionState::Lose() noexcept {
  if (state_ == State::Unknown) return;  // keeps the first error
  state_ = State::Unknown;
  try {
    loss_ = CurrentError();
  } catch (...) {  // no memory
  }
}

void TransactionState::RequireKnown() const {
  if (state_ != State::Unknown) return;
  if (!loss_) throw Error(errors::kOutOfMemory, "Database", kUnknown);
  Error error(loss_->Number(), loss_->Source(), std::string(kUnknown) + ": " + loss_->Description());
  const bool asksForMore = AsksToTryAgain(*loss_);  // which this session no longer does
  if (!asksForMore) {
    for (const auto& [what, value] : loss_->Details()) error.With(what, value);
  }
  throw error;
}

void TransactionState::RequireNone(const std::string& action) const {
  RequireKnown();
  if (state_ == State::None) return;
  throw Error(errors::kNotAllowedNow, "Database", action + " while a transaction is open.");
}

}  // namespace qmx
