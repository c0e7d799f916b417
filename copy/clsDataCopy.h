// The copy engine: one object copies one ERP table into the local database, once.
//
// It guards the table through its control record in tstables, copies in full or by change, counts rows, writes the
// copy log and raises the run's events. Failures inside the copy become the event DataCopyError. Failures outside of it
// (the release of a table after a failure, an event, the copy log) reach the caller as an Error.
//
// The sources, by concern: run_driver, control_records, copy_log, date_conversion, full_copy, changed_copy,
// whole_copy, shared_steps, calendar_expansion. Each table has its own source in tables/.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "copy/copy_pattern.h"
#include "platform/database.h"
#include "platform/datetime.h"
#include "platform/modDeclarations.h"
#include "platform/object.h"
#include "platform/platform.h"
#include "platform/variant.h"

namespace qmx {

namespace test {
struct DataCopyInside;
}

// Receives the events of a run, inside the engine's call. iTime is a date-time, iTableName a text, the counts are
// 32-bit integers.
class DataCopyEvents {
 public:
  virtual ~DataCopyEvents() = default;
  virtual void DataCopyStarted(Variant iTime, Variant iTableName) = 0;
  virtual void DataCopyError(Variant iTime, Variant iTableName, Variant ieNumber, Variant ieMessage) = 0;
  virtual void DataCopyComplete(Variant iTime, Variant iTableName, Variant icount, Variant ucount, Variant dcount) = 0;
  virtual void DataCopyAlreadyInProgress(Variant iTime, Variant iTableName) = 0;
  virtual void DataCopydone() = 0;
};

class clsDataCopy {
 public:
  clsDataCopy(Platform& platform, modDeclarations& declarations, DataCopyEvents& events);  // all borrowed
  ~clsDataCopy();

  void StartDataCopy(std::string ConnectionString, std::string LocalDataBase, std::string TableName,
                     std::string LogFilePath, std::string BOWBusComponent);

 private:
  friend struct test::DataCopyInside;

  // run_driver.cpp
  std::int16_t RunCopy(const std::string& ConnectionString, const std::string& LocalDataBase,
                       const std::string& TableName, const std::string& LogFilePath, const Variant& BusComponent);
  void CopyTable(const std::string& tableName, const std::string& tableCode, bool extendedForm,
                 const std::string& busComponent, std::int16_t syncMethod);
  void ReportRefusal(const std::string& tableCode);
  void ReportNothingToCopy(const std::string& reason, const std::string& whatToDo);
  void CloseConnection();

  Connection& OpenedConnection();  // raises 91 before the run has made one

  // control_records.cpp
  using ControlStep = std::function<std::int16_t(Recordset& record, bool found)>;
  std::int16_t OnControlRecord(const std::string& tableCode, const FailureTexts& failure, const ControlStep& step);
  bool IsCopyInProgress(const std::string& tableCode);
  void SetCopyInProgress(const std::string& tableCode);
  std::int16_t ReadSyncMethod(const std::string& tableCode);
  void ReleaseCopyInProgress(const std::string& tableCode);
  void WriteLastUpdateTime(const std::string& tableCode, DateTime moment);
  Object LastUpdateAsDateObject(const std::string& tableCode);

  // copy_log.cpp
  void WriteErrorLog();  // the error being handled
  void WriteCountLog(const std::string& TableName, std::int32_t InsertCount, std::int32_t UpdateCount,
                     std::int32_t DeleteCount);
  void WriteTimeHeader();

  // date_conversion.cpp
  bool DateObjectToDate(const Object& date);  // puts the date into ConvertedDate
  static std::uint8_t YesNoToFlag(std::int16_t code);
  Object NowAsDateObject();
  std::int16_t ReadCalendarLookBack();

  // Sets the fields of a local row in the same way in both copies.
  using FieldSetter = void (clsDataCopy::*)(Recordset& row, const Object& record);
  Mapper MapperOf(FieldSetter setFields);
  ChangeMapper ChangeMapperOf(FieldSetter setFields);

  // full_copy.cpp: the steps that every table's full copy calls
  void CopyFull(const FullCopyPattern& table, const std::string& tableCode, const std::string& busComponent,
                const Mapper& setFields);
  void CopyFull(const FullCopyPattern& table, const std::string& tableCode, const std::string& busComponent,
                FieldSetter setFields) {
    CopyFull(table, tableCode, busComponent, MapperOf(setFields));
  }
  void DeleteAllRecords(const std::string& tableCode);
  void OpenTable(const std::string& tableCode);
  void AddRecords(const Object& enumeration, const std::vector<Column>& key, const std::string& tableCode,
                  const Mapper& setFields);
  [[noreturn]] void FailFullCopy(const Object& manager, const FailureTexts& failure);  // in a handler only

