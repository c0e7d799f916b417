package audit;

import orvan.TableRecord;

/** One change of a record. */
public class AuditEntry {
  private final char change;
  private final TableRecord tuple;

  AuditEntry(char change, TableRecord tuple) {
    this.change = change;
    this.tuple = tuple;
  }

  /** The key of the changed record. */
  public TableRecord getTuple() {
    return tuple;
  }

  /** 'D', 'U' or 'I'. */
  char change() {
    return change;
  }
}
