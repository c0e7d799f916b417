package bridge;

import java.util.Date;
import java.util.NoSuchElementException;

/** The audit classes of FailingErp: two changes of service types. */
public class FailingAudit {
  private FailingAudit() {}

  private static void in(String place) {
    FailingErp.in(place);
  }

  public static class Criteria {
    public Criteria() { in("constructor of auditCriteria"); }
    public void setPeriod(Period period) { in("setPeriod"); }
    public void addParameter(Parameter parameter) { in("addParameter"); }
    public void addOutputField(String name) { in("addOutputField"); }
  }

  public static class Period {
    public Period() { in("constructor of period"); }
    public void setFrom(Date date) { in("setFrom of period"); }
    public void setTo(Date date) { in("setTo of period"); }
  }

  public static class Parameter {
    public Parameter() { in("constructor of Parameter"); }
    public void setFieldName(String name) { in("setFieldName"); }
    public void setFrom(String bound) { in("setFrom of Parameter"); }
    public void setTo(String bound) { in("setTo of Parameter"); }
  }

  public static class Entry {
    private final FailingErp.Type tuple;
    Entry(FailingErp.Type tuple) { this.tuple = tuple; }
    public FailingErp.Type getTuple() {
      in("getTuple");
      return tuple;
    }
  }

  public static class Reader {
    private int given;
    public Reader() { in("constructor of AuditReader"); }
    public void initialize(FailingErp manager, FailingErp.Type record, Criteria criteria) {
      in("initialize of AuditReader");
    }
    public boolean hasMoreElements() {
      if (given == 1) in("second hasMoreElements of AuditReader");
      return given < 2;
    }
    public Entry nextElement() {
      in("nextElement of AuditReader");
      if (given == 2) throw new NoSuchElementException();
      return new Entry(new FailingErp.Type("T" + ++given));
    }
    public FailingErp.Type getCurrentObject(FailingErp.Type tuple) {
      in("getCurrentObject");
      return tuple;
    }
  }

  public static class RecordStatus {
    public RecordStatus() { in("constructor of RecordStatus"); }
    public boolean isDeleted(Entry entry) {
      in("isDeleted");
      return false;
    }
    public boolean isUpdated(Entry entry) {
      in("isUpdated");
      return false;
    }
    public boolean isInserted(Entry entry) {
      in("isInserted");
      return true;
    }
  }
}
