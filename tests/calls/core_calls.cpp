#include "korvos.h"
#include "tests/calls/calls.hpp"

namespace {

template <class M>
call_row malloc_row(std::string name, _korvo_errcode (*f)(M*, std::int32_t, std::int32_t)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            M* const mat = s.record<M>([](M* made, byte_hash& hash) { hash.add(made, 12); },
                                       [](M* made) { (void)korvo_free(made->data); });
            return [=](void*) { return f(mat, 3, 5); };
          }};
}

// A matrix on the heap, for routines that change its buffer.
template <class M>
M* heap_matrix(scene& s) {
  M* const mat = s.record<M>([](M* made, byte_hash& hash) { hash.add(made, 12); },
                             [](M* made) { (void)korvo_free(made->data); });
  void* data = nullptr;
  (void)korvo_malloc(6 * 16, &data);
  mat->nrow = 2;
  mat->ncol = 3;
  mat->nelem = 6;
  mat->data = static_cast<decltype(M::data)>(data);
  if constexpr (std::is_same_v<M, _univ_mat>) mat->type = KORVO_DCOMPLEX;
  return mat;
}

template <class M>
call_row realloc_row(std::string name, _korvo_errcode (*f)(M*, std::int32_t, std::int32_t)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            M* const mat = heap_matrix<M>(s);
            return [=](void*) { return f(mat, 5, 7); };
          }};
}

template <class M>
call_row free_row(std::string name, _korvo_errcode (*f)(M*)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            M* const mat = heap_matrix<M>(s);
            return [=](void*) { return f(mat); };
          }};
}

template <class M>
call_row validate_row(std::string name, _korvo_errcode (*f)(const M*)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            const M* const mat = matrix_in<M>(s);
            return [=](void*) { return f(mat); };
          }};
}

template <class M, class T>
call_row wrap_row(std::string name, _korvo_errcode (*f)(M*, T*, std::int32_t, std::int32_t)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            T* const data = s.in<M>(2, 3)->data;
            M* const mat = s.record<M>([](M* made, byte_hash& hash) { hash.add(made, 12); });
            return [=](void*) { return f(mat, data, 2, 3); };
          }};
}

// A routine that has nothing to sweep but its name.
call_row plain_row(std::string name, std::function<void()> call) {
  return {std::move(name), [call](scene&) -> ready_call {
            return [call](void*) {
              call();
              return KORVO_ERR_OK;
            };
          }};
}

void* random_state(scene& s) {
  void** const state = s.record<void*>({}, [](void** held) { (void)korvo_rand_end(*held); });
  (void)korvo_rand_begin(state);
  return *state;
}

call_row random_row(std::string name, _korvo_errcode (*f)(void*, double*)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            void* const state = random_state(s);
            double* const value = s.number<double>();
            return [=](void*) { return f(state, value); };
          }};
}

_mat_set* heap_set(scene& s, bool with_matrices) {
  _mat_set* const set = s.record<_mat_set>(
      [](_mat_set* made, byte_hash& hash) {
        hash.add(made->dims, sizeof(int32_t) * static_cast<size_t>(made->ndim));
      },
      [](_mat_set* made) { (void)matset_free(made); });
  const std::int32_t dims[] = {2, 3};
  (void)matset_malloc(set, 2, dims);
  if (with_matrices) (void)matset_malloc_matrices(set, 3, 4, KORVO_FLOAT);
  return set;
}

void free_made_matrices(_mat_set* set) { (void)matset_free_matrices(set); }

