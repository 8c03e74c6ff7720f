#include "korvos.h"
#include "tests/calls/calls.hpp"

namespace {

// A routine that has nothing to sweep but its name.
call_row plain_row(std::string name, std::function<void()> call) {
  return {std::move(name), [call](scene&) { return [call](void*) { return call(), KORVO_ERR_OK; }; }};
}

// A routine on the state of a generator, and one on a block of the heap that has `size` bytes before.
call_row state_row(std::string name, std::function<_korvo_errcode(void**, double*)> call, bool begun = true) {
  return {std::move(name), [=](scene& s) -> ready_call {
            void** const state = s.record<void*>({}, [](void** held) { (void)korvo_rand_end(*held); });
            if (begun) (void)korvo_rand_begin(state);
            double* const value = s.number<double>();
            return [=](void*) { return call(state, value); };
          }};
}
call_row block_row(std::string name, std::function<_korvo_errcode(void**)> call, std::int32_t size = 0) {
  return {std::move(name), [=](scene& s) -> ready_call {
            void** const block = s.record<void*>({}, [](void** held) { (void)korvo_free(*held); });
            if (size > 0) (void)korvo_malloc(size, block);
            return [=](void*) { return call(block); };
          }};
}

}  // namespace

call_rows core_calls() {
  return {
      ALL_ROWS(malloc, args(3, 5, KORVO_DCOMPLEX).making_bare()),
      ALL_ROWS(realloc, args(5, 7).changing()),
      ALL_ROWS(free, args().changing()),
      ALL_ROWS(validate, args()),
      TYPED_ROWS(wrap_data, args(1, 1)),
      {"matuniv_wrap_data",
       [](scene& s) -> ready_call {
         void* const data = s.in<_dbl_mat>(2, 3)->data;
         _univ_mat* const mat = s.record<_univ_mat>({});
         return [=](void*) { return matuniv_wrap_data(mat, data, 2, 3, KORVO_DOUBLE); };
       }},
      ROW(matuniv_wrap_matrix, args(KORVO_DOUBLE)),
      ROW(matset_malloc, args(2).making_bare()),
      ROW(matset_malloc_matrices, args(3, 4, KORVO_FLOAT).changing()),
      ROW(matset_malloc_matrices_arbitrary_size, args(KORVO_UINT8).sized(1, 6).within(1.0, 9.0).changing()),
      ROW(matset_free, args().changing()),
      ROW(matset_resize, args(3).changing()),
      ROW(matset_validate, args()),
      ROW(matset_verify_allsame, args()),
      ROW(matset_verify_aresame, args()),
      {"matset_free_matrices",
       [](scene& s) -> ready_call {
         auto* const set = s.allocated<_mat_set>(false, true);
         (void)matset_malloc_matrices(set, 3, 4, KORVO_FLOAT);
         return [=](void*) { return matset_free_matrices(set); };
       }},
      block_row("korvo_malloc", [](void** block) { return korvo_malloc(16, block); }),
      block_row("korvo_calloc", [](void** block) { return korvo_calloc(3, 5, block); }),
      block_row(
          "korvo_realloc", [](void** block) { return korvo_realloc(block, 160); }, 16),
      state_row(
          "korvo_rand_begin", [](void** state, double*) { return korvo_rand_begin(state); }, false),
      state_row("korvo_rand_set_seed", [](void** state, double*) { return korvo_rand_set_seed(7, *state); }),
      state_row("korvo_rand_uniform", [](void** state, double* x) { return korvo_rand_uniform(*state, x); }),
      state_row("korvo_rand_normal", [](void** state, double* x) { return korvo_rand_normal(*state, x); }),
      {"korvo_interrupt",
       [](scene& s) -> ready_call {
         double* const next = s.number<double>();
         return [=](void* intrp_ptr) {
           return korvo_interrupt(1.0, next, intrp_ptr) != 0 ? KORVO_ERR_INTERRUPT : KORVO_ERR_OK;
         };
       }},
      plain_row("korvo_interrupt_threshold", [] {}),
      plain_row("korvo_free", [] { (void)korvo_free(nullptr); }),
      plain_row("korvo_rand_end", [] { (void)korvo_rand_end(nullptr); }),
      plain_row("korvo_msg_print", [] { korvo_msg_print("%d", 1); }),
      plain_row("korvo_msg_print_line", [] { korvo_msg_print_line("text"); }),
      plain_row("korvo_msg_print_time", [] { korvo_msg_print_time("text"); }),
      plain_row("korvo_msg_set_level", [] { korvo_msg_set_level(1); }),
      plain_row("korvo_abort", [] { korvo_abort(); }),
      plain_row("DllRegisterServer", [] { DllRegisterServer(); }),
      plain_row("DllUnregisterServer", [] { DllUnregisterServer(); }),
      plain_row("korvo_err_string",
                [] { (void)korvo_err_string(KORVO_ERR_IO, std::make_unique<const char*>().get()); }),
  };
}
