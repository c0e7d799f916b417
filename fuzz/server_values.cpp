// Values and errors as a component server that keeps no rule may give them: each becomes the value that it says, or the
// error that the contract names, and a local column stores just that value.
#include <cmath>
#include <cstdint>

#include "fuzz/input.h"
#include "fuzz/plain_utf8.h"
#include "fuzz/raised.h"
#include "fuzz/require.h"
#include "platform/components/abi_values.h"
#include "platform/database.h"
#include "platform/sqlite/driver.h"
#include "tests/support/temp_folder.h"

namespace qmx::fuzz {
namespace {

using Kind = Variant::Kind;

// A value as the server gives it, and what must become of it.
struct Given {
  qmx_value abi{};
  std::string text;  // that the value borrows
  Variant expected;
  std::int32_t error = 0;
};

Given Choose(Input& input) {
  Given given;
  given.abi.struct_size = sizeof given.abi;
  given.abi.kind = static_cast<std::uint16_t>(input.Below(12));
  given.abi.flags = input.Next<std::uint8_t>();
  const bool isSmall = input.Chance(50);
  const auto raw = input.Next<std::int64_t>();
  const std::int64_t number = isSmall ? raw % 1000 : raw;
  const auto whole = static_cast<std::int32_t>(number);
  switch (given.abi.kind) {
    case QMX_EMPTY:
      break;
    case QMX_NULL:
      given.expected = Variant::Null();
      break;
    case QMX_BOOLEAN:
      given.abi.as.boolean = whole;
      given.expected = whole != 0;
      break;
    case QMX_UINT8:
    case QMX_INT16: {
      given.abi.as.integer = whole;
      const bool isByte = given.abi.kind == QMX_UINT8;
      const bool fits = isByte ? whole >= 0 && whole <= 255 : whole >= -32768 && whole <= 32767;
      given.error = fits ? 0 : errors::kOverflow;
      given.expected = isByte ? Variant(static_cast<std::uint8_t>(whole)) : Variant(static_cast<std::int16_t>(whole));
      break;
    }
    case QMX_INT32:
      given.abi.as.integer = whole;
      given.expected = whole;
      break;
    case QMX_DOUBLE:
      std::memcpy(&given.abi.as.number, &number, sizeof number);
      given.expected = given.abi.as.number;
      break;
    case QMX_DATETIME:
      given.abi.as.seconds = isSmall ? raw % 300'000'000'000 : raw;
      given.expected = DateTime::FromSeconds(given.abi.as.seconds);
      // From 0100-01-01 to 9999-12-31 23:59:59.
      if (given.abi.as.seconds < -56802297600 || given.abi.as.seconds > 255611462399) given.error = errors::kOverflow;
      break;
    case QMX_TEXT:
      given.text = input.Text(80);
      given.abi.as.text = {given.text.data(), given.text.size()};
      if (isSmall && given.text.empty()) given.abi.as.text.data = nullptr;
      given.expected = given.text;
      if (!IsUtf8(given.text) || given.text.find('\0') != std::string::npos) given.error = errors::kTypeMismatch;
      break;
    case QMX_OBJECT:  // server_objects gives others than none
      given.abi.as.object = nullptr;
      given.expected = Object();
      break;
    default:
      given.error = errors::kTypeMismatch;
  }
  return given;
}

bool IsSame(const Variant& one, const Variant& other) {
  if (one.GetKind() != other.GetKind()) return false;
  if (one.GetKind() != Kind::Double || !std::isnan(one.ToDouble())) return one == other;
  return std::isnan(other.ToDouble());
}

std::string ShownValue(const Variant& value) {
  return std::to_string(static_cast<int>(value.GetKind())) + ":" +
         (value.GetKind() == Kind::Object ? "object" : Shown(value.ToText()));
}

class Columns {
 public:
  Columns() {
    connection_.Open("Provider=SQLite;Mode=Create;Data Source=" + (folder_ / "local.db"), "", "");
    connection_.Execute("create table v (t varchar(200), i integer, s smallint, b tinyint, w double, d datetime)");
  }

