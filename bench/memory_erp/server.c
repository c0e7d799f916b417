/* An ERP in memory, in plain C with the public header only: service orders for a full copy. "initialize" takes
 * "Memory, N" for N orders. The classes in java/ are compared with it. */
#include <qmx/component_server.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>

#include "orders.h"

typedef struct {
  qmx_object head; /* must come first: the host sees this pointer */
  size_t references;
} component;

typedef struct {
  component base;
  int count;
} manager;

typedef struct {
  component base;
  int next, count;
} listing;

typedef struct {
  component base;
  const order_model* model;
  char number[12];
} record;

typedef struct {
  component base;
  order_date date;
} date;

static order_model models[ORDER_MODELS];

static qmx_status fail(qmx_error* error, int32_t number, const char* description) {
  static const char source[] = "ERP in memory";
  error->number = number;
  error->source = source;
  error->source_length = sizeof source - 1;
  error->description = description;
  error->description_length = strlen(description);
  return QMX_FAILED;
}

static void add_ref(qmx_object* object) { ++((component*)object)->references; }

static void release(qmx_object* object) {
  if (--((component*)object)->references == 0) free(object);
}

static qmx_status find(const char* const* names, int32_t count, const char* name, size_t length, int32_t* id,
                       qmx_error* error) {
  for (*id = 0; *id < count; ++*id) {
    if (strlen(names[*id]) == length && strncasecmp(names[*id], name, length) == 0) return QMX_OK;
  }
  return fail(error, QMX_E_NO_SUCH_MEMBER, "There is no such member.");
}

/* Has one reference, which the host gets. */
static qmx_status give(qmx_value* result, component* made, const qmx_type* type, qmx_error* error) {
  if (!made) return fail(error, 7, "Out of memory.");
  made->head.struct_size = sizeof(qmx_object);
  made->head.reserved = 0;
  made->head.type = type;
  made->references = 1;
  result->kind = QMX_OBJECT;
  result->as.object = &made->head;
  return QMX_OK;
}

static void give_integer(qmx_value* result, int number) {
  result->kind = QMX_INT32;
  result->as.integer = number;
}

static void give_text(qmx_value* result, const char* text, size_t length) {
  result->kind = QMX_TEXT;
  result->as.text.data = text;
  result->as.text.length = length;
}

/* A date. */

static const char* const date_members[] = {"getYear", "getMonth", "getDate", "getHours", "getMinutes", "getSeconds"};

static qmx_status date_resolve(qmx_object* object, const char* name, size_t length, int32_t* id, qmx_error* error) {
  (void)object;
  return find(date_members, 6, name, length, id, error);
}

static qmx_status date_invoke(qmx_object* object, int32_t id, qmx_value* const* arguments, size_t count,
                              qmx_value* result, qmx_error* error) {
  (void)arguments, (void)count, (void)error;
  give_integer(result, ((date*)object)->date.fields[id]);
  return QMX_OK;
}

static const qmx_type date_type = {sizeof(qmx_type), 0, date_resolve, date_invoke, add_ref, release, "date"};

/* A service order: the number, then the model's values in order. */

static const char* const record_members[] = {"getServiceOrder",
                                             "getConfiguration",
                                             "getSoldToBusinessPartner",
                                             "getSoldToBusinessPartnerName",
                                             "getLocationAddress",
                                             "getProject",
                                             "getServiceCenter",
                                             "getServiceArea",
                                             "getServiceEngineer",
                                             "getInterruptionReason",
                                             "getServiceContract",
                                             "getServiceOrderQuotation",
                                             "getShipToBusinessPartner",
                                             "getOrderStatus",
                                             "getBlocked",
                                             "getInterrupted",
                                             "getOvertime",
                                             "getAppointment",
                                             "getRescheduleWithDetailSRP",
                                             "getEmergencyOrder",
                                             "getPageFrequency",
                                             "getOrderDuration",
                                             "getTravelDuration",
                                             "getOrderDate",
                                             "getPlannedStartTime",
                                             "getPlannedFinishTime",
                                             "getPlannedEarliestStartTime",
                                             "getPlannedLatestFinishTime",
                                             "getDispatchTime",
                                             "getActualTravelStartTime",
                                             "getExecutionStartTime",
                                             "getExecutionFinishTime"};

enum {
  FIRST_WHOLE = 1 + ORDER_TEXTS,
  FIRST_NUMBER = FIRST_WHOLE + ORDER_WHOLES,
  FIRST_DATE = FIRST_NUMBER + ORDER_NUMBERS,
  RECORD_MEMBERS = FIRST_DATE + ORDER_DATES
};

