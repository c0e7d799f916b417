import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import java.util.stream.Collectors;

/** A table as the native sandbox describes it, read from its sources. */
record NativeTable(
    String code, String manager, String record, String list, List<String> key, List<String> bounds, List<Column> columns) {

  /** The type is "Text", "Whole", "Number", "Day" or "Moment". */
  record Column(String name, String type, String getter) {}

  private static final Pattern TABLE =
      Pattern.compile(
          "\\.code = \"(\\w+)\".*?\\.manager = \"(.*?)\".*?\\.record = \"(.*?)\".*?\\.list = \"(\\w+)\""
              + ".*?\\.key = \\{(.*?)}.*?\\.bounds = \\{(.*?)}.*?\\.columns =(.*?)}}",
          Pattern.DOTALL);
  private static final Pattern COLUMN = Pattern.compile("\\{\"(\\w+)\", (\\w+), \"(\\w+)\"");

  static List<NativeTable> all() throws IOException {
    List<NativeTable> tables = new ArrayList<>();
    for (String group : List.of("master", "calendar", "order")) {
      String source = Files.readString(Path.of(System.getProperty("orvan.sources"), group + "_tables.cpp"));
      Matcher table = TABLE.matcher(source);
      while (table.find()) {
        List<Column> columns = new ArrayList<>();
        Matcher column = COLUMN.matcher(table.group(7));
        while (column.find()) columns.add(new Column(column.group(1), column.group(2), column.group(3)));
        tables.add(
            new NativeTable(
                table.group(1), table.group(2), table.group(3), table.group(4),
                names(table.group(5)), names(table.group(6)), columns));
      }
    }
    return tables;
  }

  Column column(String name) {
    return columns.stream().filter(column -> column.name().equals(name)).findFirst().orElseThrow();
  }

  /** The names of all columns, quoted for SQL. */
  String columnList() {
    return columns.stream().map(column -> '"' + column.name() + '"').collect(Collectors.joining(", "));
  }

  String keyList() {
    return key.stream().map(name -> '"' + name + '"').collect(Collectors.joining(", "));
  }

  private static List<String> names(String quoted) {
    return Arrays.stream(quoted.split(",")).map(name -> name.replace('"', ' ').strip()).toList();
  }
}
