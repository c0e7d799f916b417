package audit;

/** An audit reader without entries. */
public class AuditReader {
  public void initialize(Object manager, Object record, auditCriteria criteria) {}

  public boolean hasMoreElements() {
    return false;
  }
}