static qmx_status record_resolve(qmx_object* object, const char* name, size_t length, int32_t* id, qmx_error* error) {
  (void)object;
  return find(record_members, RECORD_MEMBERS, name, length, id, error);
}

static qmx_status record_invoke(qmx_object* object, int32_t id, qmx_value* const* arguments, size_t count,
                                qmx_value* result, qmx_error* error) {
  (void)arguments, (void)count;
  const record* self = (record*)object;
  if (id >= FIRST_DATE) {
    date* made = malloc(sizeof *made);
    if (made) made->date = self->model->dates[id - FIRST_DATE];
    return give(result, &made->base, &date_type, error);
  }
  if (id >= FIRST_NUMBER) {
    result->kind = QMX_DOUBLE;
    result->as.number = self->model->numbers[id - FIRST_NUMBER];
  } else if (id >= FIRST_WHOLE) {
    give_integer(result, self->model->wholes[id - FIRST_WHOLE]);
  } else if (id > 0) {
    give_text(result, self->model->texts[id - 1], self->model->lengths[id - 1]);
  } else {
    give_text(result, self->number, strlen(self->number));
  }
  return QMX_OK;
}

static const qmx_type record_type = {sizeof(qmx_type), 0, record_resolve, record_invoke, add_ref, release, "record"};

/* A listing. */

static const char* const listing_members[] = {"hasMoreElements", "nextElement"};

static qmx_status listing_resolve(qmx_object* object, const char* name, size_t length, int32_t* id, qmx_error* error) {
  (void)object;
  return find(listing_members, 2, name, length, id, error);
}

static qmx_status listing_invoke(qmx_object* object, int32_t id, qmx_value* const* arguments, size_t count,
                                 qmx_value* result, qmx_error* error) {
  (void)arguments, (void)count;
  listing* self = (listing*)object;
  if (id == 0) {
    result->kind = QMX_BOOLEAN;
    result->as.boolean = self->next < self->count;
    return QMX_OK;
  }
  record* made = malloc(sizeof *made);
  if (made) {
    made->model = &models[self->next % ORDER_MODELS];
    snprintf(made->number, sizeof made->number, "SO%07d", self->next++);
  }
  return give(result, &made->base, &record_type, error);
}

static const qmx_type listing_type = {sizeof(qmx_type), 0,       listing_resolve, listing_invoke,
                                      add_ref,          release, "listing"};

/* The manager. */

static const char* const manager_members[] = {"initialize", "listServiceOrders", "close"};

static qmx_status manager_resolve(qmx_object* object, const char* name, size_t length, int32_t* id, qmx_error* error) {
  (void)object;
  return find(manager_members, 3, name, length, id, error);
}

static qmx_status manager_invoke(qmx_object* object, int32_t id, qmx_value* const* arguments, size_t count,
                                 qmx_value* result, qmx_error* error) {
  manager* self = (manager*)object;
  if (id == 0) {
    char text[32] = "";
    if (count != 1 || arguments[0]->kind != QMX_TEXT || arguments[0]->as.text.length >= sizeof text) {
      return fail(error, QMX_E_TYPE_MISMATCH, "A name and the number of orders are expected.");
    }
    memcpy(text, arguments[0]->as.text.data, arguments[0]->as.text.length);
    const char* blank = strrchr(text, ' ');
    self->count = blank ? atoi(blank) : 0;
  } else if (id == 1) {
    listing* made = malloc(sizeof *made);
    if (made) made->next = 0, made->count = self->count;
    return give(result, &made->base, &listing_type, error);
  }
  return QMX_OK;
}

static const qmx_type manager_type = {sizeof(qmx_type), 0,       manager_resolve, manager_invoke,
                                      add_ref,          release, "manager"};

static qmx_status create(const char* prog_id, size_t length, qmx_object** object, qmx_error* error) {
  static const char* const served[] = {"ServiceOrders.ServiceOrdersManager"};
  int32_t id;
  if (find(served, 1, prog_id, length, &id, error) != QMX_OK) {
    return fail(error, QMX_E_CANNOT_CREATE, "Only service orders are served.");
  }
  qmx_value made;
  const qmx_status status = give(&made, calloc(1, sizeof(manager)), &manager_type, error);
  if (status == QMX_OK) *object = made.as.object;
  return status;
}

static const qmx_component_server server = {
    sizeof(qmx_component_server), QMX_ABI_VERSION, create, "ERP in memory 1.0", NULL, NULL, NULL};

const qmx_component_server* QMX_COMPONENT_SERVER_ENTRY(const qmx_component_host* host, qmx_error* error) {
  (void)host, (void)error;
  fill_order_models(models);
  return &server;
}
