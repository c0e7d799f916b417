// A look inside the copy engine, for tests of its private routines.
#pragma once

#include "copy/clsDataCopy.h"

namespace qmx::test {

struct DataCopyInside {
  clsDataCopy& engine;

  std::string& LogFile() { return engine.LogFile; }
  std::int32_t& InsertCount() { return engine.InsertCount; }
  std::int32_t& UpdateCount() { return engine.UpdateCount; }
  std::int32_t& DeleteCount() { return engine.DeleteCount; }
  const Variant& ConvertedDate() { return engine.ConvertedDate; }
  Recordset& LocalRecordSet() { return *engine.LocalRecordSet; }
  Connection& LocalConnection() { return *engine.LocalConnection; }

  // Makes the engine's connection and record set, as a run does.
  void Connect(const std::string& connectionText) {
    engine.LocalConnection = engine.platform_.database.CreateConnection("ADODB.Connection");
    engine.LocalRecordSet = engine.platform_.database.CreateRecordset("ADODB.Recordset");
    engine.LocalConnection->Open(connectionText, "", "");
    engine.LocalRecordSet->ActiveConnection(*engine.LocalConnection);
  }

  std::int16_t OnControlRecord(const std::string& code, const FailureTexts& failure,
                               const clsDataCopy::ControlStep& step) {
    return engine.OnControlRecord(code, failure, step);
  }
  bool IsCopyInProgress(const std::string& code) { return engine.IsCopyInProgress(code); }
  void SetCopyInProgress(const std::string& code) { engine.SetCopyInProgress(code); }
  std::int16_t ReadSyncMethod(const std::string& code) { return engine.ReadSyncMethod(code); }
  void ReleaseCopyInProgress(const std::string& code) { engine.ReleaseCopyInProgress(code); }
  void WriteLastUpdateTime(const std::string& code, DateTime moment) { engine.WriteLastUpdateTime(code, moment); }
  Object LastUpdateAsDateObject(const std::string& code) { return engine.LastUpdateAsDateObject(code); }

  void WriteErrorLog() { engine.WriteErrorLog(); }
  void WriteCountLog(const std::string& table, std::int32_t inserted, std::int32_t updated, std::int32_t deleted) {
    engine.WriteCountLog(table, inserted, updated, deleted);
  }

  bool DateObjectToDate(const Object& date) { return engine.DateObjectToDate(date); }
  static std::uint8_t YesNoToFlag(std::int16_t code) { return clsDataCopy::YesNoToFlag(code); }
  Object NowAsDateObject() { return engine.NowAsDateObject(); }
  std::int16_t ReadCalendarLookBack() { return engine.ReadCalendarLookBack(); }

  void CopyServiceTypes(const std::string& code, const std::string& component, std::int16_t syncMethod) {
    engine.CopyServiceTypes(code, component, syncMethod);
  }
  void DeleteAllRecords(const std::string& code) { engine.DeleteAllRecords(code); }
  void SetServiceOrderFields(Recordset& row, const Object& record) { engine.SetServiceOrderFields(row, record, true); }
  static void Increment(std::int32_t& count) { clsDataCopy::Increment(count); }

  Variant FillTable_tscalender() { return engine.FillTable_tscalender(); }
};

}  // namespace qmx::test
