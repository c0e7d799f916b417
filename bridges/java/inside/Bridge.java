package qmxdatacopy;

import java.io.PrintWriter;
import java.io.StringWriter;
import java.lang.invoke.MethodType;
import java.lang.reflect.InvocationTargetException;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.math.BigDecimal;
import java.math.BigInteger;
import java.time.LocalDate;
import java.time.LocalDateTime;
import java.time.ZoneOffset;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.Collections;
import java.util.Date;
import java.util.Iterator;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.stream.BaseStream;

/**
 * The bridge's half inside the JVM: what is easier in Java than through JNI. The library defines this class from its own
 * bytes, calls it from one thread, and handles every exception that it throws.
 */
final class Bridge {
  private Bridge() {}

  // How the program treats a value of a class. The numbers are those of java_class.h.
  private static final int OBJECT = 0;
  private static final int STRING = 1;
  private static final int BOOLEAN = 2;
  private static final int CHARACTER = 3;
  private static final int INTEGER = 4;
  private static final int LONG = 5;
  private static final int DOUBLE = 6;
  private static final int BIG_NUMBER = 7;
  private static final int MOMENT = 8;
  private static final int DATE = 9;
  private static final int ARRAY = 10;
  private static final int MAP = 11;

  // Flags.
  private static final int SEVERAL_FORMS = 16;  // answers hasMoreElements and nextElement through an Iterator
  private static final int STREAM = 32;         // is closed when the program releases it
  private static final long ZERO_DAY = -25_569; // 1899-12-30
  private static final int STACK_LENGTH = 8000;
  private static final int LONGEST_CHAIN = 10;

  static int kindOf(Class<?> type) {
    if (type == String.class) return STRING;
    if (type == Boolean.class) return BOOLEAN;
    if (type == Character.class) return CHARACTER;
    if (type == Integer.class || type == Short.class || type == Byte.class) return INTEGER;
    if (type == Long.class) return LONG;
    if (type == Double.class || type == Float.class) return DOUBLE;
    if (BigInteger.class.isAssignableFrom(type) || BigDecimal.class.isAssignableFrom(type)) return BIG_NUMBER;
    if (type == LocalDate.class || type == LocalDateTime.class) return MOMENT;
    if (isSql(type, "java.sql.Date") || isSql(type, "java.sql.Timestamp")) return MOMENT;
    if (type == Date.class) return DATE;
    if (type.isArray()) return ARRAY;
    if (Map.class.isAssignableFrom(type)) return MAP;
    if (BaseStream.class.isAssignableFrom(type)) return OBJECT | SEVERAL_FORMS | STREAM;
    boolean several = Iterator.class.isAssignableFrom(type) || Iterable.class.isAssignableFrom(type);
    return several ? OBJECT | SEVERAL_FORMS : OBJECT;
  }

  /** Whether null of this declared type is a missing value, not a missing object. */
  static boolean isValue(Class<?> type) {
    int kind = kindOf(type);
    return kind >= STRING && kind <= MOMENT || type == Number.class || type == CharSequence.class;
  }

  /** Whether the class is, or extends, a class of java.sql, which a JVM may lack. */
  private static boolean isSql(Class<?> type, String name) {
    for (Class<?> c = type; c != null; c = c.getSuperclass()) {
      if (c.getName().equals(name)) return true;
    }
    return false;
  }

  // Members.

  /** The callable public methods of that name: those in exactly this spelling if there are any, else those in any case. */
  static Method[] find(Class<?> type, String name) {
    List<Method> found = new ArrayList<>();
    boolean exact = false;
    for (Method method : type.getMethods()) exact |= method.getName().equals(name);
    for (Method method : type.getMethods()) {
      boolean same = exact ? method.getName().equals(name) : sameName(method.getName(), name);
      Method callable = same ? callable(method, type) : null;
      if (callable == null) continue;
      callable.trySetAccessible(); // reflection then checks nothing at each call
      add(found, callable);
    }
    return found.toArray(new Method[0]);
  }

  private static boolean sameName(String one, String other) {
    return one.toLowerCase(Locale.ROOT).equals(other.toLowerCase(Locale.ROOT));
  }

  // One method for each spelling and parameter list: the one with the most specific result.
  private static void add(List<Method> found, Method method) {
    for (int i = 0; i < found.size(); ++i) {
      Method other = found.get(i);
      if (!other.getName().equals(method.getName())) continue;
      if (!Arrays.equals(other.getParameterTypes(), method.getParameterTypes())) continue;
      if (other.getReturnType().isAssignableFrom(method.getReturnType())) found.set(i, method);
      return;
    }
    found.add(method);
  }

  // The method itself, or its declaration in a public class or interface; null if there is none.
  private static Method callable(Method method, Class<?> type) {
    if (isOpen(method.getDeclaringClass())) return method;
    for (Class<?> c = type; c != null; c = c.getSuperclass()) {
      Method declared = isOpen(c) ? declared(c, method) : null;
      if (declared == null) declared = inInterfaces(c, method);
      if (declared != null) return declared;
    }
    return null;
  }

