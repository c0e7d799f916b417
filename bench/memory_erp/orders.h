/* A thousand service orders in memory, listed again and again with new numbers. The classes in java/ have the same
 * values. */
#ifndef QMX_BENCH_MEMORY_ERP_ORDERS_H
#define QMX_BENCH_MEMORY_ERP_ORDERS_H

#include <stddef.h>

enum { ORDER_MODELS = 1000, ORDER_TEXTS = 12, ORDER_WHOLES = 8, ORDER_NUMBERS = 2, ORDER_DATES = 9, ORDER_TEXT = 24 };

/* The fields of a date object: the year counted from 1900, the month from 0. Year 0 and month 0 stand for no date. */
typedef struct {
  int fields[6];
} order_date;

typedef struct {
  char texts[ORDER_TEXTS][ORDER_TEXT];
  size_t lengths[ORDER_TEXTS];
  int wholes[ORDER_WHOLES];
  double numbers[ORDER_NUMBERS];
  order_date dates[ORDER_DATES];
} order_model;

void fill_order_models(order_model models[ORDER_MODELS]);

#endif
