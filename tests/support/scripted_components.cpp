#include "tests/support/scripted_components.h"

namespace qmx::test {
namespace {

std::string ShowArgument(const Argument& argument) {
  const Object* object = argument.Value().IfObject();
  const auto* scripted = object ? dynamic_cast<const ScriptedObject*>(object->Target().get()) : nullptr;
  return Show(argument.Value(), scripted ? scripted->Name() : "object");
}

// The shared place of an enumeration, or of the audit reader.
struct Place {
  std::size_t next = 0;
  std::size_t end = 0;
  std::size_t turn = 0;
};

}  // namespace

void ScriptedCalls::Count(const std::string& line) {
  if (++made_ != failAt_) return log_.Add(line);
  log_.Add(line + " -> error 7000");
  throw Error(7000, "Orvan", "Call " + std::to_string(made_) + " was made to fail: " + line);
}

ScriptedObject& ScriptedObject::On(const std::string& member, std::size_t arguments, Answer answer) {
  members_[member] = {arguments, std::move(answer)};
  return *this;
}

ScriptedObject& ScriptedObject::Gives(const std::string& member, Variant value) {
  return On(member, 0, [value = std::move(value)](Arguments) { return value; });
}

ScriptedObject& ScriptedObject::Takes(const std::string& member, std::size_t arguments) {
  return On(member, arguments, [](Arguments) { return Variant(); });
}

Variant ScriptedObject::Invoke(const Member& member, Arguments arguments) {
  const std::string name(member.Name());
  std::string line = name_ + '.' + name + '(';
  for (std::size_t i = 0; i < arguments.size(); ++i) line += (i ? ", " : "") + ShowArgument(arguments[i]);
  calls_.Count(line + ')');
  if (closed_ && *closed_) throw Error(errors::kInvalidCall, name_, "The manager of " + name_ + " was closed before.");
  auto entry = members_.find(name);
  if (entry == members_.end()) entry = members_.find(kAnyOther);
  if (entry == members_.end()) {
    throw Error(errors::kNoSuchMember, name_, "There is no member " + name + ".").With("member", name);
  }
  if (entry->second.arguments != kAnyNumber && entry->second.arguments != arguments.size()) {
    throw Error(errors::kWrongArgumentCount, name_, "Wrong number of arguments for " + name + ".").With("member", name);
  }
  return entry->second.answer(arguments);
}

void ScriptedErp::Lists(const std::string& managerProgId, std::vector<Getters> records, const std::string& member) {
  ListsBy(
      managerProgId, [records = std::move(records)](ScriptedObject::Arguments) { return records; }, member);
}

void ScriptedErp::ListsNoObject(const std::string& managerProgId, const std::string& member) {
  ListsBy(
      managerProgId, [](ScriptedObject::Arguments) { return std::nullopt; }, member);
}

void ScriptedErp::ListsBy(const std::string& managerProgId, Listing listing, const std::string& member) {
  Serves(managerProgId, [this, listing = std::move(listing), member] {
    const auto manager = Make("manager");
    const auto closed = std::make_shared<bool>(false);
    manager->EndsWith(closed);
    manager->Takes("initialize", 1);
    manager->On("Close", 0, [closed](ScriptedObject::Arguments) {
      *closed = true;
      return Variant();
    });
    const auto answer = [this, listing, closed](ScriptedObject::Arguments bounds) -> Variant {
      const std::optional<std::vector<Getters>> records = listing(bounds);
      return records ? Enumeration(*records, closed) : Object();
    };
    manager->On(member, ScriptedObject::kAnyNumber, answer);
    return Object(manager);
  });
}

void ScriptedErp::Audits(const std::string& recordProgId, std::vector<AuditEntry> entries) {
  AuditsInTurn(recordProgId, {std::move(entries)});
}

void ScriptedErp::AuditsInTurn(const std::string& recordProgId, const std::vector<std::vector<AuditEntry>>& turns) {
  entries_.clear();
  turnEnds_.clear();
  for (const std::vector<AuditEntry>& turn : turns) {
    entries_.insert(entries_.end(), turn.begin(), turn.end());
    turnEnds_.push_back(entries_.size());
  }
  Serves(recordProgId, [this] {
    const auto record = Make("recordClass");
    record->Gives("getClass", Object(Make("class")));
    return Object(record);
  });
}

Object ScriptedErp::Date(ErpDate start) {
  const auto date = Make(Numbered("date"));
  const auto held = std::make_shared<ErpDate>(start);
  const auto part = [&](const std::string& getter, const std::string& setter, int ErpDate::*field) {
    date->On(getter, 0, [held, field](ScriptedObject::Arguments) { return Variant((*held).*field); });
    date->On(setter, 1, [held, field](ScriptedObject::Arguments arguments) {
      (*held).*field = arguments[0].Value().ToInt32();
      return Variant();
    });
  };
  part("getyear", "setYear", &ErpDate::year);
  part("getMonth", "setmonth", &ErpDate::month);
  part("getDate", "setDate", &ErpDate::day);
  part("getHours", "setHours", &ErpDate::hours);
  part("getMinutes", "setMinutes", &ErpDate::minutes);
  part("getSeconds", "setSeconds", &ErpDate::seconds);
  return Object(date);
}

Object ScriptedErp::CreateObject(std::string_view progId) {
  calls.Count("create " + std::string(progId));
  if (const auto maker = makers_.find(progId); maker != makers_.end()) return maker->second();
  if (progId == "java:java.util.Date") return Date(today());
  if (progId == "audit.auditCriteria") {
    const auto criteria = Make("criteria");
    criteria->Takes("setPeriod", 1).Takes("addParameter", 1).Takes("addOutputField", 1);
    return Object(criteria);
  }
  if (progId == "audit.period") {
    const auto period = Make("period");
    period->Takes("setFrom", 1).Takes("setTo", 1);
    return Object(period);
  }
  if (progId == "audit.Parameter") {
    const auto parameter = Make(Numbered("parameter"));
    parameter->Takes("setFieldName", 1).Takes("setFrom", 1).Takes("setTo", 1);
    return Object(parameter);
  }
  if (progId == "audit.AuditReader") return Reader();
  if (progId == "audit.RecordStatus") return Status();
  throw Error(errors::kCannotCreateObject, "ScriptedErp", "Cannot create object " + std::string(progId) + ".")
      .With("progid", std::string(progId));
}

Object ScriptedErp::Enumeration(std::vector<Getters> records, const ScriptedObject::Closed& closed) {
  const auto enumeration = Make("listing");
  enumeration->EndsWith(closed);
  const auto place = std::make_shared<Place>();
  const auto kept = std::make_shared<std::vector<Getters>>(std::move(records));
  enumeration->On("hasMoreElements", 0,
                  [place, kept](ScriptedObject::Arguments) { return Variant(place->next < kept->size()); });
  enumeration->On("nextElement", 0, [this, place, kept, closed](ScriptedObject::Arguments) -> Variant {
    return Record(Numbered("listed"), kept->at(place->next++), closed);
  });
  return Object(enumeration);
}

Object ScriptedErp::Record(const std::string& name, const Getters& getters, const ScriptedObject::Closed& closed) {
  const auto record = Make(name);
  record->EndsWith(closed);
  for (const auto& [getter, value] : getters) {
    record->On(getter, 0, [value = value](ScriptedObject::Arguments) {
      if (value.failure) throw *value.failure;
      return value.value;
    });
  }
  return Object(record);
}

// An entry and its tuple are named by the entry's number, by which the reader and the status know them again.
Object ScriptedErp::Reader() {
  const auto reader = Make("reader");
  const auto place = std::make_shared<Place>();
  ScriptedObject* const own = reader.get();
  reader->On("initialize", 3, [this, place, own](ScriptedObject::Arguments arguments) {
    const Object* manager = arguments[0].Value().IfObject();
    const auto* scripted = manager ? dynamic_cast<const ScriptedObject*>(manager->Target().get()) : nullptr;
    if (scripted) own->EndsWith(scripted->ManagerIsClosed());
    if (place->turn < turnEnds_.size()) place->end = turnEnds_[place->turn++];
    return Variant();
  });
  reader->On("hasMoreElements", 0, [this, place](ScriptedObject::Arguments) {
    if (place->next == place->end && auditFailure) throw *auditFailure;
    return Variant(place->next < place->end);
  });
  reader->On("nextElement", 0, [this, place](ScriptedObject::Arguments) -> Variant {
    const std::string number = std::to_string(++place->next);
    const auto entry = Make("entry" + number);
    entry->Gives("getTuple", Object(Make("tuple" + number)));
    return Object(entry);
  });
  reader->On("getCurrentObject", 1, [this, place, own](ScriptedObject::Arguments arguments) -> Variant {
    const std::string tuple = ShowArgument(arguments[0]);
    if (tuple != "tuple" + std::to_string(place->next)) throw Error(errors::kInvalidCall, "reader", "No such tuple.");
    return Record("current" + std::to_string(place->next), entries_.at(place->next - 1).current,
                  own->ManagerIsClosed());
  });
  return Object(reader);
}

Object ScriptedErp::Status() {
  const auto status = Make("status");
  const auto flag = [&](const std::string& member, bool AuditEntry::*what) {
    status->On(member, 1, [this, what](ScriptedObject::Arguments arguments) {
      const std::string entry = ShowArgument(arguments[0]);
      if (!entry.starts_with("entry")) throw Error(errors::kTypeMismatch, "status", entry + " is no audit entry.");
      return Variant(entries_.at(std::stoul(entry.substr(5)) - 1).*what);
    });
  };
  flag("isDeleted", &AuditEntry::deleted);
  flag("isUpdated", &AuditEntry::updated);
  flag("isInserted", &AuditEntry::inserted);
  return Object(status);
}

}  // namespace qmx::test
