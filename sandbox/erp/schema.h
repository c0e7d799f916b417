// The sandbox file: one table per ERP table, its audit trail, and the clock.
//
// Every change of a table, whatever program makes it, is entered by triggers in audit_CODE: when ("at", local civil
// time), how ("change": D, U or I) and the key. A changed key is a deletion and an insertion. Who wants the trail to
// show another time than the machine's puts it into sandbox_clock, "YYYY-MM-DD HH:MM:SS".
#pragma once

#include <string>

#include "erp/table.h"

namespace orvan {

std::string CreateTableSql(const Table& table);
std::string CreateClockSql();

// The trail and its triggers. Rows that were there before are not in it.
std::string CreateAuditSql(const Table& table);

std::string AuditTable(const Table& table);  // "audit_tsmdm030"

// "\"orno\", \"acln\"", each name after the prefix.
std::string ColumnList(const std::vector<std::string_view>& names, const std::string& prefix = "");

}  // namespace orvan
