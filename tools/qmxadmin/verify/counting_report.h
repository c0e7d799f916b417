// What the reports of a verification share: the counts and the table's key.
#pragma once

#include <array>

#include "tools/qmxadmin/verify/report.h"

namespace qmx {

enum DifferenceKind { kMissing, kSurplus, kDifferent, kRepeated, kDifferenceKinds };
inline constexpr const char* kDifferenceWords[] = {"missing", "surplus", "different", "repeated"};

// One difference. Rows that the difference does not concern are null.
struct Difference {
  DifferenceKind kind;
  const RowValues* local = nullptr;
  const RowValues* erp = nullptr;
  std::vector<std::size_t> columns = {};  // those that differ
  std::int64_t times = 1;                 // how often the ERP lists the row

  const RowValues& Key() const { return local ? *local : *erp; }  // a row that holds the key
};

class CountingReport : public VerifyReport {
 public:
  explicit CountingReport(std::ostream& out) : out_(out) {}  // borrowed

  void Begin(const LocalTable& table) override;
  bool End(const ComparedRows& rows) override;
  void Missing(const RowValues& erp) override;
  void Surplus(const RowValues& local) override;
  void Different(const RowValues& local, const RowValues& erp, const std::vector<std::size_t>& columns) override;
  void Repeated(const RowValues& erp, std::int64_t times) override;

 protected:
  virtual void Write(const Difference& difference) = 0;
  virtual void WriteSummary(const ComparedRows& rows) = 0;

  std::ostream& Out() { return out_; }
  const LocalTable& Table() const { return *table_; }
  const std::vector<std::size_t>& KeyColumns() const { return key_; }  // in the table's order
  std::int64_t CountOf(int kind) const { return counts_[static_cast<std::size_t>(kind)]; }

 private:
  void Add(const Difference& difference);

  std::ostream& out_;
  const LocalTable* table_ = nullptr;
  std::vector<std::size_t> key_;
  std::array<std::int64_t, kDifferenceKinds> counts_{};
};

}  // namespace qmx