call_rows set_calls() {
  return {
      {"matset_malloc",
       [](scene& s) -> ready_call {
         _mat_set* const set = s.record<_mat_set>({}, [](_mat_set* made) { (void)matset_free(made); });
         static const std::int32_t dims[] = {2, 3};
         return [=](void*) { return matset_malloc(set, 2, dims); };
       }},
      {"matset_malloc_matrices",
       [](scene& s) -> ready_call {
         _mat_set* const set = heap_set(s, false);
         return [=](void*) {
           const _korvo_errcode result = matset_malloc_matrices(set, 3, 4, KORVO_FLOAT);
           if (result == KORVO_ERR_OK) free_made_matrices(set);
           return result;
         };
       }},
      {"matset_malloc_matrices_arbitrary_size",
       [](scene& s) -> ready_call {
         _mat_set* const set = heap_set(s, false);
         const auto* const sizes = s.in<_s32_mat>(1, 6, 1.0, 9.0);
         return [=](void*) {
           const _korvo_errcode result = matset_malloc_matrices_arbitrary_size(set, sizes, sizes, KORVO_UINT8);
           if (result == KORVO_ERR_OK) free_made_matrices(set);
           return result;
         };
       }},
      {"matset_free",
       [](scene& s) -> ready_call {
         _mat_set* const set = heap_set(s, false);
         return [=](void*) { return matset_free(set); };
       }},
      {"matset_free_matrices",
       [](scene& s) -> ready_call {
         _mat_set* const set = heap_set(s, true);
         return [=](void*) { return matset_free_matrices(set); };
       }},
      {"matset_resize",
       [](scene& s) -> ready_call {
         _mat_set* const set = heap_set(s, false);
         static const std::int32_t dims[] = {1, 6, 1};
         return [=](void*) { return matset_resize(3, dims, set); };
       }},
      {"matset_validate",
       [](scene& s) -> ready_call {
         const _mat_set* const set = s.in_set({s.in(KORVO_UINT8, 2, 2), s.in(KORVO_FLOAT, 1, 2)});
         return [=](void*) { return matset_validate(set); };
       }},
      {"matset_verify_allsame",
       [](scene& s) -> ready_call {
         const _mat_set* const set = s.in_set({s.in(KORVO_UINT8, 2, 2), s.in(KORVO_UINT8, 2, 2)});
         return [=](void*) { return matset_verify_allsame(set); };
       }},
      {"matset_verify_aresame",
       [](scene& s) -> ready_call {
         const _mat_set* const set = s.in_set({s.in(KORVO_UINT8, 2, 2), s.in(KORVO_FLOAT, 1, 2)});
         return [=](void*) { return matset_verify_aresame(set, set); };
       }},
  };
}

call_rows utility_calls() {
  return {
      {"korvo_err_string",
       [](scene& s) -> ready_call {
         const char** const text = s.record<const char*>({});
         return [=](void*) { return korvo_err_string(KORVO_ERR_IO, text); };
       }},
      {"korvo_malloc",
       [](scene& s) -> ready_call {
         void** const block = s.record<void*>({}, [](void** made) { (void)korvo_free(*made); });
         return [=](void*) { return korvo_malloc(16, block); };
       }},
      {"korvo_calloc",
       [](scene& s) -> ready_call {
         void** const block = s.record<void*>({}, [](void** made) { (void)korvo_free(*made); });
         return [=](void*) { return korvo_calloc(3, 5, block); };
       }},
      {"korvo_realloc",
       [](scene& s) -> ready_call {
         void** const block = s.record<void*>({}, [](void** made) { (void)korvo_free(*made); });
         (void)korvo_malloc(16, block);
         return [=](void*) { return korvo_realloc(block, 160); };
       }},
      {"korvo_rand_begin",
       [](scene& s) -> ready_call {
         void** const state = s.record<void*>({}, [](void** made) { (void)korvo_rand_end(*made); });
         return [=](void*) { return korvo_rand_begin(state); };
       }},
      {"korvo_rand_set_seed",
       [](scene& s) -> ready_call {
         void* const state = random_state(s);
         return [=](void*) { return korvo_rand_set_seed(7, state); };
       }},
      random_row("korvo_rand_uniform", &korvo_rand_uniform),
      random_row("korvo_rand_normal", &korvo_rand_normal),
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
  };
}

