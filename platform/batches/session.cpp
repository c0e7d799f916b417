#include "platform/batches/session.h"

#include <utility>

#include "platform/batches/insert.h"
#include "platform/batches/statement.h"

namespace qmx {

BatchingSession::BatchingSession(std::unique_ptr<DriverSession> inner) : inner_(std::move(inner)) {}

BatchingSession::~BatchingSession() { StopHelper(); }

std::unique_ptr<DriverStatement> BatchingSession::Prepare(const std::string& statement) {
  const Lock lock = Ready();
  return std::make_unique<BatchingStatement>(*this, inner_->Prepare(statement));
}

std::unique_ptr<DriverStatement> BatchingSession::PrepareInsert(const RowInsert& insert) {
  const Lock lock = Ready();
  return std::make_unique<BatchingInsert>(*this, insert);
}

TableDescription BatchingSession::Describe(const std::string& table) {
  const Lock lock = Ready();
  return inner_->Describe(table);
}

std::string BatchingSession::Catalog() {
  const Lock lock = Ready();
  return inner_->Catalog();
}

void BatchingSession::SelectCatalog(const std::string& name) {
  const Lock lock = Ready();
  inner_->SelectCatalog(name);
}

void BatchingSession::Timeout(std::chrono::seconds limit) {
  const Lock lock = Ready();
  inner_->Timeout(limit);
}

void BatchingSession::Begin() {
  const Lock lock = Ready();
  inner_->Begin();
}

void BatchingSession::Rollback() {
  const Lock lock = Ready();
  inner_->Rollback();
}

void BatchingSession::Commit() {
  const Lock lock = Ready();
  inner_->Commit();
}

void BatchingSession::Close() {
  StopHelper();
  try {
    SendNow();
    RaiseFailure();
  } catch (...) {
    inner_->Close();
    throw;
  }
  inner_->Close();
}

BatchingSession::Lock BatchingSession::Ready() {
  Lock lock(mutex_);
  RaiseFailure();
  SendNow();
  return lock;
}

BatchingSession::Lock BatchingSession::ReadyFor(const BatchingInsert& next) {
  Lock lock(mutex_);
  RaiseFailure();
  if (waiting_ != &next) SendNow();
  return lock;
}

bool BatchingSession::ShouldWait() {
  const Clock::time_point now = Clock::now();
  const bool isSoon = now - std::exchange(lastRow_, now) < kLongestWait;
  return waiting_ || isSoon;
}

void BatchingSession::Waits(BatchingInsert& rows) {
  waiting_ = &rows;
  due_ = Clock::now() + kLongestWait;
  if (!helper_.joinable()) helper_ = std::thread([this] { SendWhenDue(); });
  changed_.notify_one();
}

void BatchingSession::SendNow() {
  if (BatchingInsert* const rows = std::exchange(waiting_, nullptr)) rows->Send();
}

void BatchingSession::Forget(BatchingInsert& rows) {
  if (waiting_ != &rows) return;
  try {
    SendNow();
  } catch (...) {
    failure_ = std::current_exception();
  }
}

void BatchingSession::RaiseFailure() {
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

void BatchingSession::SendWhenDue() {
  Lock lock(mutex_);
  while (!stops_) {
    if (!waiting_) {
      changed_.wait(lock);
    } else if (Clock::now() < due_) {
      changed_.wait_until(lock, Clock::time_point(due_));
    } else {
      try {
        SendNow();
      } catch (...) {
        failure_ = std::current_exception();
      }
    }
  }
}

void BatchingSession::StopHelper() {
  {
    const Lock lock(mutex_);
    stops_ = true;
    changed_.notify_one();
  }
  if (helper_.joinable()) helper_.join();
}

}  // namespace qmx
