package orvan;

import java.io.IOException;
import java.util.Enumeration;
import java.util.List;
import java.util.function.Supplier;
import java.util.stream.Collectors;

/**
 * The manager of a table: it opens the sandbox file and lists the table's records. A subclass adds the listing method,
 * whose name and bounds are the table's own.
 */
public abstract class TableManager<R extends TableRecord> {
  private static final String COMPONENT_NAME = "OrvanSandbox";

  private final Table table;
  private final Supplier<R> newRecord;
  private final String listSql;
  private SandboxFile file;

  protected TableManager(Table table, Supplier<R> newRecord) {
    this.table = table;
    this.newRecord = newRecord;
    listSql = listSql(table);
  }

  private static String listSql(Table table) {
    String conditions =
        table.bounds().stream()
            .map(column -> column.quoted() + " BETWEEN ? AND ?")
            .collect(Collectors.joining(" AND "));
    return String.format(
        "SELECT %s FROM %s WHERE %s ORDER BY %s",
        Table.names(table.columns()), table.code(), conditions, Table.names(table.key()));
  }

  /** Opens the file of a business component: "OrvanSandbox, PATH". */
  public void initialize(String businessComponent) throws IOException {
    String[] pieces = businessComponent.split(",", 2);
    String path = pieces.length == 2 ? pieces[1].strip() : "";
    if (!pieces[0].strip().equalsIgnoreCase(COMPONENT_NAME) || path.isEmpty()) {
      throw new IllegalArgumentException(
          "The business component \""
              + businessComponent
              + "\" is unknown. The sandbox ERP answers to \"OrvanSandbox, PATH\", where PATH is a file made by "
              + "orvan-sandbox.");
    }
    SandboxFile opened = SandboxFile.open(path);
    if (!opened.hasTable(table.code())) {
      opened.release();
      throw new IOException(
          "The file \""
              + path
              + "\" has no table "
              + table.code()
              + ". Make a complete one with: orvan-sandbox make FILE");
    }
    Close();
    file = opened;
  }

  /** Releases the file. Listings in use keep it open. */
  public void Close() {
    if (file != null) file.release();
    file = null;
  }

  /** Lists the records within bounds: a from/to pair for each column that the listing narrows, both inclusive. */
  protected final Enumeration<R> select(Object... bounds) {
    Object[] parameters = new Object[bounds.length];
    List<Column> columns = table.bounds();
    for (int i = 0; i < bounds.length; ++i) parameters[i] = columns.get(i / 2).comparable(bounds[i]);
    return new Listing<>(table, newRecord, new Rows(file(), listSql, parameters));
  }

  Table table() {
    return table;
  }

  R newRecord() {
    return newRecord.get();
  }

  SandboxFile file() {
    if (file != null) return file;
    String name = getClass().getName();
    throw new IllegalStateException(
        name + " is not open. Call initialize with \"OrvanSandbox, PATH\" first.");
  }
}