  // changed_copy.cpp: the steps that every table's changed copy calls
  struct Audit {
    Object manager, record, criteria, period;
    std::vector<Object> parameters;
    Object reader, status;
    Variant recordClass;  // fetched and kept, as the ERP expects; otherwise unused
    Object from, to;
  };
  void CopyChanged(const ChangedCopyPattern& table, const std::string& tableCode, const std::string& busComponent,
                   const ChangeMapper& setFields);
  void CopyChanged(const ChangedCopyPattern& table, const std::string& tableCode, const std::string& busComponent,
                   FieldSetter setFields) {
    CopyChanged(table, tableCode, busComponent, ChangeMapperOf(setFields));
  }
  void CreateAudit(Audit& audit, const char* manager, const char* record, std::size_t parameters);
  void SetAuditPeriod(Audit& audit, const std::string& tableCode);
  void ReportReversedPeriod(const std::string& tableCode);  // if the period begins after its end
  static void SetAuditParameter(const Object& parameter, const char* field, const Variant& from, const Variant& to);
  void ApplyAuditEntries(const Audit& audit, const KeyCondition& selectKey, const KeyCondition& deleteKey,
                         const std::string& tableCode, const ChangeMapper& setFields);
  void FinishPeriod(const Audit& audit, const std::string& tableCode);  // its end becomes the last update time
  [[noreturn]] void FailChangedCopy(const FailureTexts& failure);       // in a handler only

  // whole_copy.cpp
  void RequireWholeCopy(const std::string& tableCode);
  void WriteRows(const std::string& tableCode, const std::function<void()>& write);
  void ReportLongLock(const std::string& tableCode, DateTime begin);

  // calendar_expansion.cpp
  std::vector<std::string> CalendarsInUse();
  Variant FillTable_tscalender();

  // shared_steps.cpp
  DateTime Now();
  [[noreturn]] static void FailPlus100(const FailureTexts& failure);  // in a handler only
  static Object List(const Object& manager, const Member& list, const std::vector<Variant>& bounds,
                     const std::string& table = {});
  static Object RequiredObject(const Object& callee, const Member& member, Variant result);  // raises 91 for none
  static Object FirstRecord(const Object& enumeration);  // no object if there is none
  void SetFields(const FieldMaps& fields, Recordset& row, const Object& record);
  void SetField(const FieldMap& field, Recordset& row, const Object& record);
  static void Increment(std::int32_t& count);  // raises 6 past the largest value

  // tables/: for each table its dispatcher, full copy, changed copy and field mapper
  void CopyServiceTypes(const std::string& tableCode, const std::string& busComponent, std::int16_t syncMethod);
  void CopyServiceTypesFull(const std::string& tableCode, const std::string& busComponent);
  void CopyServiceTypesChanged(const std::string& tableCode, const std::string& busComponent);
  void SetServiceTypeFields(Recordset& row, const Object& record);

  void CopyServiceCenters(const std::string& tableCode, const std::string& busComponent, std::int16_t syncMethod);
  void CopyServiceCentersFull(const std::string& tableCode, const std::string& busComponent);
  void CopyServiceCentersChanged(const std::string& tableCode, const std::string& busComponent);
  void SetServiceCenterFields(Recordset& row, const Object& record, bool fullRecord);

  void CopyServiceAreas(const std::string& tableCode, const std::string& busComponent, std::int16_t syncMethod);
  void CopyServiceAreasFull(const std::string& tableCode, const std::string& busComponent);
  void CopyServiceAreasChanged(const std::string& tableCode, const std::string& busComponent);
  void SetServiceAreaFields(Recordset& row, const Object& record);

  void CopySkills(const std::string& tableCode, const std::string& busComponent, std::int16_t syncMethod);
  void CopySkillsFull(const std::string& tableCode, const std::string& busComponent);
  void CopySkillsChanged(const std::string& tableCode, const std::string& busComponent);
  void SetSkillFields(Recordset& row, const Object& record);

  void CopySkillsByEmployee(const std::string& tableCode, const std::string& busComponent, std::int16_t syncMethod);
  void CopySkillsByEmployeeFull(const std::string& tableCode, const std::string& busComponent);
  void CopySkillsByEmployeeChanged(const std::string& tableCode, const std::string& busComponent);
  void SetSkillByEmployeeFields(Recordset& row, const Object& record);

  void CopyServiceEmployees(const std::string& tableCode, const std::string& busComponent, std::int16_t syncMethod);
  void CopyServiceEmployeesFull(const std::string& tableCode, const std::string& busComponent);
  void CopyServiceEmployeesChanged(const std::string& tableCode, const std::string& busComponent);
  void SetServiceEmployeeFields(Recordset& row, const Object& record, bool fullRecord);

  void CopyConfigurations(const std::string& tableCode, const std::string& busComponent, std::int16_t syncMethod);
  void CopyConfigurationsFull(const std::string& tableCode, const std::string& busComponent);
  void CopyConfigurationsChanged(const std::string& tableCode, const std::string& busComponent);
  void SetConfigurationFields(Recordset& row, const Object& record);

