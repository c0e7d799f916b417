package orvan;

import java.util.ArrayList;
import java.util.Collections;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Set;
import java.util.stream.Collectors;

/**
 * One query of the audit trail of a table: which of its records were inserted, updated or deleted within a period. The
 * entries are in the order of the changes. The records are in their current state.
 */
public final class AuditTrail {
  private final TableManager<?> manager;
  private final Table table;
  private final List<Column> narrowed = new ArrayList<>();
  private final List<Object> bounds = new ArrayList<>();
  private final Set<Column> output = new LinkedHashSet<>();
  private SandboxFile file;
  private Rows entries;

  /** A query of the manager's table. The record must be one of that table. */
  public AuditTrail(TableManager<?> manager, TableRecord record) {
    this.manager = manager;
    table = manager.table();
    requireOwn(record, "record object");
  }

  /** Narrows a column of the key. */
  public void narrow(String field, Object from, Object to) {
    Column column = table.find(field);
    if (column == null || !table.key().contains(column)) {
      throw new IllegalArgumentException(
          String.format(
              "The audit parameter \"%s\" is no key column of %s. Use %s.",
              field, table.code(), Table.names(table.key())));
    }
    narrowed.add(column);
    Collections.addAll(bounds, column.comparable(from), column.comparable(to));
  }

  /** Includes the values of a column. Those of the key are always included. */
  public void output(String field) {
    Column column = table.find(field);
    if (column == null) {
      throw new IllegalArgumentException(
          "The output field \"" + field + "\" is no column of " + table.code() + ". Check its name.");
    }
    if (!table.key().contains(column)) output.add(column);
  }

  /** Reads the first entry of a period that includes both ends, each as "2026-11-20 14:05:09". */
  public void start(String from, String to) {
    List<Object> parameters = new ArrayList<>(List.of(from, to));
    parameters.addAll(bounds);
    entries = new Rows(manager.file(), entriesSql(), parameters.toArray());
    file = manager.file();
    file.addUser();
  }

  private String entriesSql() {
    String conditions =
        narrowed.stream().map(column -> " AND " + column.quoted() + " BETWEEN ? AND ?").collect(Collectors.joining());
    return String.format(
        "SELECT change, %s FROM audit_%s WHERE at BETWEEN ? AND ?%s ORDER BY entry",
        Table.names(table.key()), table.code(), conditions);
  }

  /** Whether there is a current entry. Releases the file behind the last one, because a reader has no Close. */
  public boolean onEntry() {
    if (!entries.onRow()) close();
    return entries.onRow();
  }

  /** How the current entry's record was changed: 'D', 'U' or 'I'. */
  public char change() {
    return entries.text(1).charAt(0);
  }

  /** A record that has the key of the current entry, and nothing else. */
  public TableRecord key() {
    TableRecord key = manager.newRecord();
    entries.read(key, table.key(), 2);
    return key;
  }

  public void next() {
    entries.next();
  }

  /** The current record of that key: its key and the included columns, which are blank if it was deleted. */
  public TableRecord current(TableRecord key) {
    requireOwn(key, "tuple");
    TableRecord record = manager.newRecord();
    for (Column part : table.key()) record.set(part, key.get(part));
    if (output.isEmpty()) return record;
    List<Column> columns = List.copyOf(output);
    SandboxFile open = file != null ? file : manager.file();
    Rows found = new Rows(open, currentSql(columns), table.key().stream().map(key::get).toArray());
    if (found.onRow()) found.read(record, columns, 1);
    found.close();
    return record;
  }

  private String currentSql(List<Column> columns) {
    String conditions =
        table.key().stream().map(part -> part.quoted() + " = ?").collect(Collectors.joining(" AND "));
    return String.format("SELECT %s FROM %s WHERE %s", Table.names(columns), table.code(), conditions);
  }

  /** Releases the file. */
  public void close() {
    if (file == null) return;
    entries.close();
    file.release();
    file = null;
  }

  private void requireOwn(TableRecord record, String what) {
    if (record != null && record.table() == table) return;
    throw new IllegalArgumentException(
        String.format(
            "The %s must be a %s object of the sandbox ERP, but %s was passed.",
            what, manager.newRecord().getClass().getName(), record == null ? "no object" : "an object"));
  }
}
