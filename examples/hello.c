/* Adds two matrices: cc hello.c $(pkg-config --cflags --libs korvos) && ./a.out */
#include <korvos.h>
#include <stdio.h>

int main(void) {
  double x[] = {1, 2, 3, 4}, y[] = {10, 20, 30, 40}, z[4] = {0};
  _dbl_mat a = {2, 2, 4, x}, b = {2, 2, 4, y}, sum = {2, 2, 4, z};
  const char* message;
  _korvo_errcode code = matdbl_add(&a, &b, NULL, &sum);
  korvo_err_string(code, &message);
  matdbl_print(stdout, &sum, NULL, 0, NULL);
  printf("%s\n", message);
  return code != KORVO_ERR_OK;
}
