package audit;

/** Nothing has ever changed. */
public class AuditReader {
  public void initialize(Object manager, Object record, auditCriteria criteria) {}

  public boolean hasMoreElements() {
    return false;
  }
}
