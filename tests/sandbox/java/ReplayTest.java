import static org.junit.Assert.assertEquals;
import static org.junit.Assert.assertTrue;

import java.io.IOException;
import java.lang.reflect.Method;
import java.nio.file.Files;
import java.nio.file.Path;
import java.time.LocalDate;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.HashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;
import org.junit.After;
import org.junit.Before;
import org.junit.Test;

/**
 * The program copies through the native sandbox and writes its trace. The same calls, made on the Java sandbox over the
 * same file, get the same answers.
 *
 * <p>A date object counts by the calls on it: it must give its parts as the native one does.
 */
public class ReplayTest {
  /** Employees come before calendars, because only their calendars are copied. */
  private static final List<String> TABLES = List.of("tsmdm030", "tsmdm100", "tsmdm105", "tsmdm130", "tsmdm135",
      "tsmdm140", "tsclm020", "tsclm024", "tccom130", "tcccp001", "tcccp030", "tscfg220", "tscfg200", "tssoc200",
      "tssoc205", "tssoc210", "tsspc200");

  private final Map<Long, Object> objects = new HashMap<>();
  private final Set<String> called = new LinkedHashSet<>();
  private int calls;
  private Sandbox sandbox;
  private Path folder;

  @Before
  public void aCompanyOfToday() throws Exception {
    sandbox = Sandbox.ofToday();
    folder = Path.of(sandbox.file()).getParent();
    program("qmxadmin", "init", connection() + ";Mode=Create", "");
  }

  @After
  public void close() throws Exception {
    sandbox.close();
  }

  private String connection() {
    return "Provider=SQLite;Data Source=" + folder.resolve("local.db");
  }

  private void program(String name, String... arguments) throws Exception {
    List<String> command = new ArrayList<>(List.of(System.getProperty("orvan.programs") + "/" + name));
    command.addAll(List.of(arguments));
    ProcessBuilder builder = new ProcessBuilder(command).redirectErrorStream(true).directory(folder.toFile());
    builder.environment().put("QMX_COMPONENTS", System.getProperty("orvan.components"));
    builder.environment().put("QMX_TRACE", folder.resolve("trace").toString());
    Process process = builder.start();
    String said = new String(process.getInputStream().readAllBytes());
    if (process.waitFor() != 0) throw new IOException(command + ": " + said);
  }

  /** Copies with the native sandbox, and makes the same calls on the Java one before anything changes. */
  private void copyAndReplay(String request) throws Exception {
    Path trace = folder.resolve("trace");
    Files.deleteIfExists(trace);
    program("qmxdatacopy", connection() + ",," + request + "," + folder + "," + sandbox.component());
    objects.clear();
    for (String text : Files.readAllLines(trace)) {
      Map<String, Object> line = Json.line(text);
      if (!line.get("kind").equals("component")) continue;
      if (line.get("op").equals("create")) {
        objects.put((Long) line.get("object"), create((String) line.get("progid")));
      } else {
        replay(request + ": " + text, line);
      }
    }
  }

  private static Object create(String progId) throws Exception {
    return Class.forName(progId.replaceFirst("^java:", "")).getConstructor().newInstance();
  }

  private void replay(String place, Map<String, Object> line) throws Exception {
    Object target = objects.get(line.get("object"));
    String member = (String) line.get("member");
    List<?> arguments = (List<?>) line.get("args");
    assertTrue(place, line.containsKey("result"));
    Object answer = call(place, target, member, arguments);
    ++calls;
    called.add(target.getClass().getSimpleName() + "." + member.toLowerCase());
    if (line.get("result") instanceof Map<?, ?> kind && kind.get("object") instanceof Long number) {
      objects.put(number, answer);
    } else {
      assertEquals(place, line.get("result"), traced(answer));
    }
  }

  private Object call(String place, Object target, String member, List<?> arguments) throws Exception {
    for (Method method : target.getClass().getMethods()) {
      if (!method.getName().equalsIgnoreCase(member) || method.getParameterCount() != arguments.size()) continue;
      Object[] passed = new Object[arguments.size()];
      for (int i = 0; i < passed.length; ++i) passed[i] = passed(arguments.get(i), method.getParameterTypes()[i]);
      if (Arrays.asList(passed).contains(null)) continue;
      // The listings' class is not public, but its interface is.
      method.setAccessible(true);
      return method.invoke(target, passed);
    }
    throw new NoSuchMethodException(place);
  }

  /** The argument as the parameter wants it. Null where it is of another type. */
  private Object passed(Object argument, Class<?> wanted) {
    if (argument instanceof Map<?, ?> object) return objects.get(object.get("object"));
    if (argument instanceof Long whole && wanted == int.class) return Math.toIntExact(whole);
    if (argument instanceof Number number && wanted == double.class) return number.doubleValue();
    return argument instanceof String && wanted == String.class ? argument : null;
  }

  /** An answer as the trace shows it. */
  private static Object traced(Object answer) {
    if (answer == null) return Map.of(); // of a member that returns nothing; no getter may return null here
    if (answer instanceof Integer whole) return whole.longValue();
    if (answer instanceof LocalDate day) return Map.of("date", day.toString());
    return answer;
  }

  @Test
  public void allTablesInFullAndByChangeGetTheSameAnswers() throws Exception {
    for (String table : TABLES) copyAndReplay(table);
    int callsInFull = calls;
    assertTrue("" + callsInFull, callsInFull > 5000);

    sandbox.workToday();
    runOnLocal("UPDATE tstables SET syme = 2");
    for (String table : TABLES) copyAndReplay(table);
    assertTrue(callsInFull + ", " + calls, calls > callsInFull + 2000);
    for (String reached : List.of("AuditReader.getcurrentobject", "RecordStatus.isdeleted", "Date.getyear",
        "ServiceOrders.getdispatchtime", "ActualCalendar.getstartdate", "PlannedActivities.getactivitylinenumber")) {
      assertTrue(reached, called.contains(reached));
    }
  }

  @Test
  public void calendarsOnRequestGetTheSameAnswers() throws Exception {
    copyAndReplay("tsmdm140");
    String employee = sandbox.query("SELECT min(emno) FROM tsmdm140 WHERE ccal <> ''").get(0).get(0);
    String calendar = sandbox.query("SELECT max(ccal) FROM tcccp030").get(0).get(0);
    copyAndReplay("tcccp030=" + employee + "=E");
    int callsOfTheEmployee = calls;
    copyAndReplay("tcccp030=" + calendar + "=C");
    assertTrue("" + callsOfTheEmployee, callsOfTheEmployee > 500);
    assertTrue("" + calls, calls > callsOfTheEmployee + 100);
  }

  private void runOnLocal(String sql) throws Exception {
    try (var local = java.sql.DriverManager.getConnection("jdbc:sqlite:" + folder.resolve("local.db"));
        var statement = local.createStatement()) {
      statement.execute(sql);
    }
  }
}