  void CopyObjects(const std::string& tableCode, const std::string& busComponent, std::int16_t syncMethod);
  void CopyObjectsFull(const std::string& tableCode, const std::string& busComponent);
  void CopyObjectsChanged(const std::string& tableCode, const std::string& busComponent);
  void SetObjectFields(Recordset& row, const Object& record);

  void CopyServiceOrders(const std::string& tableCode, const std::string& busComponent, std::int16_t syncMethod);
  void CopyServiceOrdersFull(const std::string& tableCode, const std::string& busComponent);
  void CopyServiceOrdersChanged(const std::string& tableCode, const std::string& busComponent);
  void SetServiceOrderFields(Recordset& row, const Object& record, bool withName);

  void CopyServiceOrderEngineers(const std::string& tableCode, const std::string& busComponent,
                                 std::int16_t syncMethod);
  void CopyServiceOrderEngineersFull(const std::string& tableCode, const std::string& busComponent);
  void CopyServiceOrderEngineersChanged(const std::string& tableCode, const std::string& busComponent);
  void SetServiceOrderEngineerFields(Recordset& row, const Object& record);

  void CopyServiceOrderActivities(const std::string& tableCode, const std::string& busComponent,
                                  std::int16_t syncMethod);
  void CopyServiceOrderActivitiesFull(const std::string& tableCode, const std::string& busComponent);
  void CopyServiceOrderActivitiesChanged(const std::string& tableCode, const std::string& busComponent);
  void SetServiceOrderActivityFields(Recordset& row, const Object& record);

  void CopyPlannedActivities(const std::string& tableCode, const std::string& busComponent, std::int16_t syncMethod);
  void CopyPlannedActivitiesFull(const std::string& tableCode, const std::string& busComponent);
  void CopyPlannedActivitiesChanged(const std::string& tableCode, const std::string& busComponent);
  void SetPlannedActivityFields(Recordset& row, const Object& record);

  void CopyResponseTimes(const std::string& tableCode, const std::string& busComponent, std::int16_t syncMethod);
  void CopyResponseTimesFull(const std::string& tableCode, const std::string& busComponent);
  void CopyResponseTimesChanged(const std::string& tableCode, const std::string& busComponent);
  void SetResponseTimeFields(Recordset& row, const Object& record);

  void CopyPriorityTimeScales(const std::string& tableCode, const std::string& busComponent, std::int16_t syncMethod);
  void CopyPriorityTimeScalesFull(const std::string& tableCode, const std::string& busComponent);
  void CopyPriorityTimeScalesChanged(const std::string& tableCode, const std::string& busComponent);
  void SetPriorityTimeScaleFields(Recordset& row, const Object& record);

  void CopyAvailabilityTypes(const std::string& tableCode, const std::string& busComponent, std::int16_t syncMethod);
  void CopyAvailabilityTypesFull(const std::string& tableCode, const std::string& busComponent);
  void CopyAvailabilityTypesChanged(const std::string& tableCode, const std::string& busComponent);
  void SetAvailabilityTypeFields(Recordset& row, const Object& record);

  void CopyAddresses(const std::string& tableCode, const std::string& busComponent, std::int16_t syncMethod);
  void CopyAddressesFull(const std::string& tableCode, const std::string& busComponent);
  void CopyAddressesChanged(const std::string& tableCode, const std::string& busComponent);
  void SetAddressFields(Recordset& row, const Object& record);

  void CopyCalendars(const std::string& tableCode, const std::string& busComponent, std::int16_t syncMethod);
  void CopyCalendarsFull(const std::string& tableCode, const std::string& busComponent);
  void CopyCalendarsChanged(const std::string& tableCode, const std::string& busComponent);
  void CopyCalendarOfEmployee(const std::string& employee, const std::string& busComponent);
  void CopyCalendar(const std::string& calendarCode, const std::string& busComponent);
  void DeleteCalendar(const std::string& calendarCode);
  bool CalendarIsLocal(const std::string& calendarCode);
  void AddCalendarRecords(const Object& records);
  void SetCalendarFields(Recordset& row, const Object& record);

  Platform& platform_;
  modDeclarations& declarations_;
  DataCopyEvents& events_;

  std::string LogFile;         // the copy log's full path
  bool HeaderWritten = false;  // the log has this run's error header
  std::unique_ptr<Connection> LocalConnection;
  std::unique_ptr<Recordset> LocalRecordSet;  // shared by all copy routines, closed between uses
  std::int32_t InsertCount = 0;
  std::int32_t UpdateCount = 0;
  std::int32_t DeleteCount = 0;
  std::optional<DateTime> RefusedAfter;  // the last update time of a table in progress
  DateTime LastUpdateTime;               // the lutm at which a changed copy begins; the zero date-time if there is none
  DateTime RunTimeStamp;                 // becomes the table's lutm when a copy ends well
  Variant ConvertedDate;                 // the result of DateObjectToDate
};

}  // namespace qmx
