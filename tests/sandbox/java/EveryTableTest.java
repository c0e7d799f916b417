import static org.junit.Assert.assertEquals;
import static org.junit.Assert.assertFalse;
import static org.junit.Assert.assertTrue;

import audit.AuditEntry;
import audit.AuditReader;
import audit.RecordStatus;
import audit.auditCriteria;
import audit.period;
import java.util.ArrayList;
import java.util.Date;
import java.util.Enumeration;
import java.util.List;
import java.util.Map;
import java.util.stream.Collectors;
import org.junit.AfterClass;
import org.junit.BeforeClass;
import org.junit.Test;
import orvan.TableManager;
import orvan.TableRecord;

/** All seventeen tables: what is listed and what the audit reader tells, compared with what is in the file. */
public class EveryTableTest {
  /** The classes that stand for what a column holds. Those of the key are never null. */
  private static final Map<String, List<Class<?>>> CLASSES = Map.of(
      "Text", List.of(String.class, String.class),
      "Whole", List.of(Integer.class, int.class),
      "Number", List.of(Double.class, double.class),
      "Day", List.of(java.time.LocalDate.class, java.time.LocalDate.class),
      "Moment", List.of(Date.class, Date.class));

  private static Sandbox sandbox;
  private static List<NativeTable> tables;

  @BeforeClass
  public static void aCompanyThatWorkedADay() throws Exception {
    sandbox = new Sandbox();
    sandbox.work();
    tables = NativeTable.all();
  }

  @AfterClass
  public static void close() throws Exception {
    sandbox.close();
  }

  @Test
  public void thereAreSeventeen() {
    assertEquals(17, tables.size());
    for (NativeTable table : tables) assertTrue(table.code(), table.columns().size() >= 2);
  }

  @Test
  public void gettersReturnWhatTheirColumnsHold() throws Exception {
    for (NativeTable table : tables) {
      for (NativeTable.Column column : table.columns()) {
        Class<?> type = Calls.record(table).getClass().getMethod(column.getter()).getReturnType();
        boolean inKey = table.key().contains(column.name());
        assertEquals(table.code() + "." + column.name(), CLASSES.get(column.type()).get(inKey ? 1 : 0), type);
      }
    }
  }

  @Test
  public void listingsGiveEveryValueOfEveryRecordInTheOrderOfTheKey() throws Exception {
    for (NativeTable table : tables) {
      List<List<String>> expected = sandbox.query(
          "SELECT " + table.columnList() + " FROM " + table.code() + " ORDER BY " + table.keyList());
      assertFalse(table.code(), expected.isEmpty());
      List<List<String>> listed = new ArrayList<>();
      Enumeration<?> records = Calls.listAll(table, Calls.manager(table, sandbox));
      while (records.hasMoreElements()) listed.add(Calls.row(table, records.nextElement()));
      assertSameRows(table, expected, listed);
    }
  }

  @Test
  public void theAuditReaderTellsEveryChangeInItsOrderAndTheRecordAsItStandsNow() throws Exception {
    for (NativeTable table : tables) {
      List<List<String>> expected = new ArrayList<>();
      for (List<String> entry : sandbox.query(
          "SELECT change, " + table.keyList() + " FROM audit_" + table.code() + " ORDER BY entry")) {
        expected.add(entry);
        expected.add(currentRow(table, entry.subList(1, entry.size())));
      }
      assertFalse(table.code(), expected.isEmpty());
      assertSameRows(table, expected, told(table));
    }
  }

  @Test
  public void aNewRecordIsBlank() throws Exception {
    for (NativeTable table : tables) {
      assertEquals(table.code(), table.columns().stream().map(column -> blank(column.type())).toList(),
          Calls.row(table, Calls.record(table)));
    }
  }

  /** Compares texts, because JUnit shows where two texts differ. */
  private static void assertSameRows(NativeTable table, List<List<String>> expected, List<List<String>> rows) {
    assertEquals(table.code(), lines(expected), lines(rows));
  }

  private static String lines(List<List<String>> rows) {
    return rows.stream().map(Object::toString).collect(Collectors.joining("\n"));
  }

  private static List<List<String>> told(NativeTable table) throws Exception {
    period period = new period();
    period.setFrom(new Date(126, 10, 20, 8, 0, 0));
    period.setTo(new Date(126, 10, 20, 17, 0, 0));
    auditCriteria criteria = new auditCriteria();
    criteria.setPeriod(period);
    for (NativeTable.Column column : table.columns()) criteria.addOutputField(column.name());
    TableManager<?> manager = Calls.manager(table, sandbox);
    AuditReader reader = new AuditReader();
    reader.initialize(manager, Calls.record(table), criteria);

    List<List<String>> told = new ArrayList<>();
    while (reader.hasMoreElements()) {
      AuditEntry entry = reader.nextElement();
      TableRecord tuple = entry.getTuple();
      List<String> key = new ArrayList<>(List.of(letter(entry)));
      for (String name : table.key()) key.add(Calls.shown(Calls.get(tuple, table.column(name).getter())));
      told.add(key);
      told.add(Calls.row(table, reader.getCurrentObject(tuple)));
    }
    return told;
  }

  private static String letter(AuditEntry entry) {
    RecordStatus status = new RecordStatus();
    return (status.isDeleted(entry) ? "D" : "") + (status.isUpdated(entry) ? "U" : "")
        + (status.isInserted(entry) ? "I" : "");
  }

  private static List<String> currentRow(NativeTable table, List<String> key) throws Exception {
    StringBuilder conditions = new StringBuilder("1");
    for (int i = 0; i < key.size(); ++i) {
      conditions.append(" AND \"").append(table.key().get(i)).append("\" = '").append(key.get(i)).append("'");
    }
    List<List<String>> rows =
        sandbox.query("SELECT " + table.columnList() + " FROM " + table.code() + " WHERE " + conditions);
    if (!rows.isEmpty()) return rows.get(0);
    List<String> blanks = new ArrayList<>();
    for (NativeTable.Column column : table.columns()) {
      int place = table.key().indexOf(column.name());
      blanks.add(place < 0 ? blank(column.type()) : key.get(place));
    }
    return blanks;
  }

  private static String blank(String type) {
    return switch (type) {
      case "Text" -> "";
      case "Whole" -> "0";
      case "Number" -> "0.0";
      case "Day" -> "1899-12-30";
      default -> null;
    };
  }
}
