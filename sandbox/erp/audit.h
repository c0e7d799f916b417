// The audit classes: which records of a table were inserted, updated or deleted within a period.
//
// A reader gets a manager, a record object and criteria. The period includes both ends. Parameters narrow key columns,
// and all of them must match. The criteria keep their objects, and a reader's initialize reads them: it sees later
// changes of a period or parameter, and counts a parameter that was added more than once only once. Entries come in the
// order of the changes.
#pragma once

#include <optional>

#include "binding/kept_value.h"
#include "binding/object.h"
#include "erp/record.h"

namespace orvan {

class Period : public Component<Period> {
 public:
  static constexpr char kName[] = "audit.period";
  static const auto& Methods() {
    static constexpr Method methods[] = {{"setFrom", 1, &Period::SetFrom}, {"setTo", 1, &Period::SetTo}};
    return methods;
  }

  std::string From() const;  // in the trail's own form
  std::string To() const;

 private:
  void SetFrom(Arguments date, Result) { from_ = DateObject(date[0], "setFrom"); }
  void SetTo(Arguments date, Result) { to_ = DateObject(date[0], "setTo"); }
  static ForeignObject DateObject(Argument date, const char* member);

  ForeignObject from_;
  ForeignObject to_;
};

class Parameter : public Component<Parameter> {
 public:
  static constexpr char kName[] = "audit.Parameter";
  static const auto& Methods() {
    static constexpr Method methods[] = {{"setFieldName", 1, &Parameter::SetFieldName},
                                         {"setFrom", 1, &Parameter::SetFrom},
                                         {"setTo", 1, &Parameter::SetTo}};
    return methods;
  }

  const std::string& FieldName() const { return fieldName_; }
  Argument From() const { return from_.View(); }
  Argument To() const { return to_.View(); }

 private:
  void SetFieldName(Arguments name, Result) { fieldName_ = name[0].Text(); }
  void SetFrom(Arguments bound, Result) { from_ = KeptValue(bound[0]); }
  void SetTo(Arguments bound, Result) { to_ = KeptValue(bound[0]); }

  std::string fieldName_;
  KeptValue from_;
  KeptValue to_;
};

class Criteria : public Component<Criteria> {
 public:
  static constexpr char kName[] = "audit.auditCriteria";
  static const auto& Methods() {
    static constexpr Method methods[] = {{"setPeriod", 1, &Criteria::SetPeriod},
                                         {"addParameter", 1, &Criteria::AddParameter},
                                         {"addOutputField", 1, &Criteria::AddOutputField}};
    return methods;
  }

  const Period& AuditPeriod() const;
  const std::vector<Ref<Parameter>>& Parameters() const { return parameters_; }
  const std::vector<std::string>& OutputFields() const { return outputFields_; }

 private:
  void SetPeriod(Arguments period, Result) { period_ = Ref(ObjectOf<Period>(period[0], "period")); }
  void AddParameter(Arguments parameter, Result);
  void AddOutputField(Arguments name, Result) { outputFields_.emplace_back(name[0].Text()); }

  Ref<Period> period_;
  std::vector<Ref<Parameter>> parameters_;
  std::vector<std::string> outputFields_;
};

class AuditEntry : public Component<AuditEntry> {
 public:
  enum class Change : char { Deleted = 'D', Updated = 'U', Inserted = 'I' };

  static constexpr char kName[] = "audit.AuditEntry";
  static const auto& Methods() {
    static constexpr Method methods[] = {{"getTuple", 0, &AuditEntry::GetTuple}};
    return methods;
  }

  AuditEntry(Change change, Ref<Record> key) : change_(change), key_(std::move(key)) {}
  Change How() const { return change_; }

 private:
  void GetTuple(Arguments, Result result) { Return(result, key_); }
  Change change_;
  Ref<Record> key_;
};

class RecordStatus : public Component<RecordStatus> {
 public:
  static constexpr char kName[] = "audit.RecordStatus";
  static const auto& Methods() {
    using Change = AuditEntry::Change;
    static constexpr Method methods[] = {{"isDeleted", 1, &RecordStatus::Is<Change::Deleted>},
                                         {"isUpdated", 1, &RecordStatus::Is<Change::Updated>},
                                         {"isInserted", 1, &RecordStatus::Is<Change::Inserted>}};
    return methods;
  }

 private:
  template <AuditEntry::Change change>
  void Is(Arguments entry, Result result) {
    result.SetBoolean(ObjectOf<AuditEntry>(entry[0], "entry").How() == change);
  }
};

class AuditReader : public Component<AuditReader> {
 public:
  static constexpr char kName[] = "audit.AuditReader";
  static const auto& Methods() {
    static constexpr Method methods[] = {{"initialize", 3, &AuditReader::Initialize},
                                         {"hasMoreElements", 0, &AuditReader::HasMoreElements},
                                         {"nextElement", 0, &AuditReader::NextElement},
                                         {"getCurrentObject", 1, &AuditReader::GetCurrentObject}};
    return methods;
  }

 private:
  // One audit query: the entries, and the current state of their records.
  struct Query {
    const Table& table;
    Statement entries;
    Statement current;
    std::vector<std::size_t> outputColumns;
    bool onRow;
  };

  void Initialize(Arguments managerRecordAndCriteria, Result);
  void HasMoreElements(Arguments, Result result);
  void NextElement(Arguments, Result result);
  void GetCurrentObject(Arguments tuple, Result result);
  Query& Running();

  std::optional<Query> query_;
};

}  // namespace orvan
