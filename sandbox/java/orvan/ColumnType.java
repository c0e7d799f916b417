package orvan;

/** What a column of the sandbox file holds. */
enum ColumnType {
  /** A text. */
  TEXT,
  /** A whole number. */
  WHOLE,
  /** A number with a fraction. */
  NUMBER,
  /** A day, as "2026-11-20". */
  DAY,
  /** A moment, as "2026-11-20 14:05:09", or null. */
  MOMENT
}
