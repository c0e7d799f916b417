#include "platform/trace/trace.h"

#include <cerrno>
#include <cstring>

#include "platform/error.h"
#include "platform/system/environment.h"
#include "platform/trace/traced_object.h"
#include "platform/variant.h"

namespace qmx {

Trace::Trace(const std::string& path) : path_(path), file_(OpenPlainFile(path, FileUse::Append)) {
  if (file_.stream) return;
  const std::string reason = file_.reason.empty() ? std::strerror(file_.code) : "it " + file_.reason;
  throw Error(errors::kPathFileAccess, "Trace",
              "The trace file \"" + path + "\" that QMX_TRACE names cannot be written: " + reason + ".");
}

std::unique_ptr<Trace> Trace::FromEnvironment() {
  const std::string path = EnvironmentVariable("QMX_TRACE").value_or("");
  return path.empty() ? nullptr : std::make_unique<Trace>(path);
}

void Trace::Write(const JsonLine& line) noexcept {
  std::FILE* const file = file_.stream.get();
  if (!file) return;
  try {
    const std::string text = line.Text() + "\n";
    if (std::fwrite(text.data(), 1, text.size(), file) == text.size() && std::fflush(file) == 0) return;
    std::fprintf(stderr, "The trace file \"%s\" cannot be written any further: %s.\n", path_.c_str(),
                 std::strerror(errno));
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "The trace in \"%s\" ends: %s.\n", path_.c_str(), problem.what());
  }
  file_.stream.reset();
}

std::string TraceValue(const Variant& value) {
  switch (value.GetKind()) {
    case Variant::Kind::Empty:
      return "{}";
    case Variant::Kind::Null:
      return "null";
    case Variant::Kind::Boolean:
      return value.ToBoolean() ? "true" : "false";
    case Variant::Kind::UInt8:
    case Variant::Kind::Int16:
    case Variant::Kind::Int32:
      return std::to_string(value.ToInt32());
    case Variant::Kind::Double:
      return JsonLine::NumberValue(value.ToDouble());
    case Variant::Kind::DateTime:
      return JsonLine::Object().Add("date", value.ToDateTime().ToText()).Text();
    case Variant::Kind::Text:
      return JsonLine::TextValue(*value.IfText());
    case Variant::Kind::Object:
      break;
  }
  const Object& object = *value.IfObject();
  std::optional<std::int64_t> number;
  if (object) number = TracedObject::NumberOf(object);
  return JsonLine::Object().Add("object", number).Text();
}

JsonLine TraceError(const Error& error) {
  JsonLine shown = JsonLine::Object();
  shown.Add("number", error.Number()).Add("source", error.Source()).Add("description", error.Description());
  for (const auto& [what, value] : error.Details()) {
    if (what == "details") shown.Add("details", value);
  }
  return shown;
}

}  // namespace qmx
