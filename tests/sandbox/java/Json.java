import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/** Reads a line of a trace: objects become maps, arrays lists, whole numbers longs, other numbers doubles. */
final class Json {
  private final String text;
  private int at;

  private Json(String text) {
    this.text = text;
  }

  @SuppressWarnings("unchecked") // a line of a trace is an object
  static Map<String, Object> line(String text) {
    return (Map<String, Object>) new Json(text).value();
  }

  private Object value() {
    return switch (text.charAt(at)) {
      case '{' -> object();
      case '[' -> array();
      case '"' -> string();
      default -> word();
    };
  }

  private Map<String, Object> object() {
    Map<String, Object> members = new LinkedHashMap<>();
    for (++at; text.charAt(at) != '}'; skip(',')) {
      String name = string();
      skip(':');
      members.put(name, value());
    }
    ++at;
    return members;
  }

  private List<Object> array() {
    List<Object> elements = new ArrayList<>();
    for (++at; text.charAt(at) != ']'; skip(',')) elements.add(value());
    ++at;
    return elements;
  }

  private String string() {
    StringBuilder read = new StringBuilder();
    for (++at; text.charAt(at) != '"'; ++at) {
      if (text.charAt(at) == '\\') escaped(read);
      else read.append(text.charAt(at));
    }
    ++at;
    return read.toString();
  }

  private void escaped(StringBuilder read) {
    char letter = text.charAt(++at);
    switch (letter) {
      case 'n' -> read.append('\n');
      case 't' -> read.append('\t');
      case 'r' -> read.append('\r');
      case 'b' -> read.append('\b');
      case 'f' -> read.append('\f');
      case 'u' -> {
        read.append((char) Integer.parseInt(text.substring(at + 1, at + 5), 16));
        at += 4;
      }
      default -> read.append(letter);
    }
  }

  private Object word() {
    int from = at;
    while (at < text.length() && ",]}".indexOf(text.charAt(at)) < 0) ++at;
    String word = text.substring(from, at);
    return switch (word) {
      case "null" -> null;
      case "true" -> true;
      case "false" -> false;
      default -> word.matches("-?\\d+") ? (Object) Long.valueOf(word) : Double.valueOf(word);
    };
  }

  private void skip(char mark) {
    if (text.charAt(at) == mark) ++at;
  }
}
