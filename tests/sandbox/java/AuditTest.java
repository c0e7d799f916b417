import static org.junit.Assert.assertEquals;
import static org.junit.Assert.assertFalse;
import static org.junit.Assert.assertThrows;
import static org.junit.Assert.assertTrue;

import Configurations.Configurations;
import Configurations.ConfigurationsManager;
import PriorityTimeScale.PriorityTimeScale;
import PriorityTimeScale.PriorityTimeScaleManager;
import ServiceOrders.ServiceOrders;
import ServiceOrders.ServiceOrdersManager;
import ServiceTypes.ServiceTypes;
import ServiceTypes.ServiceTypesManager;
import Skills.SkillsManager;
import audit.AuditEntry;
import audit.AuditReader;
import audit.Parameter;
import audit.RecordStatus;
import audit.auditCriteria;
import audit.period;
import java.util.ArrayList;
import java.util.Date;
import java.util.List;
import java.util.NoSuchElementException;
import java.util.function.Function;
import org.junit.After;
import org.junit.Before;
import org.junit.Test;
import org.junit.function.ThrowingRunnable;
import orvan.TableManager;
import orvan.TableRecord;

/** The audit classes. */
public class AuditTest {
  private final AuditReader reader = new AuditReader();
  private final auditCriteria criteria = new auditCriteria();
  private final period period = new period();
  private Sandbox sandbox;

  @Before
  public void anEmptySandboxAndADayToAskAbout() throws Exception {
    sandbox = Sandbox.empty();
    period.setFrom(at(0));
    period.setTo(at(24));
    criteria.setPeriod(period);
  }

  @After
  public void close() throws Exception {
    sandbox.close();
  }

  private static Date at(int hour) {
    return new Date(126, 10, 20, hour, 0, 0);
  }

  private <M extends TableManager<?>> M opened(M manager) throws Exception {
    manager.initialize(sandbox.component());
    return manager;
  }

  private static Parameter narrowing(String field, String from, String to) {
    Parameter parameter = new Parameter();
    parameter.setFieldName(field);
    parameter.setFrom(from);
    parameter.setTo(to);
    return parameter;
  }

  private <R extends TableRecord> List<String> told(TableManager<R> manager, R record, Function<R, String> shown)
      throws Exception {
    reader.initialize(opened(manager), record, criteria);
    RecordStatus status = new RecordStatus();
    List<String> told = new ArrayList<>();
    while (reader.hasMoreElements()) {
      AuditEntry entry = reader.nextElement();
      String how = status.isDeleted(entry) ? "D " : status.isUpdated(entry) ? "U " : "I ";
      @SuppressWarnings("unchecked") // the reader makes records of the manager's class
      R current = (R) reader.getCurrentObject(entry.getTuple());
      told.add(how + shown.apply(current));
    }
    return told;
  }

  private List<String> serviceTypes() throws Exception {
    return told(new ServiceTypesManager(), new ServiceTypes(),
        type -> type.getServiceType() + " " + type.getServiceTypeDescription());
  }

  @Test
  public void includesBothEndsOfThePeriod() throws Exception {
    sandbox.runAt("2026-11-20 08:59:59", "INSERT INTO tsmdm030 (cstp) VALUES ('A')");
    sandbox.runAt("2026-11-20 09:00:00", "INSERT INTO tsmdm030 (cstp) VALUES ('B')");
    sandbox.runAt("2026-11-20 10:00:00", "INSERT INTO tsmdm030 (cstp) VALUES ('C')");
    sandbox.runAt("2026-11-20 10:00:01", "INSERT INTO tsmdm030 (cstp) VALUES ('D')");
    period.setFrom(at(9));
    period.setTo(at(10));
    assertEquals(List.of("I B ", "I C "), serviceTypes());
  }

