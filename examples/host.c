/* Plays a host: matrices in columns, an interrupt object of its own, a colour picture there and back, and
 * failures as messages. cc host.c $(pkg-config --cflags --libs korvos) && ./a.out; 0 if all came out right. */
#include <korvos.h>
#include <stdio.h>
#include <stdlib.h>

static int failures = 0;

static void expect(int holds, const char* what) {
  if (holds) return;
  printf("failed: %s\n", what);
  ++failures;
}

/* An object whose table has eleven operations, of which the library calls the last; a C++ object would do. */
typedef struct {
  const korvo_poll_function* table;
  int polls, patience;
} stop_button;

static int32_t poll_interrupt(void* object, int32_t one) {
  stop_button* const button = object;
  button->polls += one;
  return button->polls > button->patience;
}

static const korvo_poll_function operations[11] = {[10] = poll_interrupt};

/* What intrp_ptr points at: the object comes second. */
typedef struct {
  void* of_no_concern;
  stop_button* button;
} interrupt_record;

/* A matrix of zeros: no arrays, columns two elements longer than they need be. */
static aMatrix matrix(int32_t rows, int32_t cols) {
  aMatrix made = {0, 0, 0, 0, NULL, NULL, 0, 0};
  made.rows_allocated = rows + 2;
  made.bytes_per_part = (uint32_t)(made.rows_allocated * cols) * (uint32_t)sizeof(double);
  made.rows = rows;
  made.cols = cols;
  return made;
}

static double* at(const aMatrix* matrix, int32_t row, int32_t col) {
  return matrix->real + ((ptrdiff_t)matrix->rows_allocated * col + row);
}

/* The first failure ends the work, and the host says it in its own words. */
static int failed(_korvo_errcode code) {
  if (code != KORVO_ERR_OK) printf("host: %s\n", shx_std_error_messages[korvo_err_translate(code)]);
  return code != KORVO_ERR_OK;
}

/* Three planes, and their end; a set that was never made, or not wholly, has nothing to free. */
static _korvo_errcode make_planes(_mat_set* set, int32_t rows, int32_t cols) {
  const int32_t three = 3;
  _korvo_errcode code = matset_malloc(set, 1, &three);
  if (code != KORVO_ERR_OK) return code;
  code = matset_malloc_matrices(set, rows, cols, KORVO_DOUBLE);
  if (code != KORVO_ERR_OK) (void)matset_free(set);
  return code;
}
static void free_planes(_mat_set* set) {
  (void)matset_free_matrices(set);
  (void)matset_free(set);
}

/* out = in with each plane smoothed over 3 by 3 pixels. */
static _korvo_errcode smooth(const aMatrix* in, void* intrp_ptr, aMatrix* out) {
  double ninths[9];
  _univ_mat kernel = {3, 3, 9, ninths, KORVO_DOUBLE};
  _mat_set planes = {0, NULL, 0, NULL}, smoothed = {0, NULL, 0, NULL};
  _korvo_errcode code = make_planes(&planes, in->rows, in->cols / 3);
  for (int i = 0; i < 9; ++i) ninths[i] = 1.0 / 9.0;
  if (code == KORVO_ERR_OK) code = make_planes(&smoothed, in->rows, in->cols / 3);
  if (code == KORVO_ERR_OK) code = matset_assign_from_sheetrix_color(in, &planes);
  for (int p = 0; p < 3 && code == KORVO_ERR_OK; ++p)
    code = siguniv_correlate(&planes.mats[p], &kernel, 1, 1, 2, 2, SIG_BOUNDARY_CONTINUE, intrp_ptr,
                             &smoothed.mats[p]);
  if (code == KORVO_ERR_OK) code = matset_assign_to_sheetrix_color(&smoothed, out);
  free_planes(&planes);
  free_planes(&smoothed);
  return code;
}

int main(void) {
  stop_button button = {operations, 0, 1000};
  interrupt_record record = {NULL, &button};
  aMatrix picture = matrix(4, 3 * 5), result = matrix(4, 3 * 5), narrow = matrix(4, 5);
  double** columns;

  /* Plane p is p + 1 all over, so that smoothing changes nothing. */
  picture.real = malloc(picture.bytes_per_part);
  columns = allocRealColArr(&picture);
  if (!picture.real || !columns) return 1;
  for (int j = 0; j < picture.cols; ++j)
    for (int i = 0; i < picture.rows_allocated; ++i) columns[j][i] = i < picture.rows ? 1 + j / 5 : -1;
  free(columns);

  expect(!failed(smooth(&picture, &record, &result)), "smoothing");
  expect(button.polls > 0, "the library asks whether to stop");
  for (int j = 0; result.real && j < result.cols; ++j)
    for (int i = 0; i < result.rows; ++i) {
      const double difference = *at(&result, i, j) - *at(&picture, i, j);
      expect(difference < 1e-12 && difference > -1e-12, "each plane comes back in its own place");
    }
  expect(result.real != NULL && *at(&result, result.rows, 0) == 0.0, "what lies between columns stays");
  expect(result.imag == NULL, "a picture is real");

  button.patience = 0;
  expect(korvo_err_translate(smooth(&picture, &record, &result)) == STD_ERRORMSG_INTERRUPTED, "stopping");
  expect(korvo_err_translate(smooth(&picture, NULL, &narrow)) == STD_ERRORMSG_INVALID_DIMENSION,
         "a wrong size");
  expect(narrow.real == NULL, "what is refused is not written");

  free(picture.real);
  free(result.real); /* made by the library, with calloc() */
  if (failures == 0) printf("host: all is well\n");
  return failures != 0;
}
