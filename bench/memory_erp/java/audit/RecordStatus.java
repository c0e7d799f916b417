package audit;

/** How an entry's record was changed. There are no entries here. */
public class RecordStatus {}
