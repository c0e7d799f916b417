#include "orders.h"

#include <stdio.h>

static void fill_texts(order_model* model, int k) {
  static const char* const beginnings[ORDER_TEXTS] = {
      "CFG00", "BP0", "Customer of order ", "ADR", "PRJ", "WC", "AREA", "E", "R", "CONTRACT-", "QUOTATION-", "BP1"};
  for (int i = 0; i < ORDER_TEXTS; ++i) {
    model->lengths[i] = (size_t)snprintf(model->texts[i], ORDER_TEXT, "%s%03d", beginnings[i], (k + i) % ORDER_MODELS);
  }
}

static void fill_date(order_date* date, int k, int i) {
  static const order_date none = {{0, 0, 1, 0, 0, 0}};
  const order_date some = {{126, (k + i) % 12, 1 + (k + i) % 28, 6 + k % 12, k % 60, i}};
  *date = i >= 6 && k % 3 > 0 ? none : some; /* two of three orders are not done yet */
}

void fill_order_models(order_model models[ORDER_MODELS]) {
  for (int k = 0; k < ORDER_MODELS; ++k) {
    fill_texts(&models[k], k);
    for (int i = 0; i < ORDER_WHOLES; ++i) models[k].wholes[i] = 1 + (k + i) % 2;
    for (int i = 0; i < ORDER_NUMBERS; ++i) models[k].numbers[i] = (k % 40 + i) / 4.0;
    for (int i = 0; i < ORDER_DATES; ++i) fill_date(&models[k].dates[i], k, i);
  }
}
