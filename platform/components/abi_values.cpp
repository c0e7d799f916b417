#include "platform/components/abi_values.h"

#include <exception>
#include <typeinfo>
#include <utility>

#include "platform/components/host_object.h"
#include "platform/components/server_object.h"

namespace qmx {
namespace {

std::int32_t Within(std::int32_t value, std::int32_t low, std::int32_t high) {
  if (value >= low && value <= high) return value;
  throw Error(errors::kOverflow, "Components",
              "Overflow: " + std::to_string(value) + " does not lie between " + std::to_string(low) + " and " +
                  std::to_string(high) + ", as its kind of value asks.");
}

DateTime Moment(std::int64_t seconds) {
  static const DateTime first = DateTime::FromDate(100, 1, 1);
  static const DateTime last = DateTime::FromDate(9999, 12, 31).PlusTime(23, 59, 59);
  const DateTime moment = DateTime::FromSeconds(seconds);
  if (moment >= first && moment <= last) return moment;
  throw Error(errors::kOverflow, "Components",
              "Overflow: a date-time of " + std::to_string(seconds) + " seconds lies outside the years 100 to 9999.");
}

std::string_view CheckedText(const char* data, std::size_t length) {
  const std::string_view text = TextFromAbi(data, length);
  RequireFlawless(text, "Components");
  return text;
}

// Fills `out` for the other side, except for objects, whose reference count depends on the direction.
void Borrow(const Variant& value, qmx_value& out) {
  switch (value.GetKind()) {
    case Variant::Kind::Empty:
      out.kind = QMX_EMPTY;
      break;
    case Variant::Kind::Null:
      out.kind = QMX_NULL;
      break;
    case Variant::Kind::Boolean:
      out.kind = QMX_BOOLEAN;
      out.as.boolean = value.ToBoolean() ? 1 : 0;
      break;
    case Variant::Kind::UInt8:
      out.kind = QMX_UINT8;
      out.as.integer = value.ToUInt8();
      break;
    case Variant::Kind::Int16:
      out.kind = QMX_INT16;
      out.as.integer = value.ToInt16();
      break;
    case Variant::Kind::Int32:
      out.kind = QMX_INT32;
      out.as.integer = value.ToInt32();
      break;
    case Variant::Kind::Double:
      out.kind = QMX_DOUBLE;
      out.as.number = value.ToDouble();
      break;
    case Variant::Kind::DateTime:
      out.kind = QMX_DATETIME;
      out.as.seconds = value.ToDateTime().Seconds();
      break;
    case Variant::Kind::Text:
      out.kind = QMX_TEXT;
      out.as.text.data = value.IfText()->data();
      out.as.text.length = value.IfText()->size();
      break;
    case Variant::Kind::Object:
      out.kind = QMX_OBJECT;
      out.as.object = nullptr;
      break;
  }
}

}  // namespace

Variant AnyFromAbi(const qmx_value& value, Reference reference) {
  switch (value.kind) {
    case QMX_EMPTY:
      return {};
    case QMX_NULL:
      return Variant::Null();
    case QMX_BOOLEAN:
      return value.as.boolean != 0;
    case QMX_UINT8:
      return static_cast<std::uint8_t>(Within(value.as.integer, 0, UINT8_MAX));
    case QMX_INT16:
      return static_cast<std::int16_t>(Within(value.as.integer, INT16_MIN, INT16_MAX));
    case QMX_INT32:
      return value.as.integer;
    case QMX_DOUBLE:
      return value.as.number;
    case QMX_DATETIME:
      return Moment(value.as.seconds);
    case QMX_TEXT:
      return CheckedText(value.as.text.data, value.as.text.length);
    case QMX_OBJECT:
      return ObjectFromAbi(value.as.object, reference);
    default:
      throw Error(errors::kTypeMismatch, "Components",
                  "Type mismatch: a component gave a value of the unknown kind " + std::to_string(value.kind) + ".");
  }
}

Object ObjectFromAbi(qmx_object* object, Reference reference) {
  if (!object) return {};
  if (std::shared_ptr<Dispatch> ours = HostObjectTarget(object)) {
    if (reference == Reference::Given) object->type->release(object);
    return Object(std::move(ours));
  }
  Object theirs(std::make_shared<ServerObject>(object));
  if (reference == Reference::Borrowed) object->type->add_ref(object);
  return theirs;
}

qmx_object* GiveObject(const Object& object) {
  if (!object) return nullptr;
  const Dispatch& target = *object.Target();
  if (typeid(target) != typeid(ServerObject)) return ExportHostObject(object.Target());
  qmx_object* const theirs = static_cast<const ServerObject&>(target).Pointer();
  theirs->type->add_ref(theirs);
  return theirs;
}

AbiArguments::AbiArguments(std::span<const Argument> arguments) : arguments_(arguments) {
  pointers_ = usualPointers_.data();
  lent_ = usualLent_.data();
  qmx_value* values = values_.data();
  if (arguments.size() > kUsual) {
    manyValues_.resize(arguments.size());
    manyPointers_.resize(arguments.size());
    manyLent_.resize(arguments.size());
    values = manyValues_.data();
    pointers_ = manyPointers_.data();
    lent_ = manyLent_.data();
  }
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    qmx_value& out = values[i];
    const Variant& value = arguments[i].Value();
    pointers_[i] = &out;
    lent_[i] = nullptr;
    out.struct_size = sizeof out;
    out.flags = arguments[i].IsReference() ? QMX_BY_REFERENCE : 0;
    Borrow(value, out);
    if (value.IfObject() && *value.IfObject()) lent_[i] = out.as.object = GiveObject(*value.IfObject());
  }
}