  private static Method inInterfaces(Class<?> type, Method method) {
    for (Class<?> i : type.getInterfaces()) {
      Method declared = isOpen(i) ? declared(i, method) : null;
      if (declared == null) declared = inInterfaces(i, method);
      if (declared != null) return declared;
    }
    return null;
  }

  private static Method declared(Class<?> type, Method method) {
    try {
      Method same = type.getMethod(method.getName(), method.getParameterTypes());
      return isOpen(same.getDeclaringClass()) ? same : null;
    } catch (NoSuchMethodException e) {
      return null;
    }
  }

  static boolean isOpen(Class<?> type) {
    for (Class<?> c = type; c != null; c = c.getEnclosingClass()) {
      if (!Modifier.isPublic(c.getModifiers())) return false;
    }
    return type.getModule().isExported(type.getPackageName(), Bridge.class.getModule());
  }

  /** The only method that can be called without arguments on an object; null if there is none or more than one. */
  static Method getter(Method[] methods) {
    Method getter = null;
    for (Method method : methods) {
      if (method.getParameterCount() > 0) continue;
      if (getter != null || Modifier.isStatic(method.getModifiers())) return null;
      getter = method;
    }
    return getter;
  }

  /**
   * Returns the method that fits the arguments best, and converts them in place. If there is none, returns the reason: a
   * text that begins with an error number and a blank.
   */
  static Object choose(Object target, Method[] methods, Object[] arguments) {
    List<Method> fitting = new ArrayList<>();
    List<int[]> costs = new ArrayList<>();
    List<Method> sameCount = new ArrayList<>();
    for (Method method : methods) {
      if (method.getParameterCount() != arguments.length) continue;
      sameCount.add(method);
      int[] cost = costs(method, arguments);
      if (cost == null) continue;
      fitting.add(method);
      costs.add(cost);
    }
    if (sameCount.isEmpty()) return "450 " + wrongCount(target, methods, arguments);
    if (fitting.isEmpty()) return "13 " + misfit(target, sameCount, arguments);
    int best = 0;
    for (int i = 1; i < fitting.size(); ++i) {
      if (isBetter(fitting, costs, i, best)) best = i;
    }
    for (int i = 0; i < fitting.size(); ++i) {
      if (i != best && !isBetter(fitting, costs, best, i)) return "13 " + ambiguous(target, fitting, arguments);
    }
    Class<?>[] types = fitting.get(best).getParameterTypes();
    for (int i = 0; i < arguments.length; ++i) arguments[i] = Conversion.convert(arguments[i], types[i]);
    return fitting.get(best);
  }

  private static int[] costs(Method method, Object[] arguments) {
    Class<?>[] types = method.getParameterTypes();
    int[] costs = new int[types.length];
    for (int i = 0; i < types.length; ++i) {
      costs[i] = Conversion.cost(arguments[i], types[i]);
      if (costs[i] < 0) return null;
    }
    return costs;
  }

  // No argument fits worse and one fits better; among equals the more specific parameters.
  private static boolean isBetter(List<Method> methods, List<int[]> costs, int one, int other) {
    boolean better = false;
    for (int i = 0; i < costs.get(one).length; ++i) {
      int difference = costs.get(one)[i] - costs.get(other)[i];
      Class<?> a = methods.get(one).getParameterTypes()[i];
      Class<?> b = methods.get(other).getParameterTypes()[i];
      if (difference == 0 && a != b) difference = b.isAssignableFrom(a) ? -1 : 1;
      if (difference > 0) return false;
      better |= difference < 0;
    }
    return better;
  }

  private static String wrongCount(Object target, Method[] methods, Object[] arguments) {
    List<Integer> counts = new ArrayList<>();
    for (Method method : methods) {
      if (!counts.contains(method.getParameterCount())) counts.add(method.getParameterCount());
    }
    Collections.sort(counts);
    StringBuilder text = new StringBuilder();
    for (Integer count : counts) text.append(text.length() == 0 ? "" : " or ").append(count);
    return memberOf(target, methods[0]) + " takes " + text + (counts.equals(List.of(1)) ? " argument, not " : " arguments, not ")
        + arguments.length + ".";
  }

  private static String misfit(Object target, List<Method> methods, Object[] arguments) {
    if (methods.size() > 1) {
      return memberOf(target, methods.get(0)) + " takes no arguments of the types " + types(arguments)
          + "; there are " + list(methods) + ".";
    }
    Class<?>[] types = methods.get(0).getParameterTypes();
    int i = 0;
    while (Conversion.cost(arguments[i], types[i]) >= 0) ++i;
    return "Parameter " + (i + 1) + " of " + target.getClass().getName() + "." + shown(methods.get(0))
        + " wants " + types[i].getTypeName() + ", which " + Conversion.shown(arguments[i]) + " cannot become.";
  }

