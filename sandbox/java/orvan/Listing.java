package orvan;

import java.util.Enumeration;
import java.util.NoSuchElementException;
import java.util.function.Supplier;

/** The records of one listing, read from the file one by one. */
final class Listing<R extends TableRecord> implements Enumeration<R> {
  private final Table table;
  private final Supplier<R> newRecord;
  private final Rows rows;

  /** The rows have the table's columns, in their order. */
  Listing(Table table, Supplier<R> newRecord, Rows rows) {
    this.table = table;
    this.newRecord = newRecord;
    this.rows = rows;
  }

  @Override
  public boolean hasMoreElements() {
    return rows.onRow();
  }

  @Override
  public R nextElement() {
    if (!rows.onRow()) {
      throw new NoSuchElementException(
          "There is no further record of " + table.code() + ". Ask hasMoreElements first.");
    }
    R record = newRecord.get();
    rows.read(record, table.columns(), 1);
    rows.next();
    return record;
  }
}