  @Test
  public void keepsTheOrderOfTheChangesAndGivesRecordsAsTheyStandNow() throws Exception {
    sandbox.runAt("2026-11-20 09:00:00", "INSERT INTO tsmdm030 (cstp, \"desc\") VALUES ('A', 'old'), ('B', 'x')");
    sandbox.runAt("2026-11-20 11:00:00", "UPDATE tsmdm030 SET \"desc\" = 'changed' WHERE cstp = 'B'");
    sandbox.runAt("2026-11-20 10:00:00", "DELETE FROM tsmdm030 WHERE cstp = 'A'");
    criteria.addOutputField("DESC");
    assertEquals(List.of("I A ", "I B changed", "U B changed", "D A "), serviceTypes());
    sandbox.runAt("2026-11-20 12:00:00", "INSERT INTO tsmdm030 (cstp, \"desc\") VALUES ('A', 'new')");
    assertEquals(List.of("I A new", "I B changed", "U B changed", "D A new", "I A new"), serviceTypes());
  }

  @Test
  public void takesAChangedKeyAsADeletionAndAnInsertion() throws Exception {
    sandbox.runAt("2026-11-19 09:00:00", "INSERT INTO tsmdm030 (cstp, \"desc\") VALUES ('A', 'one')");
    sandbox.runAt("2026-11-20 09:00:00", "UPDATE tsmdm030 SET cstp = 'B'");
    criteria.addOutputField("desc");
    assertEquals(List.of("D A ", "I B one"), serviceTypes());
  }

  @Test
  public void fillsTheKeyAndTheOutputFieldsOnly() throws Exception {
    sandbox.runAt("2026-11-20 09:00:00",
        "INSERT INTO tscfg220 (ccfg, \"desc\", ofbp, tecr, dist) VALUES ('C1', 'Pump', 'BP1', 'E1', 12.5)");
    criteria.addParameter(narrowing("ccfg", "", "ZZZZZZZZ"));
    criteria.addOutputField("desc");
    criteria.addOutputField("dist");
    assertEquals(List.of("I C1|Pump|||12.5"), told(new ConfigurationsManager(), new Configurations(),
        it -> it.getConfiguration() + "|" + it.getDescription() + "|" + it.getSoldToBusinessPartner() + "|"
            + it.getResponsibleEngineer() + "|" + it.getTravelDistance()));
  }

  @Test
  public void givesDateObjectsOfNoDateForMomentsThatWereNotAskedFor() throws Exception {
    sandbox.runAt("2026-11-20 09:00:00",
        "INSERT INTO tssoc200 (orno, ordt, pstm) VALUES ('SO1', '2026-11-20 08:00:00', '2026-11-21 08:00:00')");
    criteria.addOutputField("ordt");
    assertEquals(List.of("I 2026-11-20 08:00:00 null"), told(new ServiceOrdersManager(), new ServiceOrders(),
        order -> Calls.shown(order.getOrderDate()) + " " + Calls.shown(order.getPlannedStartTime())));
  }

  @Test
  public void readsTextBoundsOfNumbersAsNumbers() throws Exception {
    sandbox.runAt("2026-11-20 09:00:00", "INSERT INTO tsclm024 VALUES (9, ''), (90.5, ''), (999.99, ''), (1000, '')");
    criteria.addParameter(narrowing("sltt", "000.00", "999.99"));
    assertEquals(List.of("I 9.0", "I 90.5", "I 999.99"), told(new PriorityTimeScaleManager(), new PriorityTimeScale(),
        scale -> "" + scale.getSolutionTimeInMinutes()));
    Parameter numbers = new Parameter();
    numbers.setFieldName("SLTT");
    numbers.setFrom(10);
    numbers.setTo(90.5);
    criteria.addParameter(numbers);
    assertEquals(List.of("I 90.5"), told(new PriorityTimeScaleManager(), new PriorityTimeScale(),
        scale -> "" + scale.getSolutionTimeInMinutes()));
  }

  // One criteria object serves many questions: the same parameters are added again for each, changed in between.
  @Test
  public void countsAParameterOnceAndAsItStandsWhenTheReaderStarts() throws Exception {
    sandbox.runAt("2026-11-20 09:00:00", "INSERT INTO tsmdm030 (cstp) VALUES ('A'), ('B')");
    Parameter code = narrowing("cstp", "", "");
    for (int i = 0; i < 200; ++i) {
      code.setFrom("B");
      code.setTo("B");
      criteria.addParameter(code);
      assertEquals(List.of("I B "), serviceTypes());
    }
    code.setFrom("C");
    code.setTo("C");
    assertEquals(List.of(), serviceTypes());
  }

