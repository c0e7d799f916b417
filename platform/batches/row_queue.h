// Added rows that wait to be sent, in batches.
//
// One batch is filled while those before it are sent. A batch holds rows of one statement. It ends when its statement
// takes no more rows at once, when its texts are long, or when EndBatch says so. Ended batches are sent oldest first.
// The queue has no lock: its owner calls it from one thread at a time. While the owner sends the oldest batch, another
// thread may add rows.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <span>
#include <vector>

#include "platform/steady_clock.h"
#include "platform/variant.h"

namespace qmx {

// The statement that adds the rows of a batch.
class RowSink {
 public:
  virtual std::size_t MostRows() const = 0;                // of one batch
  virtual void Send(std::span<const Variant> values) = 0;  // of whole rows, one after the other
  virtual void AskMostRows() = 0;                          // a sent batch may change MostRows

  // Whether nobody needs the outcome of its rows: they may wait also after a pause, and are committed as a group.
  virtual bool IsUnheeded() const { return false; }

 protected:
  ~RowSink() = default;
};

class RowQueue {
 public:
  static constexpr std::chrono::milliseconds kLongestWait{50};
  static constexpr std::size_t kBatches = 2;          // a third was no faster, and took another MiB
  static constexpr std::size_t kMostBytes = 1 << 20;  // of texts in one batch

  struct Batch {
    std::span<const Variant> Values() const { return std::span(values).first(used); }
    void ForgetLongTexts();  // frees the memory of texts that are unusually long

    RowSink* sink = nullptr;
    std::vector<Variant> values;  // row by row; their memory is used again
    std::size_t used = 0;         // of the values
    std::size_t rows = 0;
    std::size_t bytes = 0;  // of their texts
    SteadyClock::TimePoint due;
  };

  explicit RowQueue(SteadyClock& clock) : clock_(clock) {}  // borrowed

  bool IsEmpty() const { return ended_ == 0 && !IsFilling(); }
  bool IsFull() const { return ended_ == kBatches; }  // no row can be added until a batch is removed
  bool IsFilling() const { return !IsFull() && Filling().rows > 0; }
  bool IsFillingForAnother(const RowSink& sink) const { return IsFilling() && Filling().sink != &sink; }
  bool HasRowsOf(const RowSink& sink) const;
  SteadyClock::TimePoint Due() const { return Filling().due; }  // of the batch that is being filled

  // Notes that a row is about to be added. Returns whether the one before came less than kLongestWait ago.
  bool FollowsQuickly();

  // Copies the row into the batch that is being filled, of the same statement or new. Returns whether that ended it.
  bool Add(RowSink& sink, std::span<const Variant* const> row);

  void EndBatch();  // if one is being filled
  bool HasEnded() const { return ended_ > 0; }
  Batch& Oldest() { return batches_[oldest_]; }  // of those that ended
  void RemoveOldest();
  void Clear();

 private:
  const Batch& Filling() const { return batches_[(oldest_ + ended_) % kBatches]; }
  Batch& Filling() { return batches_[(oldest_ + ended_) % kBatches]; }

  SteadyClock& clock_;
  std::array<Batch, kBatches> batches_;  // a ring: those that ended, then the one that is being filled
  std::size_t oldest_ = 0;
  std::size_t ended_ = 0;
  SteadyClock::TimePoint lastRow_;
};

}  // namespace qmx
