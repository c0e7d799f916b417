// The bridge's half inside the JVM: the classes of inside/, and the methods of Java that the bridge calls.
#pragma once

#include <jni.h>

namespace java_bridge {

// Classes are global references, kept until the process ends.
struct Inside {
  jclass bridge;
  jmethodID kindOf, isValue, find, getter, choose, nullOf, resultOf, exactResultOf, invoke;  // static ones of Bridge
  jmethodID version, close, box, text, moment, iterator, describe;

  jclass classes;
  jmethodID loader, load, flaw, make;  // static ones of the class Classes

  jclass dates;
  jmethodID getDate, dateAt, fields, makeDate;  // static ones of the class Dates

  jclass object, string, date, outOfMemory, stackOverflow;
  jmethodID typeName, systemLoader;                                     // of java.lang.Class and ClassLoader
  jmethodID booleanValue, charValue, intValue, longValue, doubleValue;  // of Boolean, Character and Number
  jmethodID hasNext, next;                                              // of Iterator
};

// Defines the classes unless they are defined. Raises Java's exception; the next call tries again.
const Inside& Prepare(JNIEnv* env);

// Null before Prepare has succeeded.
const Inside* Prepared();

}  // namespace java_bridge
