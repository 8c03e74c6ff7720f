/* A host in plain C11: every header, an operation, an interrupt object of its own. */
#include <stdio.h>

#include "korvos.h"

static int32_t stop(void* object, int32_t one) {
  int* const polls = korvo_host_context(object);
  *polls += one;
  return 1;
}

static int expect(const char* what, _korvo_errcode seen, _korvo_errcode expected) {
  const char* text = NULL;
  if (seen == expected) return 0;
  (void)korvo_err_string(seen, &text);
  printf("%s: %s\n", what, text);
  return 1;
}

int main(void) {
  int failures = 0;
  int polls = 0;
  korvo_host host;
  _dbl_mat a, b;
  _univ_mat universal;

  failures += expect("malloc", matdbl_malloc(&a, 2, 3), KORVO_ERR_OK);
  failures += expect("malloc", matdbl_malloc(&b, 3, 2), KORVO_ERR_OK);
  failures += expect("fill", matdbl_assign_scalar(1.5, NULL, &a), KORVO_ERR_OK);
  failures +=
      expect("stop", matdbl_transpose(&a, korvo_host_init(&host, stop, &polls), &b), KORVO_ERR_INTERRUPT);
  failures += expect("transpose", matdbl_transpose(&a, NULL, &b), KORVO_ERR_OK);
  failures += expect("wrap", matuniv_wrap_matrix(&universal, &b, KORVO_DOUBLE), KORVO_ERR_OK);
  failures += expect("validate", matuniv_validate(&universal), KORVO_ERR_OK);
  failures += expect("shapes", matdbl_add(&a, &b, NULL, &a), KORVO_ERR_ILLEGAL_SIZE);
  if (polls != 1 || b.data[5] != 1.5 || korvo_interrupt_threshold != 10000000.0) ++failures;
  failures += expect("free", matdbl_free(&a), KORVO_ERR_OK);
  failures += expect("free", matdbl_free(&b), KORVO_ERR_OK);
  return failures;
}
