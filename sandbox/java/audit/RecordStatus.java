package audit;

/** Tells how an entry's record was changed. */
public class RecordStatus {
  public boolean isDeleted(AuditEntry entry) {
    return entry.change() == 'D';
  }

  public boolean isUpdated(AuditEntry entry) {
    return entry.change() == 'U';
  }

  public boolean isInserted(AuditEntry entry) {
    return entry.change() == 'I';
  }
}
