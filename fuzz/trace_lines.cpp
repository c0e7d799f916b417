// Lines of a trace and of a run record, whatever the values, texts and errors in them: each call writes one line, each
// line is a JSON object, and a text that is UTF-8 reads back as it was.
#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "fuzz/input.h"
#include "fuzz/plain_json.h"
#include "fuzz/plain_utf8.h"
#include "fuzz/raised.h"
#include "fuzz/require.h"
#include "platform/json_line.h"
#include "platform/trace/database_trace.h"
#include "platform/trace/trace.h"
#include "platform/trace/traced_components.h"
#include "tests/support/temp_folder.h"

namespace qmx::fuzz {
namespace {

constexpr int kMostCalls = 12;

Variant AnyValue(Input& input, const Object& object) {
  switch (input.Below(10)) {
    case 0:
      return {};
    case 1:
      return Variant::Null();
    case 2:
      return input.Chance(50);
    case 3:
      return input.Next<std::uint8_t>();
    case 4:
      return input.Next<std::int16_t>();
    case 5:
      return input.Next<double>();
    case 6:
      return DateTime::FromDate(2026, 1, 1).PlusTime(0, 0, input.Next<std::int32_t>());
    case 7:
      return input.Chance(50) ? object : Object();
    default:
      return input.Text(30);
  }
}

Error AnyError(Input& input) {
  Error error(input.Next<std::int32_t>(), input.Text(10), input.Text(30));
  return error.With("details", input.Text(20)).With("table", input.Text(5));
}

// Objects that give, write and raise anything.
class AnyComponents : public Components {
 public:
  explicit AnyComponents(Input& input) : input_(input) {}
  Object CreateObject(std::string_view) override {
    if (input_.Chance(20)) throw AnyError(input_);
    return Object(std::make_shared<Thing>(input_));
  }

 private:
  class Thing final : public Dispatch {
   public:
    explicit Thing(Input& input) : input_(input) {}
    Variant Invoke(const Member&, std::span<const Argument> arguments) override {
      if (input_.Chance(15)) throw AnyError(input_);
      if (input_.Chance(5)) throw std::runtime_error(input_.Text(20));
      const Object other = input_.Chance(50) ? Object(std::make_shared<Thing>(input_)) : Object();
      for (const Argument& argument : arguments) {
        if (argument.IsReference() && input_.Chance(50)) argument.Write(AnyValue(input_, other));
      }
      return AnyValue(input_, other);
    }

   private:
    Input& input_;
  };
  Input& input_;
};

void CallComponents(Input& input, TracedComponents& components, int& lines) {
  ++lines;
  Object object;
  NumberRaised([&] { object = components.CreateObject(input.Text(12)); });
  if (!object) return;
  const std::string member = input.Text(10);
  Variant variable = AnyValue(input, object);
  ++lines;
  try {
    object.Call(std::string_view(member), Ref(variable), AnyValue(input, object));
  } catch (const std::exception&) {  // what it raises is the component's
  }
}

void CallDatabase(Input& input, DatabaseTrace& trace, int& lines) {
  const std::optional<Error> raised = input.Chance(30) ? std::optional(AnyError(input)) : std::nullopt;
  const Error* const error = raised ? &*raised : nullptr;
  const std::string text = input.Text(40);
  ++lines;
  switch (input.Below(8)) {
    case 0:
      return trace.ConnectionOpened(text, error);
    case 1:
      return trace.DefaultDatabaseSet(text, error);
    case 2:
      return trace.Executed(text, input.Next<std::int32_t>(), error);
    case 3:
      return trace.CommandTimeoutSet(input.Next<std::int16_t>(), error);
    case 4:
      return trace.ConnectionClosed(input.Next<std::int16_t>(), error);
    case 5:
      return trace.RecordsetOpened(trace.NextRecordset(), text, 1, 3, 1, input.Next<std::int16_t>(), error);
    case 6:
      return trace.ColumnSet(1, text, AnyValue(input, {}), error);
    default:
      return trace.RecordsetCalled(1, text, error);
  }
}

void RequireLines(const std::string& content, int lines) {
  int found = 0;
  for (std::size_t at = 0; at < content.size(); ++found) {
    const std::size_t end = content.find('\n', at);
    Require(end != std::string::npos, "the last line of the trace ends");
    const std::string line = content.substr(at, end - at);
    Require(line.starts_with("{") && IsJson(line), "a line of the trace is a JSON object: " + Shown(line));
    at = end + 1;
  }
  Require(found == lines, std::to_string(lines) + " calls write " + std::to_string(found) + " lines");
}

std::string ReadBack(const std::string& line, const char* name) {
  return nlohmann::json::parse(line)[name].get<std::string>();
}

bool IsKept(const std::string& text) { return IsUtf8(text) && text.find('\0') == std::string::npos; }

void WriteRecord(Input& input) {
  const std::string text = input.Text(60);
  const std::string line = JsonLine::Object()
                               .Add("text", text)
                               .Add("number", input.Next<std::int64_t>())
                               .Add("none", std::optional<std::int64_t>())
                               .Add("list", JsonLine::Array().Add(JsonLine::Object().Add("again", text)))
                               .Text();
  Require(IsJson(line) && line.find('\n') == std::string::npos, "a run record is one line of JSON: " + Shown(line));
  if (IsKept(text)) RequireSame(ReadBack(line, "text"), text, "the text in a run record");
}

void WriteTrace(Input& input) {
  static const test::TempFolder& folder = *new test::TempFolder(test::TempFolder::Place::InMemory);
  const std::string path = folder / "trace";
  std::filesystem::remove(path);
  const std::string statement = Input(input).Text(40);
  int lines = 1;
  {
    Trace trace(path);
    DatabaseTrace database(trace);
    database.Executed(statement, 0, nullptr);
    AnyComponents target(input);
    TracedComponents components(target, trace);
    for (int i = 0; i < kMostCalls && !input.IsAtEnd(); ++i) {
      input.Chance(50) ? CallComponents(input, components, lines) : CallDatabase(input, database, lines);
    }
  }
  const std::string content = test::ReadFile(path);
  RequireLines(content, lines);
  if (IsKept(statement)) RequireSame(ReadBack(content.substr(0, content.find('\n')), "sql"), statement, "a statement");
}

}  // namespace
}  // namespace qmx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qmx::fuzz;
  Input input(data, size);
  WriteRecord(input);
  WriteTrace(input);
  return 0;
}
