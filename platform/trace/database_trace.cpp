#include "platform/trace/database_trace.h"

#include <nlohmann/json.hpp>

#include "platform/error.h"
#include "platform/trace/trace.h"

namespace qmx {
namespace {

using Json = nlohmann::ordered_json;

Json ConnectionLine(std::string_view operation) { return {{"kind", "connection"}, {"op", operation}}; }

Json RecordsetLine(std::string_view operation, int recordset) {
  return {{"kind", "recordset"}, {"op", operation}, {"recordset", recordset}};
}

void Finish(Trace& trace, Json line, const Error* error) {
  if (error) line["error"] = TraceError(*error);
  trace.Write(line);
}

}  // namespace

void DatabaseTrace::ConnectionOpened(std::string_view maskedText, const Error* error) {
  Json line = ConnectionLine("Open");
  line["text"] = maskedText;
  Finish(trace_, std::move(line), error);
}

void DatabaseTrace::DefaultDatabaseSet(std::string_view value, const Error* error) {
  Json line = ConnectionLine("defaultdatabase");
  line["value"] = value;
  Finish(trace_, std::move(line), error);
}

void DatabaseTrace::Executed(std::string_view statement, std::int64_t affected, const Error* error) {
  Json line = ConnectionLine("Execute");
  line["sql"] = statement;
  if (!error) line["affected"] = affected;
  Finish(trace_, std::move(line), error);
}

void DatabaseTrace::CommandTimeoutSet(int seconds, const Error* error) {
  Json line = ConnectionLine("CommandTimeout");
  line["value"] = seconds;
  Finish(trace_, std::move(line), error);
}

void DatabaseTrace::ConnectionClosed(std::int64_t retries, const Error* error) {
  Json line = ConnectionLine("Close");
  if (retries > 0) line["retries"] = retries;
  Finish(trace_, std::move(line), error);
}

void DatabaseTrace::RecordsetOpened(int recordset, std::string_view source, int cursorType, int lockType, int options,
                                    std::optional<std::int64_t> rows, const Error* error) {
  Json line = RecordsetLine("Open", recordset);
  line["source"] = source;
  line["cursor"] = cursorType;
  line["lock"] = lockType;
  line["options"] = options;
  if (rows && !error) line["rows"] = *rows;
  Finish(trace_, std::move(line), error);
}

void DatabaseTrace::ColumnSet(int recordset, std::string_view column, const Variant& value, const Error* error) {
  Json line = RecordsetLine("Set", recordset);
  line["column"] = column;
  line["value"] = TraceValue(value);
  Finish(trace_, std::move(line), error);
}

void DatabaseTrace::RecordsetCalled(int recordset, std::string_view operation, const Error* error) {
  Finish(trace_, RecordsetLine(operation, recordset), error);
}

}  // namespace qmx
