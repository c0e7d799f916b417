import static org.junit.Assert.assertEquals;
import static org.junit.Assert.assertFalse;
import static org.junit.Assert.assertThrows;
import static org.junit.Assert.assertTrue;

import Calendars.ActualCalendar;
import Calendars.CalendarManager;
import Configurations.Configurations;
import Configurations.ConfigurationsManager;
import PriorityTimeScale.PriorityTimeScale;
import PriorityTimeScale.PriorityTimeScaleManager;
import ServiceEmployees.ServiceEmployees;
import ServiceEmployees.ServiceEmployeesManager;
import ServiceObjects.ServiceObjects;
import ServiceObjects.ServiceObjectsManager;
import ServiceOrders.ServiceOrders;
import ServiceOrders.ServiceOrdersManager;
import ServiceTypes.ServiceTypes;
import ServiceTypes.ServiceTypesManager;
import java.nio.file.Files;
import java.nio.file.Path;
import java.time.LocalDate;
import java.util.Collections;
import java.util.Enumeration;
import java.util.List;
import java.util.NoSuchElementException;
import java.util.function.Function;
import org.junit.After;
import org.junit.Before;
import org.junit.Test;
import orvan.TableManager;

/** The managers: what their listings select and how they hand it out, and what they refuse. */
public class ListingTest {
  private Sandbox sandbox;

  @Before
  public void anEmptySandbox() throws Exception {
    sandbox = Sandbox.empty();
  }

  @After
  public void close() throws Exception {
    sandbox.close();
  }

  private <M extends TableManager<?>> M opened(M manager) throws Exception {
    manager.initialize(sandbox.component());
    return manager;
  }

  private static <R> List<String> each(Enumeration<R> records, Function<R, Object> getter) {
    return Collections.list(records).stream().map(record -> getter.apply(record).toString()).toList();
  }

  private List<String> serviceTypes(String from, String to) throws Exception {
    return each(opened(new ServiceTypesManager()).List(from, to), ServiceTypes::getServiceType);
  }

  @Test
  public void takesBothBoundsIn() throws Exception {
    sandbox.run("INSERT INTO tsmdm030 (cstp) VALUES ('A'), ('B'), ('C'), ('D')");
    assertEquals(List.of("B", "C"), serviceTypes("B", "C"));
  }

  @Test
  public void comparesTextsByteByByteAndOrdersByTheKey() throws Exception {
    sandbox.run("INSERT INTO tsmdm030 (cstp) VALUES ('a'), ('ZZZA'), ('ZZZ'), ('9'), ('10'), ('')");
    assertEquals(List.of("", "10", "9", "ZZZ"), serviceTypes("", "ZZZ"));
  }

  @Test
  public void hasNoElementsWhereNothingIsSelected() throws Exception {
    assertEquals(List.of(), serviceTypes("", "ZZZ"));
  }

  @Test
  public void isReadBesideAnotherOneAndAfterClose() throws Exception {
    sandbox.run("INSERT INTO tsmdm030 (cstp) VALUES ('A'), ('B'), ('C'), ('D')");
    ServiceTypesManager manager = opened(new ServiceTypesManager());
    Enumeration<ServiceTypes> first = manager.List("A", "C");
    assertEquals("A", first.nextElement().getServiceType());
    assertEquals(List.of("C", "D"), each(manager.List("C", "D"), ServiceTypes::getServiceType));
    manager.Close();
    assertEquals(List.of("B", "C"), each(first, ServiceTypes::getServiceType));
  }

  @Test
  public void keepsARecordAsItWasWhenItMovesOn() throws Exception {
    sandbox.run("INSERT INTO tsmdm030 (cstp, \"desc\") VALUES ('A', 'first'), ('B', 'second \u0416\u65e5')");
    Enumeration<ServiceTypes> types = opened(new ServiceTypesManager()).List("", "ZZZ");
    ServiceTypes first = types.nextElement();
    assertEquals("second \u0416\u65e5", types.nextElement().getServiceTypeDescription());
    assertEquals("first", first.getServiceTypeDescription());
    assertFalse(types.hasMoreElements());
    NoSuchElementException over = assertThrows(NoSuchElementException.class, types::nextElement);
    assertEquals("There is no further record of tsmdm030. Ask hasMoreElements first.", over.getMessage());
  }

