package ServiceOrderEngineers;

import orvan.Table;
import orvan.TableRecord;

/** An engineer of a service order. */
public class ServiceOrderEngineers extends TableRecord {
  static final Table TABLE =
      Table.named("tssoc205")
          .texts("orno", "emno")
          .wholes("line", "acln")
          .key("orno", "line")
          .build();

  public ServiceOrderEngineers() {
    super(TABLE);
  }

  public String getServiceOrder() {
    return text("orno");
  }

  public int getLineNumber() {
    return whole("line");
  }

  public String getServiceEngineer() {
    return text("emno");
  }

  public Integer getActivity() {
    return whole("acln");
  }
}
