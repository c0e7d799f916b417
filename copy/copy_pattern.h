// The types in which each table's source describes its copies.
//
// A table's source keeps these as constants and hands them to the shared steps of clsDataCopy. Members and columns
// remember where they were last found, so the constants live as long as the process.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/components.h"
#include "platform/control_record.h"
#include "platform/database.h"
#include "platform/variant.h"

namespace qmx {

// The sync methods that a dispatcher acts on; it does nothing on any other value.
using control_record::kFullCopy;
using control_record::kOnlyChanged;

inline constexpr int kDeleteTimeout = 150;  // seconds; a large table takes its time

// How a getter's value is converted for its column.
enum class Conversion {
  AsReturned,
  TwoDecimals,  // rounded, halves to even
  YesNo,        // 1 for the ERP's yes, else 0, as one byte
  DateTime,     // a date object as a date-time, Null if it holds no date
};

// One column and the getter that fills it.
struct FieldMap {
  Column column;
  Member getter;
  Conversion conversion = Conversion::AsReturned;
};
using FieldMaps = std::vector<FieldMap>;

// One key within a WHERE text: the text before it, the getter of the key, the text after it. The blanks count.
struct KeyPart {
  std::string_view before;
  Member getter;
  std::string_view after;
  bool isMoment = false;  // a text that the getter returns is then meant as the moment that it reads as
};
using KeyCondition = std::vector<KeyPart>;

// Source and description of the error that a copy raises when it fails.
struct FailureTexts {
  const char* source;
  const char* description;
};

struct FullCopyPattern {
  const char* manager;          // ProgID
  Member list;                  // the manager's listing call
  std::vector<Variant> bounds;  // its arguments
  std::vector<Column> key;      // the table's key; names the record in the report of a failure
  FailureTexts failure;
};

// A key column and its bounds in the audit criteria.
struct AuditParameter {
  const char* field;
  const char* from;
  const char* to;
};

struct ChangedCopyPattern {
  const char* manager;  // ProgID
  const char* record;   // ProgID of the record class, for the audit reader
  std::vector<AuditParameter> parameters;
  std::vector<const char*> outputFields;
  KeyCondition selectKey;
  KeyCondition deleteKey;
  FailureTexts failure;
};

// A record that the ERP inserted or updated, and the local row that takes it.
struct Change {
  Recordset& row;
  const Object& current;  // the audit reader's current object
  const Object& manager;
  bool isNew;  // the row has just been added
};

using Mapper = std::function<void(Recordset& row, const Object& record)>;
using ChangeMapper = std::function<void(const Change& change)>;

}  // namespace qmx