  @Test
  public void comparesNumbersAsNumbersAlsoWhereTextsBoundThem() throws Exception {
    sandbox.run("INSERT INTO tsclm024 (sltt) VALUES (9), (90.5), (100), (99999.9999), (100000)");
    PriorityTimeScaleManager manager = opened(new PriorityTimeScaleManager());
    assertEquals(List.of("9.0", "90.5", "100.0", "99999.9999"),
        each(manager.List(0, 99999.9999), PriorityTimeScale::getSolutionTimeInMinutes));
    assertEquals(List.of("9.0", "90.5"),
        each(manager.List("000.00", "099.99"), PriorityTimeScale::getSolutionTimeInMinutes));
    assertEquals("The argument \"12x\" is not a number. Pass a number.",
        assertThrows(IllegalArgumentException.class, () -> manager.List("12x", "13")).getMessage());
  }

  @Test
  public void narrowsTheColumnsThatTheTableNames() throws Exception {
    sandbox.run("INSERT INTO tsmdm140 (emno, cwoc, csar) VALUES ('E1', 'C1', 'A1'), ('E2', 'C2', 'A1'), ('E3', 'C1', 'A2')");
    ServiceEmployeesManager employees = opened(new ServiceEmployeesManager());
    assertEquals(List.of("E2"),
        each(employees.List("E2", "E2", "", "Z", "", "Z"), ServiceEmployees::getServiceEmployee));
    assertEquals(List.of("E1", "E3"),
        each(employees.List("", "Z", "C1", "C1", "", "Z"), ServiceEmployees::getServiceEmployee));
    assertEquals(List.of("E1", "E2"),
        each(employees.List("", "Z", "", "Z", "A1", "A1"), ServiceEmployees::getServiceEmployee));

    sandbox.run("INSERT INTO tscfg220 (ccfg, ofbp, cwoc, csar) VALUES ('1', 'P1', 'C1', 'A1'), ('2', 'P2', 'C1', 'A1'), "
        + "('3', 'P1', 'C2', 'A1'), ('4', 'P1', 'C1', 'A2')");
    ConfigurationsManager configurations = opened(new ConfigurationsManager());
    assertEquals(List.of("2"),
        each(configurations.List("", "Z", "P2", "P2", "", "Z", "", "Z"), Configurations::getConfiguration));
    assertEquals(List.of("3"),
        each(configurations.List("", "Z", "", "Z", "C2", "C2", "", "Z"), Configurations::getConfiguration));
    assertEquals(List.of("4"),
        each(configurations.List("", "Z", "", "Z", "", "Z", "A2", "A2"), Configurations::getConfiguration));

    sandbox.run("INSERT INTO tscfg200 (ccfg, crob, oseq) VALUES ('C', 'O', 9), ('C', 'O', 10), ('C', 'O', 10000)");
    assertEquals(List.of("9", "10"), each(opened(new ServiceObjectsManager()).List("", "Z", "", "Z", 0, 9999),
        ServiceObjects::getObjectNumber));
  }

  @Test
  public void takesDatesAsTextsWithAndWithoutLeadingZerosAndAsDays() throws Exception {
    sandbox.run("INSERT INTO tcccp030 (ccal, ract, stdt, sttm) VALUES ('C1', 'WRK', '2026-01-05', 800), "
        + "('C1', 'WRK', '2026-09-30', 2400), ('C1', 'WRK', '2038-03-01', 800), ('C1', 'WRK', '2038-03-02', 800)");
    assertEquals(List.of("2026-01-05", "2026-09-30"), calendar("2026-1-5", "2026-9-30"));
    assertEquals(List.of("2026-09-30"), calendar("2026-01-06", "2026-09-30"));
    assertEquals(List.of("2038-03-01"), calendar("2038-02-28", "2038-02-29"));
    assertEquals(List.of("2038-03-02"), calendar("2038-2-30", "2038-2-30"));
    assertEquals(List.of("2026-01-05"), each(opened(new CalendarManager()).listActualCalendar("C1", "C1", "", "Z",
        LocalDate.of(2026, 1, 1), LocalDate.of(2026, 12, 31), 0, 2359), ActualCalendar::getStartDate));
    for (String wrong : List.of("yesterday", "2026-13-01", "2026-01-01 25:00", "2026-01-01 10:60", "")) {
      assertEquals("The argument \"" + wrong + "\" is not a date. Pass a date.",
          assertThrows(IllegalArgumentException.class, () -> calendar(wrong, "2026-01-01")).getMessage());
    }
  }

  private List<String> calendar(String from, String to) throws Exception {
    return each(opened(new CalendarManager()).listActualCalendar("C1", "C1", "", "Z", from, to, 0, 2400),
        ActualCalendar::getStartDate);
  }

