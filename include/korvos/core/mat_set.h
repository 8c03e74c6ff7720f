/* SPDX-License-Identifier: MIT */
/** @file mat_set.h  Matrix sets: multi-dimensional arrays of universal matrices.
 *
 *  The dimensions of a set index its matrices, the last one fastest; the matrices need not be alike unless a
 *  routine asks for it. The frame of a set and the buffers of its matrices have separate lives:
 *  matset_malloc(), matset_malloc_matrices(); and at the end matset_free_matrices(), matset_free(). */
#ifndef KORVOS_CORE_MAT_SET_H
#define KORVOS_CORE_MAT_SET_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** Multi-dimensional array of universal matrices. */
typedef struct _mat_set {
  int32_t ndim;  /**< number of dimensions, at least 1 */
  int32_t* dims; /**< size of each dimension; owned by the set */
  int32_t nmat;  /**< number of matrices: the product of `dims` */
  _univ_mat*
      mats; /**< `nmat` records in one block, owned by the set; their buffers are a matter of their own */
} _mat_set;

static_assert(offsetof(_mat_set, dims) == sizeof(void*) && offsetof(_mat_set, nmat) == 2 * sizeof(void*) &&
                  offsetof(_mat_set, mats) == 3 * sizeof(void*) && sizeof(_mat_set) == 4 * sizeof(void*),
              "layout of the matrix set");

/** Makes the frame of a set: dimensions, and records that are not yet matrices.
 *
 *  - KORVO_ERR_NULL_POINTER: `set` or `dims` is null.
 *  - KORVO_ERR_ILLEGAL_SIZE: `ndim` or a dimension is below 1, or there would be more than 2147483647 matrices.
 *  - KORVO_ERR_MALLOC: no memory.
 *
 *  After a failure nothing stays allocated, and the record is as it was. */
KORVO_API _korvo_errcode matset_malloc(_mat_set* set, int32_t ndim, const int32_t* dims);

/** Allocates every matrix of a set, all of one shape and type, in order.
 *
 *  - KORVO_ERR_NULL_POINTER, KORVO_ERR_ILLEGAL_SIZE, KORVO_ERR_ILLEGAL_VALUE: the set is not valid.
 *  - otherwise the codes of matuniv_malloc(); the matrices made so far have been freed. */
KORVO_API _korvo_errcode matset_malloc_matrices(_mat_set* set, int32_t nrow, int32_t ncol, _korvo_type type);

/** Allocates every matrix of a set, matrix i with entry i of `nrows` rows and entry i of `ncols` columns.
 *
 *  - KORVO_ERR_NULL_POINTER, KORVO_ERR_ILLEGAL_SIZE, KORVO_ERR_ILLEGAL_VALUE: the set, `nrows` or `ncols`, in
 *    this order, is not valid.
 *  - KORVO_ERR_ILLEGAL_SIZE: `nrows`, `ncols` and the set do not have the same number of elements.
 *  - otherwise the codes of matuniv_malloc(); the matrices made so far have been freed. */
KORVO_API _korvo_errcode matset_malloc_matrices_arbitrary_size(_mat_set* set, const _s32_mat* nrows,
                                                               const _s32_mat* ncols, _korvo_type type);

/** Frees the frame of a set, but not the buffers of its matrices. A second call finds nothing to free.
 *
 *  - KORVO_ERR_NULL_POINTER: `set` is null (unlike the `free` of a matrix). */
KORVO_API _korvo_errcode matset_free(_mat_set* set);

/** Frees the matrices of a set, in order, up to the first failure.
 *
 *  - KORVO_ERR_NULL_POINTER, KORVO_ERR_ILLEGAL_SIZE, KORVO_ERR_ILLEGAL_VALUE: the set is not valid.
 *  - KORVO_ERR_ILLEGAL_TYPE: a matrix has no type that can be freed. */
KORVO_API _korvo_errcode matset_free_matrices(_mat_set* set);

/** Gives a set other dimensions over the same number of matrices.
 *
 *  - KORVO_ERR_NULL_POINTER, KORVO_ERR_ILLEGAL_SIZE, KORVO_ERR_ILLEGAL_VALUE: the set is not valid.
 *  - KORVO_ERR_NULL_POINTER: `dims` is null.
 *  - KORVO_ERR_ILLEGAL_VALUE: `ndim` is below 1.
 *  - KORVO_ERR_ILLEGAL_SIZE: a new dimension is below 1, or their product is not the number of matrices.
 *  - KORVO_ERR_MALLOC: no memory; the set is unchanged. */
KORVO_API _korvo_errcode matset_resize(int32_t ndim, const int32_t* dims, _mat_set* set);

/** Whether a record is a set. Its matrices are not looked at.
 *
 *  - KORVO_ERR_NULL_POINTER: `set`, its `dims` or its `mats` is null.
 *  - KORVO_ERR_ILLEGAL_SIZE: `ndim`, `nmat` or a dimension is below 1.
 *  - KORVO_ERR_ILLEGAL_VALUE: the product of the dimensions is not `nmat`. */
KORVO_API _korvo_errcode matset_validate(const _mat_set* set);

/** Whether all matrices of a set have the type and shape of the first.
 *
 *  - KORVO_ERR_NULL_POINTER, KORVO_ERR_ILLEGAL_SIZE, KORVO_ERR_ILLEGAL_VALUE: the set is not valid.
 *  - KORVO_ERR_ILLEGAL_TYPE: a type differs.
 *  - KORVO_ERR_ILLEGAL_SIZE: a shape differs. */
KORVO_API _korvo_errcode matset_verify_allsame(const _mat_set* set);

/** Whether two sets have the same dimensions, and each pair of matrices the same type and shape.
 *
 *  - KORVO_ERR_NULL_POINTER, KORVO_ERR_ILLEGAL_SIZE, KORVO_ERR_ILLEGAL_VALUE: `a` or `b`, in this order, is
 *    not valid.
 *  - KORVO_ERR_ILLEGAL_SIZE: the dimensions differ, or the shapes of a pair.
 *  - KORVO_ERR_ILLEGAL_TYPE: the types of a pair differ. */
KORVO_API _korvo_errcode matset_verify_aresame(const _mat_set* a, const _mat_set* b);

KORVO_END_DECLARATIONS

#endif
