import java.lang.reflect.Method;
import java.time.LocalDate;
import java.util.Arrays;
import java.util.Date;
import java.util.Enumeration;
import java.util.List;
import orvan.TableManager;
import orvan.TableRecord;

/** Calls of public members by name, in any case, as a bridge makes them. */
final class Calls {
  private Calls() {}

  static TableManager<?> manager(NativeTable table, Sandbox sandbox) throws Exception {
    TableManager<?> manager = (TableManager<?>) Class.forName(table.manager()).getConstructor().newInstance();
    manager.initialize(sandbox.component());
    return manager;
  }

  static TableRecord record(NativeTable table) throws Exception {
    return (TableRecord) Class.forName(table.record()).getConstructor().newInstance();
  }

  static Object get(Object target, String getter) throws Exception {
    Method found = Arrays.stream(target.getClass().getMethods())
        .filter(method -> method.getName().equalsIgnoreCase(getter) && method.getParameterCount() == 0)
        .findFirst()
        .orElseThrow(() -> new NoSuchMethodException(target.getClass() + "." + getter));
    return found.invoke(target);
  }

  /** Lists with bounds that all records of the table are within. */
  static Enumeration<?> listAll(NativeTable table, TableManager<?> manager) throws Exception {
    Method list = Arrays.stream(manager.getClass().getMethods())
        .filter(method -> method.getName().equals(table.list()))
        .filter(method -> method.getParameterCount() == 2 * table.bounds().size())
        .findFirst()
        .orElseThrow();
    Object[] bounds = new Object[list.getParameterCount()];
    for (int i = 0; i < bounds.length; ++i) {
      NativeTable.Column column = table.column(table.bounds().get(i / 2));
      bounds[i] = bound(column.type(), list.getParameterTypes()[i], i % 2 == 0);
    }
    return (Enumeration<?>) list.invoke(manager, bounds);
  }

  private static Object bound(String type, Class<?> wanted, boolean lowest) {
    if (wanted == int.class) return lowest ? 0 : 999999;
    if (wanted == double.class) return lowest ? 0 : 999999.0;
    if (wanted == LocalDate.class) return lowest ? LocalDate.of(1900, 1, 1) : LocalDate.of(2099, 12, 31);
    return switch (type) {
      case "Text" -> lowest ? "" : "ZZZZZZZZZZZZ";
      case "Day" -> lowest ? "1900-1-1" : "2099-12-31";
      default -> lowest ? "0" : "999999";
    };
  }

  /** An answer in the form that the file has the value in. */
  static String shown(Object answer) {
    if (!(answer instanceof Date date)) return answer == null ? null : answer.toString();
    if (date.getYear() == 0 && date.getMonth() == 0) return null;
    return String.format("%04d-%02d-%02d %02d:%02d:%02d", date.getYear() + 1900, date.getMonth() + 1, date.getDate(),
        date.getHours(), date.getMinutes(), date.getSeconds());
  }

  /** The answers of all getters of a record, in the order of the table's columns. */
  static List<String> row(NativeTable table, Object record) throws Exception {
    String[] values = new String[table.columns().size()];
    for (int i = 0; i < values.length; ++i) values[i] = shown(get(record, table.columns().get(i).getter()));
    return Arrays.asList(values);
  }
}
