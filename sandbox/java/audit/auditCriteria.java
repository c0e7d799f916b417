package audit;

import java.util.ArrayList;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Set;

/**
 * The criteria of an audit query. They keep their objects, and a reader's initialize reads them: it sees later changes
 * of a parameter, and counts a parameter that was added twice only once.
 */
public class auditCriteria {
  private period period;
  private final Set<Parameter> parameters = new LinkedHashSet<>();
  private final List<String> outputFields = new ArrayList<>();

  public void setPeriod(period period) {
    this.period = period;
  }

  public void addParameter(Parameter parameter) {
    if (parameter == null) throw new IllegalArgumentException("The audit parameter is missing. Pass an audit.Parameter.");
    parameters.add(parameter);
  }

  public void addOutputField(String name) {
    outputFields.add(name);
  }

  period period() {
    if (period == null) throw new IllegalStateException("The audit criteria have no period. Call setPeriod first.");
    return period;
  }

  Set<Parameter> parameters() {
    return parameters;
  }

  List<String> outputFields() {
    return outputFields;
  }
}
