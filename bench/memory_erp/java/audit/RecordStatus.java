package audit;

/** Tells how an entry's record was changed; here there are no entries. */
public class RecordStatus {}