call_rows matrix_calls() {
  return {
      malloc_row("matu8_malloc", &matu8_malloc),
      malloc_row("matu16_malloc", &matu16_malloc),
      malloc_row("matu32_malloc", &matu32_malloc),
      malloc_row("mats16_malloc", &mats16_malloc),
      malloc_row("mats32_malloc", &mats32_malloc),
      malloc_row("matflt_malloc", &matflt_malloc),
      malloc_row("matdbl_malloc", &matdbl_malloc),
      malloc_row("matcpx_malloc", &matcpx_malloc),
      realloc_row("matu8_realloc", &matu8_realloc),
      realloc_row("matu16_realloc", &matu16_realloc),
      realloc_row("matu32_realloc", &matu32_realloc),
      realloc_row("mats16_realloc", &mats16_realloc),
      realloc_row("mats32_realloc", &mats32_realloc),
      realloc_row("matflt_realloc", &matflt_realloc),
      realloc_row("matdbl_realloc", &matdbl_realloc),
      realloc_row("matcpx_realloc", &matcpx_realloc),
      free_row("matu8_free", &matu8_free),
      free_row("matu16_free", &matu16_free),
      free_row("matu32_free", &matu32_free),
      free_row("mats16_free", &mats16_free),
      free_row("mats32_free", &mats32_free),
      free_row("matflt_free", &matflt_free),
      free_row("matdbl_free", &matdbl_free),
      free_row("matcpx_free", &matcpx_free),
      validate_row("matu8_validate", &matu8_validate),
      validate_row("matu16_validate", &matu16_validate),
      validate_row("matu32_validate", &matu32_validate),
      validate_row("mats16_validate", &mats16_validate),
      validate_row("mats32_validate", &mats32_validate),
      validate_row("matflt_validate", &matflt_validate),
      validate_row("matdbl_validate", &matdbl_validate),
      validate_row("matcpx_validate", &matcpx_validate),
      wrap_row("matu8_wrap_data", &matu8_wrap_data),
      wrap_row("matu16_wrap_data", &matu16_wrap_data),
      wrap_row("matu32_wrap_data", &matu32_wrap_data),
      wrap_row("mats16_wrap_data", &mats16_wrap_data),
      wrap_row("mats32_wrap_data", &mats32_wrap_data),
      wrap_row("matflt_wrap_data", &matflt_wrap_data),
      wrap_row("matdbl_wrap_data", &matdbl_wrap_data),
      realloc_row("matuniv_realloc", &matuniv_realloc),
      free_row("matuniv_free", &matuniv_free),
      validate_row("matuniv_validate", &matuniv_validate),
      {"matuniv_malloc",
       [](scene& s) -> ready_call {
         _univ_mat* const mat = s.record<_univ_mat>({}, [](_univ_mat* made) { (void)korvo_free(made->data); });
         return [=](void*) { return matuniv_malloc(mat, 3, 5, KORVO_DCOMPLEX); };
       }},
      {"matuniv_wrap_data",
       [](scene& s) -> ready_call {
         void* const data = s.in<_dbl_mat>(2, 3)->data;
         _univ_mat* const mat = s.record<_univ_mat>({});
         return [=](void*) { return matuniv_wrap_data(mat, data, 2, 3, KORVO_DOUBLE); };
       }},
      {"matuniv_wrap_matrix",
       [](scene& s) -> ready_call {
         const auto* const typed = s.in<_dbl_mat>(2, 3);
         _univ_mat* const mat = s.record<_univ_mat>({});
         return [=](void*) { return matuniv_wrap_matrix(mat, typed, KORVO_DOUBLE); };
       }},
  };
}

}  // namespace

call_rows core_calls() {
  call_rows all = matrix_calls();
  for (const call_rows& more : {set_calls(), utility_calls()}) all.insert(all.end(), more.begin(), more.end());
  return all;
}
