package audit;

import java.util.ArrayList;
import java.util.List;

/** The criteria of an audit query. */
public class auditCriteria {
  private period period;
  private final List<Parameter> parameters = new ArrayList<>();
  private final List<String> outputFields = new ArrayList<>();

  public void setPeriod(period period) {
    this.period = period;
  }

  public void addParameter(Parameter parameter) {
    parameters.add(parameter);
  }

  public void addOutputField(String name) {
    outputFields.add(name);
  }
}
