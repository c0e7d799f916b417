#include "tools/qmxadmin/verify/report.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "tools/qmxadmin/json_output.h"
#include "tools/qmxadmin/text_width.h"

namespace qmx {
namespace {

enum Kind { kMissing, kSurplus, kDifferent, kRepeated, kKinds };
constexpr const char* kWords[] = {"missing", "surplus", "different", "repeated"};

std::vector<std::size_t> KeyOf(const LocalTable& table) {
  std::vector<std::size_t> key;
  for (std::size_t column = 0; column < table.columns.size(); ++column) {
    const bool isPart = std::find(table.key.begin(), table.key.end(), table.columns[column].name) != table.key.end();
    if (isPart) key.push_back(column);
  }
  return key;
}

class Counting : public VerifyReport {
 public:
  explicit Counting(std::ostream& out) : out_(out) {}

  void Begin(const LocalTable& table) override {
    table_ = &table;
    key_ = KeyOf(table);
    std::fill(std::begin(counts_), std::end(counts_), 0);
  }
  void Missing(const RowValues& erp) override { Tell(kMissing, erp, {}, erp, {}); }
  void Surplus(const RowValues& local) override { Tell(kSurplus, local, local, {}, {}); }
  void Different(const RowValues& local, const RowValues& erp, const std::vector<std::size_t>& columns) override {
    Tell(kDifferent, local, local, erp, columns);
  }
  void Repeated(const RowValues& erp, std::int64_t times) override {
    times_ = times;
    Tell(kRepeated, erp, {}, erp, {});
  }
  bool End(const ComparedRows& rows) override {
    TellEnd(rows);
    return std::all_of(std::begin(counts_), std::end(counts_), [](std::int64_t count) { return count == 0; });
  }

 protected:
  virtual void TellRow(Kind kind, const RowValues& key, const RowValues& local, const RowValues& erp,
                       const std::vector<std::size_t>& columns) = 0;
  virtual void TellEnd(const ComparedRows& rows) = 0;

  std::ostream& out_;
  const LocalTable* table_ = nullptr;
  std::vector<std::size_t> key_;
  std::int64_t counts_[kKinds] = {};
  std::int64_t times_ = 0;

 private:
  void Tell(Kind kind, const RowValues& key, const RowValues& local, const RowValues& erp,
            const std::vector<std::size_t>& columns) {
    ++counts_[kind];
    TellRow(kind, key, local, erp, columns);
  }
};

// All digits of a number: two that differ in the last one look different.
std::string Shown(const Variant& value) {
  if (value.IsNull()) return "null";
  if (value.GetKind() == Variant::Kind::Double) {
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value.ToDouble());
    return {digits.data(), end.ptr};
  }
  return value.IfText() ? "'" + value.ToText() + "'" : value.ToText();
}

class Lines : public Counting {
 public:
  using Counting::Counting;
  void Close() override {}

 protected:
  void TellRow(Kind kind, const RowValues& key, const RowValues& local, const RowValues& erp,
               const std::vector<std::size_t>& columns) override {
    std::string line = table_->name + " " + kWords[kind] + ":";
    const char* separator = " ";
    for (const std::size_t column : key_) {
      line += separator + table_->columns[column].name + "=" + Shown(key[column]);
      separator = ", ";
    }
    separator = ": ";
    for (const std::size_t column : columns) {
      line += separator + table_->columns[column].name + " is " + Shown(local[column]) + ", in the ERP " +
              Shown(erp[column]);
      separator = "; ";
    }
    if (kind == kRepeated) line += " is listed " + std::to_string(times_) + " times";
    out_ << Printable(line) << '\n';
  }

  void TellEnd(const ComparedRows& rows) override {
    std::string found;
    for (int kind = 0; kind < kKinds; ++kind) {
      if (counts_[kind] > 0) found += (found.empty() ? "" : ", ") + std::to_string(counts_[kind]) + " " + kWords[kind];
    }
    out_ << table_->name << ": " << rows.erp << " in the ERP, " << rows.local
         << " here: " << (found.empty() ? "no difference" : found);
    if (rows.older > 0) out_ << "; " << rows.older << " here are older than what is listed";
    if (rows.erp == 0 && rows.local > 0) out_ << "; the ERP lists nothing, and a full copy would leave these rows";
    out_ << std::endl;  // who waits for the next table sees this one
  }
};

class JsonLines : public Counting {
 public:
  using Counting::Counting;
  void Close() override { out_ << (isFirst_ ? "[" : "") << "\n]\n"; }

 protected:
  void TellRow(Kind kind, const RowValues& key, const RowValues& local, const RowValues& erp,
               const std::vector<std::size_t>& columns) override {
    Object(std::string(",\"difference\":\"") + kWords[kind] + "\",\"key\":" + Values(key_, key) +
           (columns.empty() ? "" : ",\"local\":" + Values(columns, local) + ",\"erp\":" + Values(columns, erp)) +
           (kind == kRepeated ? ",\"times\":" + std::to_string(times_) : ""));
  }

  void TellEnd(const ComparedRows& rows) override {
    std::string text = ",\"erp_rows\":" + std::to_string(rows.erp) + ",\"local_rows\":" + std::to_string(rows.local) +
                       ",\"older\":" + std::to_string(rows.older);
    for (int kind = 0; kind < kKinds; ++kind)
      text += std::string(",\"") + kWords[kind] + "\":" + std::to_string(counts_[kind]);
    Object(text);
  }

 private:
  void Object(const std::string& rest) {
    out_ << (isFirst_ ? "[\n  " : ",\n  ") << "{\"table\":\"" << table_->name << '"' << rest << '}';
    isFirst_ = false;
  }

  std::string Values(const std::vector<std::size_t>& columns, const RowValues& row) const {
    std::vector<ListingColumn> names;
    RowValues values;
    for (const std::size_t column : columns) {
      names.push_back({.key = table_->columns[column].name, .title = ""});
      values.push_back(row[column]);
    }
    return JsonObject(names, values);
  }

  bool isFirst_ = true;
};

}  // namespace

std::unique_ptr<VerifyReport> MakeVerifyReport(std::ostream& out, OutputForm form) {
  if (form == OutputForm::Json) return std::make_unique<JsonLines>(out);
  return std::make_unique<Lines>(out);
}

}  // namespace qmx
