import java.io.File;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.sql.Connection;
import java.sql.DriverManager;
import java.sql.ResultSet;
import java.sql.SQLException;
import java.sql.Statement;
import java.util.ArrayList;
import java.util.Comparator;
import java.util.List;
import java.util.stream.Stream;

/** A sandbox file in a folder of its own, made by orvan-sandbox, and the SQL that other programs run on it. */
final class Sandbox {
  private final Path folder;
  private final Connection connection;

  /** A file with a small company in it, and nothing in the audit trail. The data is about 2026-11-20. */
  Sandbox() throws Exception {
    this("--today", "2026-11-20");
  }

  private Sandbox(String... about) throws Exception {
    folder = Files.createTempDirectory("orvan");
    List<String> make = new ArrayList<>(List.of("make", file(), "--seed", "1", "--employees", "12", "--orders", "40",
        "--addresses", "20", "--calendars", "4", "--calendar-days", "130", "--configurations", "15"));
    make.addAll(List.of(about));
    tool(make.toArray(String[]::new));
    connection = DriverManager.getConnection("jdbc:sqlite:" + file());
    run("PRAGMA synchronous = OFF");
  }

  /** The same with data about today. */
  static Sandbox ofToday() throws Exception {
    return new Sandbox(new String[0]);
  }

  /** The same with nothing in its tables. */
  static Sandbox empty() throws Exception {
    Sandbox sandbox = new Sandbox();
    for (NativeTable table : NativeTable.all()) {
      sandbox.run("DELETE FROM " + table.code());
      sandbox.run("DELETE FROM audit_" + table.code());
    }
    return sandbox;
  }

  String file() {
    return folder.resolve("orvan.db").toString();
  }

  String component() {
    return "OrvanSandbox, " + file();
  }

  /** A day of work that begins at 8 on 2026-11-20. */
  void work() throws Exception {
    tool("work", file(), "--seed", "3", "--today", "2026-11-20", "--from", "2026-11-20 08:00:00");
  }

  /** A day of work, all of it done now. */
  void workToday() throws Exception {
    tool("work", file(), "--seed", "3");
  }

  void run(String sql) throws SQLException {
    try (Statement statement = connection.createStatement()) {
      statement.execute(sql);
    }
  }

  /** Runs SQL at a time that the audit trail is made to believe. */
  void runAt(String moment, String sql) throws SQLException {
    run("INSERT INTO sandbox_clock VALUES ('" + moment + "')");
    run(sql);
    run("DELETE FROM sandbox_clock");
  }

  /** The rows of a query, each as the texts of its values, with all digits of a number; null stays null. */
  List<List<String>> query(String sql) throws SQLException {
    List<List<String>> rows = new ArrayList<>();
    try (Statement statement = connection.createStatement();
        ResultSet row = statement.executeQuery(sql)) {
      while (row.next()) {
        List<String> values = new ArrayList<>();
        for (int i = 1; i <= row.getMetaData().getColumnCount(); ++i) {
          Object value = row.getObject(i);
          values.add(value == null ? null : value.toString());
        }
        rows.add(values);
      }
    }
    return rows;
  }

  /** How many of this process's open files are the sandbox file and its journal. */
  long openFiles() throws IOException {
    try (var open = Files.list(Path.of("/proc/self/fd"))) {
      return open.filter(fd -> pointsTo(fd, file())).count();
    }
  }

  private static boolean pointsTo(Path link, String file) {
    try {
      return Files.readSymbolicLink(link).toString().startsWith(file);
    } catch (IOException gone) {
      return false;
    }
  }

  /** Closes the file and removes the folder. */
  void close() throws Exception {
    connection.close();
    try (Stream<Path> files = Files.walk(folder)) {
      files.sorted(Comparator.reverseOrder()).map(Path::toFile).forEach(File::delete);
    }
  }

  private static void tool(String... arguments) throws IOException, InterruptedException {
    List<String> command = new ArrayList<>(List.of(System.getProperty("orvan.programs") + "/orvan-sandbox"));
    command.addAll(List.of(arguments));
    Process process = new ProcessBuilder(command).redirectErrorStream(true).start();
    String said = new String(process.getInputStream().readAllBytes());
    if (process.waitFor() != 0) throw new IOException(command + ": " + said);
  }
}