  @Test
  public void readsThePeriodWhenTheReaderStartsAndNotBefore() throws Exception {
    sandbox.runAt("2026-11-20 09:00:00", "INSERT INTO tsmdm030 (cstp) VALUES ('A')");
    Date from = at(10);
    period.setFrom(from);
    from.setHours(9);
    assertEquals(List.of("I A "), serviceTypes());
  }

  @Test
  public void givesRecordsAlsoAfterTheManagerWasClosed() throws Exception {
    sandbox.runAt("2026-11-20 09:00:00", "INSERT INTO tsmdm030 (cstp, \"desc\") VALUES ('A', 'one')");
    criteria.addOutputField("desc");
    ServiceTypesManager manager = opened(new ServiceTypesManager());
    reader.initialize(manager, new ServiceTypes(), criteria);
    manager.Close();
    TableRecord current = reader.getCurrentObject(reader.nextElement().getTuple());
    assertEquals("one", ((ServiceTypes) current).getServiceTypeDescription());
  }

  @Test
  public void letsTheFileGoBehindTheLastEntry() throws Exception {
    sandbox.runAt("2026-11-20 09:00:00", "INSERT INTO tsmdm030 (cstp, \"desc\") VALUES ('A', 'one')");
    criteria.addOutputField("desc");
    readToTheEnd(); // SQLite keeps a file of a closed connection for the next one
    long before = sandbox.openFiles();
    for (int i = 0; i < 20; ++i) readToTheEnd();
    assertEquals(before, sandbox.openFiles());
  }

  private void readToTheEnd() throws Exception {
    ServiceTypesManager manager = opened(new ServiceTypesManager());
    AuditReader reader = new AuditReader();
    reader.initialize(manager, new ServiceTypes(), criteria);
    TableRecord tuple = reader.nextElement().getTuple();
    assertFalse(reader.hasMoreElements());
    assertEquals("one", ((ServiceTypes) reader.getCurrentObject(tuple)).getServiceTypeDescription());
    manager.Close();
  }

  @Test
  public void refusesWhatItIsNotMeantFor() throws Exception {
    ServiceTypesManager manager = opened(new ServiceTypesManager());
    ServiceTypes record = new ServiceTypes();
    auditCriteria fresh = new auditCriteria();
    assertEquals("The audit reader was not started. Call initialize first.", refusal(reader::hasMoreElements));
    assertEquals("The audit criteria have no period. Call setPeriod first.",
        refusal(() -> reader.initialize(manager, record, fresh)));
    period none = new period();
    fresh.setPeriod(none);
    assertEquals("The audit period has no beginning. Call setFrom with a date object.",
        refusal(() -> reader.initialize(manager, record, fresh)));
    none.setFrom(at(0));
    assertEquals("The audit period has no end. Call setTo with a date object.",
        refusal(() -> reader.initialize(manager, record, fresh)));
    assertEquals("setTo of audit.period takes a date object, but no object was passed.",
        refusal(() -> none.setTo(null)));
    assertEquals("The record object must be a Skills.Skills object of the sandbox ERP, but an object was passed.",
        refusal(() -> reader.initialize(opened(new SkillsManager()), record, criteria)));
    assertEquals("ServiceTypes.ServiceTypesManager is not open. Call initialize with \"OrvanSandbox, PATH\" first.",
        refusal(() -> reader.initialize(new ServiceTypesManager(), record, criteria)));

    reader.initialize(manager, record, criteria);
    assertTrue(refusal(reader::nextElement, NoSuchElementException.class)
        .equals("There is no further audit entry. Ask hasMoreElements first."));
    criteria.addOutputField("dsca");
    assertEquals("The output field \"dsca\" is no column of tsmdm030. Check its name.",
        refusal(() -> reader.initialize(manager, record, criteria)));
    fresh.addParameter(narrowing("desc", "", "Z"));
    assertEquals("The audit parameter \"desc\" is no key column of tsmdm030. Use \"cstp\".",
        refusal(() -> reader.initialize(manager, record, fresh)));
  }

  private static String refusal(ThrowingRunnable work) {
    return refusal(work, RuntimeException.class);
  }

  private static String refusal(ThrowingRunnable work, Class<? extends RuntimeException> type) {
    return assertThrows(type, work).getMessage();
  }
}
