package orvan;

import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.stream.Collectors;

/**
 * A table of the ERP: its code, which is also its name in the sandbox file, its columns, its key, and the columns that
 * its listing narrows. A record class declares its table once:
 *
 * <pre>{@code
 * static final Table TABLE =
 *     Table.named("tsmdm130").texts("skll", "desc").numbers("clrt").key("skll").build();
 * }</pre>
 */
public final class Table {
  private final String code;
  private final Map<String, Column> columns;
  private final List<Column> key;
  private final List<Column> bounds;

  private Table(Builder from) {
    code = from.code;
    columns = from.columns;
    key = from.key;
    bounds = from.bounds.isEmpty() ? from.key : from.bounds;
  }

  /** Begins the description of a table. */
  public static Builder named(String code) {
    return new Builder(code);
  }

  String code() {
    return code;
  }

  List<Column> columns() {
    return List.copyOf(columns.values());
  }

  List<Column> key() {
    return key;
  }

  /** The column of each from/to pair of the listing. */
  List<Column> bounds() {
    return bounds;
  }

  /** The column of that name, in any case. Null if there is none. */
  Column find(String name) {
    Column exactly = columns.get(name);
    return exactly != null ? exactly : columns.get(name.toLowerCase(Locale.ROOT));
  }

  Column column(String name) {
    Column found = columns.get(name);
    if (found == null) throw new IllegalArgumentException(code + " has no column \"" + name + "\".");
    return found;
  }

  /** The names of columns, quoted for SQL: "orno", "acln". */
  static String names(List<Column> columns) {
    return columns.stream().map(Column::quoted).collect(Collectors.joining(", "));
  }

  /** Collects the description of a table. */
  public static final class Builder {
    private final String code;
    private final Map<String, Column> columns = new LinkedHashMap<>();
    private List<Column> key = List.of();
    private List<Column> bounds = List.of();

    private Builder(String code) {
      this.code = code;
    }

    public Builder texts(String... names) {
      return add(ColumnType.TEXT, names);
    }

    public Builder wholes(String... names) {
      return add(ColumnType.WHOLE, names);
    }

    public Builder numbers(String... names) {
      return add(ColumnType.NUMBER, names);
    }

    public Builder days(String... names) {
      return add(ColumnType.DAY, names);
    }

    public Builder moments(String... names) {
      return add(ColumnType.MOMENT, names);
    }

    /** The key, of columns that were added before. */
    public Builder key(String... names) {
      key = added(names);
      return this;
    }

    /** The column of each from/to pair of the listing. Without it, the columns of the key. */
    public Builder bounds(String... names) {
      bounds = added(names);
      return this;
    }

    public Table build() {
      return new Table(this);
    }

    private Builder add(ColumnType type, String... names) {
      for (String name : names) columns.put(name, new Column(name, type, columns.size()));
      return this;
    }

    private List<Column> added(String... names) {
      List<Column> found = new ArrayList<>();
      for (String name : names) found.add(columns.get(name));
      return List.copyOf(found);
    }
  }
}
