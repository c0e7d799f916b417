package audit;

import java.util.Enumeration;
import java.util.NoSuchElementException;
import orvan.AuditTrail;
import orvan.TableManager;
import orvan.TableRecord;

/** Lists the changes of a table's records, in the order in which they happened. */
public class AuditReader implements Enumeration<AuditEntry> {
  private AuditTrail trail;

  /** Starts a new query. The manager must be open. The record's class selects the table. */
  public void initialize(TableManager<?> manager, TableRecord record, auditCriteria criteria) {
    AuditTrail asked = new AuditTrail(manager, record);
    for (Parameter parameter : criteria.parameters()) {
      asked.narrow(parameter.fieldName(), parameter.from(), parameter.to());
    }
    for (String field : criteria.outputFields()) asked.output(field);
    asked.start(criteria.period().from(), criteria.period().to());
    if (trail != null) trail.close();
    trail = asked;
  }

  @Override
  public boolean hasMoreElements() {
    return running().onEntry();
  }

  @Override
  public AuditEntry nextElement() {
    if (!running().onEntry()) {
      throw new NoSuchElementException("There is no further audit entry. Ask hasMoreElements first.");
    }
    AuditEntry entry = new AuditEntry(trail.change(), trail.key());
    trail.next();
    return entry;
  }

  /** The current state of a tuple's record. */
  public TableRecord getCurrentObject(TableRecord tuple) {
    return running().current(tuple);
  }

  private AuditTrail running() {
    if (trail == null) throw new IllegalStateException("The audit reader was not started. Call initialize first.");
    return trail;
  }
}
