#include "platform/batches/row_queue.h"

#include <algorithm>
#include <utility>

namespace qmx {

// A value keeps the memory of the longest text that it ever held. With one long text in each batch, each time in
// another row, every row would in the end keep as much.
void RowQueue::Batch::ForgetLongTexts() {
  std::size_t room = 0;
  for (const Variant& value : values) {
    if (const std::string* text = value.IfText()) room += text->capacity();
  }
  if (room > 2 * kMostBytes) values.clear();
}

bool RowQueue::HasRowsOf(const RowSink& sink) const {
  return std::any_of(batches_.begin(), batches_.end(),
                     [&](const Batch& batch) { return batch.rows > 0 && batch.sink == &sink; });
}

bool RowQueue::FollowsQuickly() {
  const SteadyClock::TimePoint now = clock_.Now();
  return now - std::exchange(lastRow_, now) < kLongestWait;
}

bool RowQueue::Add(RowSink& sink, std::span<const Variant* const> row) {
  Batch& batch = Filling();
  if (batch.rows == 0) {
    batch.sink = &sink;
    batch.used = batch.bytes = 0;
    batch.due = lastRow_ + kLongestWait;
  }
  const std::size_t end = batch.used + row.size();
  if (batch.values.size() < end) batch.values.resize(end);
  std::size_t bytes = 0;
  Variant* waiting = batch.values.data() + batch.used;
  for (const Variant* value : row) {
    *waiting++ = *value;
    if (const std::string* text = value->IfText()) bytes += text->size();
  }
  batch.bytes += bytes;
  batch.used = end;
  if (++batch.rows < sink.MostRows() && batch.bytes < kMostBytes) return false;
  ++ended_;
  return true;
}

void RowQueue::EndBatch() {
  if (IsFilling()) ++ended_;
}

void RowQueue::RemoveOldest() {
  Oldest().rows = 0;
  oldest_ = (oldest_ + 1) % kBatches;
  --ended_;
}

void RowQueue::Clear() {
  for (Batch& batch : batches_) batch.rows = 0;
  ended_ = 0;
}

}  // namespace qmx
