#include "tests/copy/tables/plain_tables.h"

#include "platform/join.h"
#include "tests/copy/tables/table_copy.h"

namespace qmx::test::plain_tables {
namespace {

using testing::UnorderedElementsAreArray;

class EachTable : public testing::TestWithParam<PlainTable> {
 protected:
  const PlainTable& table = GetParam();
  CopyRig rig;

  // A row with a record's key, but for one column that has another record's. Returns the row.
  std::string AddLocalKey(int number, std::size_t differing = SIZE_MAX, int other = 0) {
    std::string columns, values, row;
    for (std::size_t column = 0; column < table.fields.size(); ++column) {
      const PlainField& field = table.fields[column];
      const int of = column == differing ? other : number;
      AppendItem(row, ", ", column < table.keys ? Numbered(field.stored, of) : "null");
      if (column >= table.keys) continue;
      const bool isText = field.kind == PlainField::Kind::Text;
      AppendItem(columns, ",", field.column);
      AppendItem(values, ",", isText ? "'" + Numbered(field.given, of) + "'" : Numbered(field.given, of));
    }
    rig.Sql(std::string("insert into ") + table.code + " (" + columns + ") values (" + values + ")");
    return row;
  }
};

INSTANTIATE_TEST_SUITE_P(Plain, EachTable, testing::ValuesIn(PlainTables()),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST_P(EachTable, IsCopiedInFull) {
  AddLocalKey(9);
  rig.erp.Lists(table.manager, {table.Record(rig.erp, 1), table.Record(rig.erp, 2)}, table.listing);
  rig.Run(table.code);
  EXPECT_THAT(rig.Rows(table.code, table.Columns()), UnorderedElementsAreArray({table.Row(1), table.Row(2)}));

  std::string columns, getters;
  for (const PlainField& field : table.fields) {
    AppendItem(columns, " ", field.column);
    AppendItem(getters, " ", field.getter);
  }
  EXPECT_EQ(ColumnsWritten(rig.calls), columns + " " + columns);
  EXPECT_EQ(MembersCalled(rig.calls, "listed1"), getters);
  EXPECT_THAT(ManagerCalls(rig.calls),
              ElementsAre("manager.initialize(\"Orvan, main\")",
                          std::string("manager.") + table.listing + "(" + table.bounds + ")", "manager.Close()"));
}

// Rows that share all keys but one with a deleted record stay.
TEST_P(EachTable, IsCopiedByChange) {
  AddLocalKey(2);
  AddLocalKey(3);
  std::vector<std::string> rows = {table.Row(1), table.Row(2)};
  for (std::size_t key = 0; table.keys > 1 && key < table.keys; ++key) rows.push_back(AddLocalKey(3, key, 4));
  rig.erp.Lists(table.manager, {}, table.listing);
  RunChanged(rig, table.code, table.record,
             {Inserted(table.Record(rig.erp, 1)), Updated(table.Record(rig.erp, 2)), Deleted(table.Key(rig.erp, 3))});
  EXPECT_THAT(rig.Rows(table.code, table.Columns()), UnorderedElementsAreArray(rows));
  EXPECT_EQ(rig.Events().at(1), std::string("event Complete 2026-11-20 14:05:09, \"") + table.code + "\", 1, 1, 1");
  EXPECT_THAT(Criteria(rig.calls), testing::ElementsAreArray(table.criteria));
  const std::string select = std::string("select * from ") + table.code;
  EXPECT_THAT(SqlTexts(rig.calls),
              ElementsAre(select + Numbered(table.whereOfSelect, 1), select + Numbered(table.whereOfSelect, 2),
                          std::string("DELETE FROM ") + table.code + Numbered(table.whereOfDelete, 3)));
}

TEST_P(EachTable, FailsWithItsTexts) {
  EXPECT_EQ(FailureOfFullCopy(table.code, table.manager), "error 600, " + table.failureOfFullCopy);
  EXPECT_EQ(FailureOfChangedCopy(table.code, table.manager), "error 600, " + table.failureOfChangedCopy);
}

}  // namespace
}  // namespace qmx::test::plain_tables
