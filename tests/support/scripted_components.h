// Components that a test scripts: every call is written to the call log, every answer comes from the script.
//
// Member names are compared with their letters as they are, more strictly than real components do, because the system
// keeps the ERP's own spellings. A member that the script does not have is error 438, a ProgID 429, a wrong number of
// arguments 450.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/components.h"
#include "platform/error.h"
#include "tests/support/call_log.h"

namespace qmx::test {

// Every creation and every call of a scripted ERP: logged, counted, and made to fail when its number is up.
class ScriptedCalls {
 public:
  explicit ScriptedCalls(CallLog& log) : log_(log) {}
  void FailAt(std::int64_t call) { failAt_ = call; }  // counted from 1; 0 for none
  bool HasFailed() const { return failAt_ != 0 && made_ >= failAt_; }
  void Count(const std::string& line);

 private:
  CallLog& log_;
  std::int64_t made_ = 0;
  std::int64_t failAt_ = 0;
};

// An object with scripted answers.
class ScriptedObject : public Dispatch {
 public:
  using Arguments = std::span<const Argument>;
  using Answer = std::function<Variant(Arguments)>;
  static constexpr std::size_t kAnyNumber = std::size_t(-1);

  ScriptedObject(ScriptedCalls& calls, std::string name) : calls_(calls), name_(std::move(name)) {}

  ScriptedObject& On(const std::string& member, std::size_t arguments, Answer answer);
  ScriptedObject& Gives(const std::string& member, Variant value);          // without arguments
  ScriptedObject& Takes(const std::string& member, std::size_t arguments);  // and gives nothing

  // Whether the manager that the object comes from was closed. Every call after that fails, as ERPs' calls may do that
  // free what a manager holds.
  using Closed = std::shared_ptr<bool>;
  void EndsWith(Closed closed) { closed_ = std::move(closed); }
  const Closed& ManagerIsClosed() const { return closed_; }

  const std::string& Name() const { return name_; }
  Variant Invoke(const Member& member, Arguments arguments) override;

 private:
  struct Entry {
    std::size_t arguments;
    Answer answer;
  };
  ScriptedCalls& calls_;
  std::string name_;
  std::map<std::string, Entry, std::less<>> members_;
  Closed closed_;
};

// What a getter gives: a value, or an error that it raises.
struct GetterValue {
  template <typename Value>
  requires std::convertible_to<Value, Variant> GetterValue(Value value) : value(std::move(value)) {}
  GetterValue(Error failure) : failure(std::move(failure)) {}
  Variant value;
  std::optional<Error> failure;
};
// By the getter's name. Getters that are not named return the value of kAnyOther.
using Getters = std::map<std::string, GetterValue>;
inline constexpr const char* kAnyOther = "*";

// An entry of the audit reader.
struct AuditEntry {
  bool deleted = false;
  bool updated = false;
  bool inserted = false;
  Getters current;
};
inline AuditEntry Inserted(Getters current) { return {false, false, true, std::move(current)}; }
inline AuditEntry Updated(Getters current) { return {false, true, false, std::move(current)}; }
inline AuditEntry Deleted(Getters current) { return {true, false, false, std::move(current)}; }

// The civil time of a date object, in the ERP's counting: year from 1900, month from 0.
struct ErpDate {
  int year = 0, month = 0, day = 0, hours = 0, minutes = 0, seconds = 0;
};

// A whole scripted ERP: managers with their listings, the audit classes, date objects.
class ScriptedErp : public Components {
 public:
  // What a listing call gives; nothing for no object.
  using Listing = std::function<std::optional<std::vector<Getters>>(ScriptedObject::Arguments bounds)>;

  explicit ScriptedErp(CallLog& log) : calls(log) {}

  ScriptedCalls calls;

  // A manager that answers its listing call ("List" or as named) with the same records whatever the bounds.
  void Lists(const std::string& managerProgId, std::vector<Getters> records, const std::string& member = "List");
  void ListsNoObject(const std::string& managerProgId, const std::string& member = "List");
  void ListsBy(const std::string& managerProgId, Listing listing, const std::string& member = "List");

  // The record class of an audited table, and the entries of the audit reader.
  void Audits(const std::string& recordProgId, std::vector<AuditEntry> entries);
  // The same for a reader that is initialised several times: the entries of each time.
  void AuditsInTurn(const std::string& recordProgId, const std::vector<std::vector<AuditEntry>>& turns);
  std::optional<Error> auditFailure;  // raised by the reader's hasMoreElements after the last entry

  // A date object that holds this moment, as a record's getter gives it.
  Object Date(ErpDate date);
  std::function<ErpDate()> today = [] { return ErpDate{126, 10, 20, 14, 5, 9}; };  // what a new date object holds

  // Further components.
  void Serves(const std::string& progId, std::function<Object()> make) { makers_[progId] = std::move(make); }
  std::shared_ptr<ScriptedObject> Make(const std::string& name) {
    return std::make_shared<ScriptedObject>(calls, name);
  }

  Object CreateObject(std::string_view progId) override;

 private:
  Object Enumeration(std::vector<Getters> records, const ScriptedObject::Closed& closed);
  Object Record(const std::string& name, const Getters& getters, const ScriptedObject::Closed& closed);
  Object Reader();
  Object Status();
  std::string Numbered(const std::string& kind) { return kind + std::to_string(++numbers_[kind]); }

  std::map<std::string, std::function<Object()>, std::less<>> makers_;
  std::map<std::string, int> numbers_;
  std::vector<AuditEntry> entries_;
  std::vector<std::size_t> turnEnds_;
};

}  // namespace qmx::test
