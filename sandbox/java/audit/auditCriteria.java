package audit;

import java.util.ArrayList;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Set;

/**
 * What an audit reader is asked. It keeps the objects that it is given, and reads them when a reader is initialized: a
 * parameter that is changed meanwhile counts as changed, and one that was added twice counts once.
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