  void Store(const Variant& value) {
    constexpr std::pair<const char*, Kind> kColumns[] = {{"t", Kind::Text},   {"i", Kind::Int32},
                                                         {"s", Kind::Int16},  {"b", Kind::UInt8},
                                                         {"w", Kind::Double}, {"d", Kind::DateTime}};
    for (const auto& [name, kind] : kColumns) {
      Variant expected = value.IsEmpty() ? Variant::Null() : value;
      std::int32_t mustRaise = NumberRaised([&, kind = kind] { expected = expected.ConvertedTo(kind); });
      if (mustRaise == 0 && !expected.IsFinite()) mustRaise = errors::kOverflow;
      connection_.Execute("delete from v");
      const std::int32_t raised = NumberRaised([&, name = name] { Add(name, value); });
      const std::string what = ShownValue(value) + " in column " + name;
      Require(raised == mustRaise, "the error of " + what);
      if (mustRaise != 0) continue;
      const Variant stored = Read(name);
      Require(IsSame(stored, expected), what + " is stored as " + ShownValue(stored) + ", not " + ShownValue(expected));
    }
  }

 private:
  void Add(const char* name, const Variant& value) {
    Recordset rows({});
    rows.Open("v", connection_, kCursorKeyset, kLockOptimistic, kCommandTable);
    rows.AddNew();
    rows.Fields(std::string_view(name)) = value;
    rows.Update();
    rows.Close();
  }
  Variant Read(const char* name) {
    Recordset rows({});
    rows.Open("select * from v", connection_, kCursorKeyset, kLockOptimistic, kCommandText);
    return rows.Fields(std::string_view(name)).Value();
  }

  test::TempFolder folder_{test::TempFolder::Place::InMemory};
  SqliteDriver driver_;
  Connection connection_{{&driver_}, {}};
};

// Texts of an error are for display: they are valid UTF-8 whatever the server gave, and a missing one is replaced.
void BecomesAnError(Input& input) {
  const std::string source = input.Text(20), description = input.Text(40), details = input.Text(40);
  const auto number = input.Next<std::int32_t>();
  const bool hasData = input.Chance(80);
  qmx_error abi = EmptyAbiError();
  abi.number = number;
  if (hasData) {
    abi.source = source.data(), abi.source_length = source.size();
    abi.description = description.data(), abi.description_length = description.size();
    abi.details = details.data(), abi.details_length = details.size();
  }
  const Error error = FromAbi(abi, "The.Component");
  Require(error.Number() == (number == 0 ? errors::kInternal : number), "the number of a server's error");
  const bool hasSource = hasData && !source.empty();
  if (hasSource && IsUtf8(source) && source.find('\0') == std::string::npos) {
    RequireSame(error.Source(), source, "the source of a server's error");
  }
  if (!hasSource) RequireSame(error.Source(), "The.Component", "the source in place of a missing one");
  const std::string chain = DescribeChain(error);
  Require(IsUtf8(error.Source() + error.Description() + chain), "the texts of a server's error are UTF-8");
  Require(chain.find('\0') == std::string::npos && !error.Description().empty(), "the texts of an error can be shown");
}

}  // namespace
}  // namespace qmx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qmx;
  using namespace qmx::fuzz;
  static Columns& columns = *new Columns;
  constexpr int kMostValues = 4;
  Input input(data, size);
  for (int i = 0; i < kMostValues && !input.IsAtEnd(); ++i) {
    const Given given = Choose(input);
    Variant value;
    const std::int32_t raised = NumberRaised([&] { value = FromAbi(given.abi, Reference::Given); });
    const std::string what = "a value of kind " + std::to_string(given.abi.kind);
    Require(raised == given.error, "the error of " + what);
    if (raised != 0) continue;
    Require(IsSame(value, given.expected), what + " is " + ShownValue(value) + ", not " + ShownValue(given.expected));
    columns.Store(value);
  }
  BecomesAnError(input);
  return 0;
}
