#include "platform/trace/database_trace.h"

#include "platform/error.h"
#include "platform/trace/trace.h"

namespace qmx {
namespace {

JsonLine ConnectionLine(std::string_view operation) {
  return JsonLine::Object().Add("kind", "connection").Add("op", operation);
}

JsonLine RecordsetLine(std::string_view operation, int recordset) {
  return JsonLine::Object().Add("kind", "recordset").Add("op", operation).Add("recordset", recordset);
}

void Finish(Trace& trace, JsonLine line, const Error* error) {
  if (error) line.Add("error", TraceError(*error));
  trace.Write(line);
}

}  // namespace

void DatabaseTrace::ConnectionOpened(std::string_view maskedText, const Error* error) {
  JsonLine line = ConnectionLine("Open");
  line.Add("text", maskedText);
  Finish(trace_, std::move(line), error);
}

void DatabaseTrace::DefaultDatabaseSet(std::string_view value, const Error* error) {
  JsonLine line = ConnectionLine("defaultdatabase");
  line.Add("value", value);
  Finish(trace_, std::move(line), error);
}

void DatabaseTrace::Executed(std::string_view statement, std::int64_t affected, const Error* error) {
  JsonLine line = ConnectionLine("Execute");
  line.Add("sql", statement);
  if (!error) line.Add("affected", affected);
  Finish(trace_, std::move(line), error);
}

void DatabaseTrace::CommandTimeoutSet(int seconds, const Error* error) {
  JsonLine line = ConnectionLine("CommandTimeout");
  line.Add("value", seconds);
  Finish(trace_, std::move(line), error);
}

void DatabaseTrace::ConnectionClosed(std::int64_t retries, const Error* error) {
  JsonLine line = ConnectionLine("Close");
  if (retries > 0) line.Add("retries", retries);
  Finish(trace_, std::move(line), error);
}

void DatabaseTrace::RecordsetOpened(int recordset, std::string_view source, int cursorType, int lockType, int options,
                                    std::optional<std::int64_t> rows, const Error* error) {
  JsonLine line = RecordsetLine("Open", recordset);
  line.Add("source", source);
  line.Add("cursor", cursorType);
  line.Add("lock", lockType);
  line.Add("options", options);
  if (rows && !error) line.Add("rows", *rows);
  Finish(trace_, std::move(line), error);
}

void DatabaseTrace::ColumnSet(int recordset, std::string_view column, const Variant& value, const Error* error) {
  JsonLine line = RecordsetLine("Set", recordset);
  line.Add("column", column);
  line.AddJson("value", TraceValue(value));
  Finish(trace_, std::move(line), error);
}

void DatabaseTrace::RecordsetCalled(int recordset, std::string_view operation, const Error* error) {
  Finish(trace_, RecordsetLine(operation, recordset), error);
}

}  // namespace qmx
