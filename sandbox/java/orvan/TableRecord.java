package orvan;

import java.time.LocalDate;
import java.time.LocalDateTime;
import java.util.Arrays;
import java.util.Date;

/**
 * One record of a table. It keeps its values when the listing that it came from moves on.
 *
 * <p>A column that was never filled is blank, as in the ERP: "", 0, day zero (1899-12-30), no date. A record with only
 * its key filled names another record: the audit reader calls it a tuple.
 */
public abstract class TableRecord {
  private static final Object BLANK = new Object();

  private final Table table;
  private final Object[] values;

  protected TableRecord(Table table) {
    this.table = table;
    values = new Object[table.columns().size()];
    Arrays.fill(values, BLANK);
  }

  Table table() {
    return table;
  }

  void set(Column column, Object value) {
    values[column.place()] = value;
  }

  Object get(Column column) {
    return values[column.place()];
  }

  protected final String text(String column) {
    Object value = get(table.column(column));
    return value == BLANK ? "" : (String) value;
  }

  protected final Integer whole(String column) {
    Object value = get(table.column(column));
    if (value == BLANK) return 0;
    if (value == null || value instanceof Integer) return (Integer) value;
    throw holds("no whole number of 32 bits", column, "5");
  }

  protected final Double number(String column) {
    Object value = get(table.column(column));
    return value == BLANK ? Double.valueOf(0) : (Double) value;
  }

  protected final LocalDate day(String column) {
    Object value = get(table.column(column));
    if (value == BLANK) return CivilTime.NO_DAY;
    return value == null ? null : civilTime(column, (String) value).toLocalDate();
  }

  /** A date object of year 0 and month 0 stands for no date. */
  protected final Date moment(String column) {
    Object value = get(table.column(column));
    if (value == BLANK || value == null) return CivilTime.noDate();
    return CivilTime.date(civilTime(column, (String) value));
  }

  private LocalDateTime civilTime(String column, String text) {
    LocalDateTime moment = CivilTime.parse(text);
    if (moment == null) throw holds("no date", column, "2026-11-20 14:05:09");
    return moment;
  }

  private IllegalStateException holds(String what, String column, String example) {
    return new IllegalStateException(
        String.format(
            "Column %s of %s, record%s, holds %s. Correct it in the sandbox file, as \"%s\".",
            column, table.code(), keyText(), what, example));
  }

  private String keyText() {
    StringBuilder text = new StringBuilder();
    for (Column part : table.key()) text.append(' ').append(part.name()).append('=').append(get(part));
    return text.toString();
  }

  @Override
  public String toString() {
    return table.code() + keyText();
  }
}