  private static String ambiguous(Object target, List<Method> methods, Object[] arguments) {
    return memberOf(target, methods.get(0)) + " is ambiguous for arguments of the types " + types(arguments)
        + "; there are " + list(methods) + ".";
  }

  private static String memberOf(Object target, Method method) {
    return target.getClass().getName() + "." + method.getName();
  }

  private static String list(List<Method> methods) {
    List<String> texts = new ArrayList<>();
    for (Method method : methods) texts.add(shown(method));
    Collections.sort(texts);
    return String.join(", ", texts);
  }

  private static String shown(Method method) {
    List<String> types = new ArrayList<>();
    for (Class<?> type : method.getParameterTypes()) types.add(type.getTypeName());
    return method.getName() + "(" + String.join(", ", types) + ")";
  }

  private static String types(Object[] arguments) {
    List<String> types = new ArrayList<>();
    for (Object argument : arguments) types.add(argument == null ? "null" : argument.getClass().getName());
    return "(" + String.join(", ", types) + ")";
  }

  // The meaning of a method's null: nothing, a missing value, no object.
  private static final int NOTHING = 0;
  private static final int NO_VALUE = 1;
  private static final int NO_OBJECT = 2;

  static int nullOf(Method method) {
    if (method.getReturnType() == void.class) return NOTHING;
    return isValue(method.getReturnType()) ? NO_VALUE : NO_OBJECT;
  }

  /** The result of the method without arguments: a primitive type's letter, T of a String, U of a Date, L of the rest. */
  static char resultOf(Method method) {
    Class<?> type = method.getReturnType();
    if (type == String.class) return 'T';
    if (type == Date.class) return 'U';
    if (!type.isPrimitive()) return 'L';
    return MethodType.methodType(type).toMethodDescriptorString().charAt(2);
  }

  /** The class of every object that the method returns; null if there can be several. */
  static Class<?> exactResultOf(Method method) {
    Class<?> type = method.getReturnType();
    return Modifier.isFinal(type.getModifiers()) && !type.isPrimitive() ? type : null;
  }

  static Object invoke(Method method, Object target, Object[] arguments) throws Throwable {
    if (Dates.set(target, method, arguments)) return null;
    try {
      return method.invoke(target, arguments);
    } catch (InvocationTargetException e) {
      throw e.getCause();
    }
  }

  // Values and streams.

  static String version() {
    return System.getProperty("java.version") + " (" + System.getProperty("java.vm.name") + ")";
  }

  static Object box(int kind, long bits) {
    switch (kind) {
      case BOOLEAN: return bits != 0;
      case INTEGER: return (int) bits;
      case LONG: return (short) bits;  // the program's 16-bit integers: it has no 64-bit integers
      case DOUBLE: return Double.longBitsToDouble(bits);
      default: return LocalDateTime.ofEpochSecond(bits + ZERO_DAY * 86400, 0, ZoneOffset.UTC);
    }
  }

  static String text(Object number) {
    return number instanceof BigDecimal ? ((BigDecimal) number).toPlainString() : number.toString();
  }

  /** Seconds since 1899-12-30. */
  static long moment(Object value) {
    LocalDateTime moment;
    if (value instanceof LocalDate) {
      moment = ((LocalDate) value).atStartOfDay();
    } else if (value instanceof LocalDateTime) {
      moment = (LocalDateTime) value;
    } else {
      moment = Conversion.civil((Date) value);
    }
    return moment.toEpochSecond(ZoneOffset.UTC) - ZERO_DAY * 86400;
  }

  static Iterator<?> iterator(Object several) {
    if (several instanceof Iterator) return (Iterator<?>) several;
    if (several instanceof BaseStream) return ((BaseStream<?, ?>) several).iterator();
    return ((Iterable<?>) several).iterator();
  }

  static void close(Object stream) {
    ((BaseStream<?, ?>) stream).close();
  }

  // Errors.

  /** The exception with its causes, and its stack trace. */
  static String[] describe(Throwable thrown) {
    StringBuilder text = new StringBuilder();
    int length = 0;
    for (Throwable t = thrown; t != null && length < LONGEST_CHAIN; t = t.getCause(), ++length) {
      if (length > 0) text.append("; caused by ");
      text.append(t.getClass().getName());
      String message = messageOf(t);
      if (message != null && !message.isEmpty()) text.append(": ").append(message);
    }
    StringWriter stack = new StringWriter();
    try {
      thrown.printStackTrace(new PrintWriter(stack, true));
    } catch (RuntimeException e) {
      stack.append("\n(the rest cannot be shown: " + e.getClass().getName() + ")");
    }
    String trace = stack.toString();
    if (trace.length() > STACK_LENGTH) trace = trace.substring(0, STACK_LENGTH) + "...";
    return new String[] {text.toString(), trace};
  }

  private static String messageOf(Throwable thrown) {
    try {
      return thrown.getLocalizedMessage();
    } catch (RuntimeException e) {
      return "(its message cannot be shown: " + e.getClass().getName() + ")";
    }
  }
}