  @Test
  public void ofARecordWithAWrongDateFailsWhereTheDateIsAskedFor() throws Exception {
    sandbox.run("INSERT INTO tssoc200 (orno, ordt, osta) VALUES ('SO1', 'soon', 'open')");
    ServiceOrders order = opened(new ServiceOrdersManager()).listServiceOrders("SO1", "SO1").nextElement();
    assertEquals("SO1", order.getServiceOrder());
    assertEquals("Column ordt of tssoc200, record orno=SO1, holds no date. Correct it in the sandbox file, as "
        + "\"2026-11-20 14:05:09\".", assertThrows(IllegalStateException.class, order::getOrderDate).getMessage());
    assertEquals("Column osta of tssoc200, record orno=SO1, holds no whole number of 32 bits. Correct it in the sandbox "
        + "file, as \"5\".", assertThrows(IllegalStateException.class, order::getOrderStatus).getMessage());
    assertTrue(order.getPlannedStartTime().getYear() == 0 && order.getPlannedStartTime().getMonth() == 0);
  }

  @Test
  public void needsAnOpenManager() throws Exception {
    ServiceTypesManager manager = new ServiceTypesManager();
    String closed = "ServiceTypes.ServiceTypesManager is not open. Call initialize with \"OrvanSandbox, PATH\" first.";
    assertEquals(closed, assertThrows(IllegalStateException.class, () -> manager.List("", "Z")).getMessage());
    opened(manager).Close();
    assertEquals(closed, assertThrows(IllegalStateException.class, () -> manager.List("", "Z")).getMessage());
  }

  @Test
  public void refusesComponentsAndFilesThatItDoesNotKnow() throws Exception {
    String unknown = " is unknown. The sandbox ERP answers to \"OrvanSandbox, PATH\", where PATH is a file made by "
        + "orvan-sandbox.";
    for (String component : List.of("", "Orvan, x.db", "OrvanSandbox", "OrvanSandbox, ")) {
      assertEquals("The business component \"" + component + "\"" + unknown, refusal(component));
    }
    String missing = sandbox.file() + ".missing";
    assertEquals("There is no sandbox file \"" + missing + "\". Check the path in the business component, or make the "
        + "file with: orvan-sandbox make " + missing, refusal("orvansandbox , " + missing));

    Path other = Path.of(sandbox.file() + "-other");
    Files.writeString(other, "no database, but long enough to be looked at as one".repeat(100));
    String said = refusal("OrvanSandbox, " + other);
    assertTrue(said, said.startsWith("The sandbox file \"" + other + "\" cannot be used: "));
    assertTrue(said, said.endsWith(". Check that it was made by orvan-sandbox and that this user may read it."));

    sandbox.run("DROP TABLE tsmdm030");
    assertEquals("The file \"" + sandbox.file() + "\" has no table tsmdm030. Make a complete one with: orvan-sandbox "
        + "make FILE", refusal(sandbox.component()));
  }

  private static String refusal(String component) {
    return assertThrows(Exception.class, () -> new ServiceTypesManager().initialize(component)).getMessage();
  }

  // The tests run in a heap of 24 MiB.
  @Test
  public void isReadInAHeapThatCannotHoldItsRecords() throws Exception {
    assertTrue("" + Runtime.getRuntime().maxMemory(), Runtime.getRuntime().maxMemory() <= 24 << 20);
    sandbox.run("DROP TRIGGER audit_tsmdm030_insert");
    sandbox.run("WITH RECURSIVE n(i) AS (VALUES (100000) UNION ALL SELECT i + 1 FROM n WHERE i < 299999) "
        + "INSERT INTO tsmdm030 (cstp, \"desc\") SELECT i, 'a description of forty letters, number ' || i FROM n");
    Enumeration<ServiceTypes> types = opened(new ServiceTypesManager()).List("", "Z");
    int read = 0;
    while (types.hasMoreElements()) {
      ServiceTypes type = types.nextElement();
      assertEquals("a description of forty letters, number " + type.getServiceType(), type.getServiceTypeDescription());
      ++read;
    }
    assertEquals(200000, read);
  }

  @Test
  public void leavesNoFileOpenBehindListingsOfOneRecord() throws Exception {
    sandbox.run("INSERT INTO tsmdm030 (cstp) VALUES ('A')");
    listOneRecord(); // SQLite keeps a file of a closed connection for the next one
    long before = sandbox.openFiles();
    for (int i = 0; i < 50; ++i) listOneRecord();
    assertEquals(before, sandbox.openFiles());
  }

  private void listOneRecord() throws Exception {
    ServiceTypesManager manager = opened(new ServiceTypesManager());
    assertEquals("A", manager.List("A", "A").nextElement().getServiceType());
    manager.Close();
  }
}
