package orvan;

import java.time.LocalDateTime;
import java.time.temporal.Temporal;

/** A column of a table: its name in the ERP, what it holds, and its place among the table's columns. */
record Column(String name, ColumnType type, int place) {

  /** The name between double quotes, because the ERP has columns named "desc" and "user". */
  String quoted() {
    return '"' + name + '"';
  }

  /** Converts a bound to what the column is compared with in the file. */
  Object comparable(Object bound) {
    return switch (type) {
      case TEXT -> text(bound);
      case WHOLE, NUMBER -> number(bound);
      case DAY -> CivilTime.dayText(date(bound).toLocalDate());
      case MOMENT -> CivilTime.text(date(bound));
    };
  }

  private static String text(Object bound) {
    if (bound instanceof String text) return text;
    throw mismatch(bound, "a text");
  }

  private static Double number(Object bound) {
    if (bound instanceof Number number) return number.doubleValue();
    if (bound instanceof String text && text.matches("-?(\\d+\\.?\\d*|\\.\\d+)([eE][+-]?\\d+)?")) {
      return Double.valueOf(text);
    }
    throw mismatch(bound, "a number");
  }

  private static LocalDateTime date(Object bound) {
    if (bound instanceof Temporal temporal) return CivilTime.of(temporal);
    if (bound instanceof String text) {
      LocalDateTime moment = CivilTime.parse(text);
      if (moment != null) return moment;
    }
    throw mismatch(bound, "a date");
  }

  private static IllegalArgumentException mismatch(Object bound, String wanted) {
    return new IllegalArgumentException("The argument \"" + bound + "\" is not " + wanted + ". Pass " + wanted + ".");
  }
}