AbiArguments::~AbiArguments() {
  for (qmx_object* const object : std::span(lent_, arguments_.size())) {
    if (object) object->type->release(object);
  }
}

Variant AbiArguments::Take(const qmx_value& result) {
  std::exception_ptr failure;
  const auto taken = [&](const qmx_value& value) -> Variant {
    try {
      return FromAbi(value, Reference::Given);
    } catch (...) {
      if (!failure) failure = std::current_exception();
      return {};
    }
  };
  std::vector<std::pair<const Argument*, Variant>> written;
  for (std::size_t i = 0; i < arguments_.size(); ++i) {
    if (!arguments_[i].IsReference()) continue;
    const qmx_value& value = *pointers_[i];
    const bool sameObject = value.kind == QMX_OBJECT && lent_[i] && lent_[i] == value.as.object;
    if (!sameObject) written.emplace_back(&arguments_[i], taken(value));
  }
  Variant returned = taken(result);
  if (failure) std::rethrow_exception(failure);
  for (auto& [variable, value] : written) variable->Write(std::move(value));
  return returned;
}

void GiveValue(const Variant& value, qmx_value& out) {
  Borrow(value, out);
  if (value.IfObject()) out.as.object = GiveObject(*value.IfObject());
}

Error FromAbi(const qmx_error& error, const std::string& source) {
  const std::string givenSource = ShownText(error.source, error.source_length);
  const std::string description = ShownText(error.description, error.description_length);
  Error result(error.number != 0 ? error.number : errors::kInternal, givenSource.empty() ? source : givenSource,
               description.empty() ? "The component failed without a description." : description);
  const std::string details = ShownText(error.details, error.details_length);
  if (!details.empty()) result.With("details", details);
  return result;
}

qmx_status FailWithCurrentError(qmx_error* error) noexcept {
  static std::optional<Error> last;
  try {
    last = CurrentError();
    error->number = last->Number();
    error->source = last->Source().data();
    error->source_length = last->Source().size();
    error->description = last->Description().data();
    error->description_length = last->Description().size();
  } catch (...) {
    error->number = errors::kOutOfMemory;  // the texts stay empty
  }
  return QMX_FAILED;
}

}  // namespace qmx
