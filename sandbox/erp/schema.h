// The sandbox file: one table per ERP table, its audit trail, and the clock.
//
// Triggers enter every change of a table, by any program, in audit_CODE: the time ("at", local civil time), the kind
// ("change": D, U or I) and the key. A changed key is a deletion and an insertion. A time in sandbox_clock,
// "YYYY-MM-DD HH:MM:SS", replaces the machine's time in the trail.
#pragma once

#include <string>

#include "erp/table.h"

namespace orvan {

std::string CreateTableSql(const Table& table);
std::string CreateClockSql();

// Creates the trail and its triggers. It has no entries for earlier rows.
std::string CreateAuditSql(const Table& table);

std::string AuditTable(const Table& table);  // "audit_tsmdm030"

// "\"orno\", \"acln\"", each name after the prefix.
std::string ColumnList(const std::vector<std::string_view>& names, const std::string& prefix = "");

}  // namespace orvan
