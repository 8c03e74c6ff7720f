/* SPDX-License-Identifier: MIT */
/** @file mat_io.h  Matrices on a stream: a self-describing text form, plain lists of numbers, raw binary.
 *
 *  Streams are the caller's: never opened, closed or flushed here, and moved only as each family says. After a
 *  failure or an interrupt what was written stays on the stream, and a reader leaves it where it stopped. A
 *  stream whose error indicator is set, before the call or by it, has failed: KORVO_ERR_IO, even when the last
 *  number read or written was good.
 *
 *  All text is that of the "C" locale, whatever the host has set: text routines hold the calling thread in that
 *  locale, and the stream's lock, from start to end, their polls included. If the locale cannot be had the
 *  answer is KORVO_ERR_MALLOC.
 *
 *  No routine here has a form for cpx. Universal forms:
 *  - KORVO_ERR_NULL_POINTER: the matrix is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: there is no form for the type of the matrix.
 *
 *  Typed forms check in the order in which a family lists its codes. */
#ifndef KORVOS_MATRIX_MAT_IO_H
#define KORVOS_MATRIX_MAT_IO_H

#include <stdio.h>

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** @name print
 *  Writes a matrix with its type and its shape, for people and for `parse`. A dbl matrix of 1, 2, 3, 4:
 *
 *      double Matrix: nrow=2, ncol=2  {
 *          Row[0]:  1 2
 *          Row[1]:  3 4
 *      }
 *
 *  The first word is double, float, uint8, uint16, uint32, sint16 or sint32. Row numbers count from 0 and are
 *  as wide as floor(log10(`nrow`)), at least 1. Before an element for which the line would become too long,
 *  going by the width of the element before it, a new line is begun under the first element of the row.
 *
 *  A format holds exactly one conversion: a, A, e, E, f, F, g or G (with l or L if wanted) for dbl and flt;
 *  d, i, o, u, x or X (with hh, h, l, ll, j, z or t if wanted) for the rest. Flags, width, precision, text
 *  around it and "%%" are free. An element is converted to the type that the conversion names, where `long`
 *  has 32 bits: "%d" and "%ld" mean the same. `parse` needs white space between elements.
 *
 *  @param format       how an element is written; null: "%g " for dbl and flt, "%hu " for u8 and u16, "%lu "
 *                      for u32, "%hd " for s16, "%ld " for s32
 *  @param line_length  below 1: 75
 *
 *  The default of dbl and flt has six digits; "%.17g " and "%.9g " lose nothing.
 *  Cost 30010 for the first line and 1000 for each character after it, polled after each row.
 *  - the codes of `validate` for `mat`
 *  - KORVO_ERR_NULL_POINTER: `stream` is null.
 *  - KORVO_ERR_ILLEGAL_VALUE: `format` is no such format; nothing is written.
 *  - KORVO_ERR_IO: the stream failed. */
/** @{ */
KORVO_API _korvo_errcode matu8_print(FILE* stream, const _u8_mat* mat, const char* format, int32_t line_length,
                                     void* intrp_ptr);
KORVO_API _korvo_errcode matu16_print(FILE* stream, const _u16_mat* mat, const char* format,
                                      int32_t line_length, void* intrp_ptr);
KORVO_API _korvo_errcode matu32_print(FILE* stream, const _u32_mat* mat, const char* format,
                                      int32_t line_length, void* intrp_ptr);
KORVO_API _korvo_errcode mats16_print(FILE* stream, const _s16_mat* mat, const char* format,
                                      int32_t line_length, void* intrp_ptr);
KORVO_API _korvo_errcode mats32_print(FILE* stream, const _s32_mat* mat, const char* format,
                                      int32_t line_length, void* intrp_ptr);
KORVO_API _korvo_errcode matflt_print(FILE* stream, const _flt_mat* mat, const char* format,
                                      int32_t line_length, void* intrp_ptr);
KORVO_API _korvo_errcode matdbl_print(FILE* stream, const _dbl_mat* mat, const char* format,
                                      int32_t line_length, void* intrp_ptr);
KORVO_API _korvo_errcode matuniv_print(FILE* stream, const _univ_mat* mat, const char* format,
                                       int32_t line_length, void* intrp_ptr);
/** @} */

/** @name parse
 *  Reads what `print` has written, and makes the matrix: `mat` is an unset record, on success it owns its
 *  buffer, and on every failure its `data` is null. The stream is left just after the closing brace, and
 *  white space before the first word is passed, so matrices can follow one another.
 *
 *  Runs of white space count as one and may be absent; the opening brace and the labels of the rows are passed
 *  where they stand, and their numbers not looked at.
 *
 *  The universal form finds the type by the first word, for which the stream must be able to go back to where
 *  it stands. It sets `type`, and is the typed form of it from there. When it refuses the word, the stream
 *  has not moved.
 *
 *  Cost 10000 a row, polled after each row.
 *  - KORVO_ERR_NULL_POINTER: `stream` or `mat` is null.
 *  - KORVO_ERR_IO: (universal) no word; or a position that cannot be had or gone back to.
 *  - KORVO_ERR_ILLEGAL_TYPE: (universal) the word is no type that is printed.
 *  - KORVO_ERR_IO: the first word is not that of the type, or two sizes do not follow it.
 *  - KORVO_ERR_ILLEGAL_VALUE: a size that does not fit 32 bits.
 *  - KORVO_ERR_ILLEGAL_SIZE: a size below 1.
 *  - KORVO_ERR_ILLEGAL_VALUE: the elements would take more than 2147483647 bytes.
 *  - KORVO_ERR_MALLOC: no memory.
 *  - KORVO_ERR_IO: an element is missing or is no number; or the closing brace is missing.
 *  - KORVO_ERR_ILLEGAL_VALUE: an element out of range. The ranges are -1e37 to 1e37 for dbl and flt (NaN is out
 *    of it), 0 to 255 for u8, -32767 to 32767 for s16, -2147483647 to 2147483647 for s32, 0 to 4294967295 for
 *    u32. Numbers for u8, u16 and s16 are first cut to 16 bits, and so no number is out of range for u16. */
/** @{ */
KORVO_API _korvo_errcode matu8_parse(FILE* stream, void* intrp_ptr, _u8_mat* mat);
KORVO_API _korvo_errcode matu16_parse(FILE* stream, void* intrp_ptr, _u16_mat* mat);
KORVO_API _korvo_errcode matu32_parse(FILE* stream, void* intrp_ptr, _u32_mat* mat);
KORVO_API _korvo_errcode mats16_parse(FILE* stream, void* intrp_ptr, _s16_mat* mat);
KORVO_API _korvo_errcode mats32_parse(FILE* stream, void* intrp_ptr, _s32_mat* mat);
KORVO_API _korvo_errcode matflt_parse(FILE* stream, void* intrp_ptr, _flt_mat* mat);
KORVO_API _korvo_errcode matdbl_parse(FILE* stream, void* intrp_ptr, _dbl_mat* mat);
KORVO_API _korvo_errcode matuniv_parse(FILE* stream, void* intrp_ptr, _univ_mat* mat);
/** @} */

/** @name write_ascii
 *  Writes the elements as a plain list in storage order, which says nothing of shape or type. Each is
 *  followed by the delimiter, the last by none, and the list by a line end. Numbers are whole ("%hu", "%hd",
 *  "%lu", "%ld") or, for dbl and flt, of six digits and at least ten characters ("%10g").
 *
 *  @param delimiter    null: a single blank
 *  @param line_length  a line is ended before an element when this is less than what the line holds, the
 *                      delimiter and the widest element together
 *
 *  The widest element is reckoned as 3 characters for u8, 6 for u16 and s16, 11 for u32 and s32, 18 for dbl
 *  and flt. A length too short for any gives each element a line of its own, and an empty one before the first.
 *
 *  Cost 1000 for each character, polled after each line.
 *  - the codes of `validate` for `mat`
 *  - KORVO_ERR_NULL_POINTER: `stream` is null.
 *  - KORVO_ERR_IO: the stream failed. */
/** @{ */
KORVO_API _korvo_errcode matu8_write_ascii(FILE* stream, const _u8_mat* mat, const char* delimiter,
                                           uint16_t line_length, void* intrp_ptr);
KORVO_API _korvo_errcode matu16_write_ascii(FILE* stream, const _u16_mat* mat, const char* delimiter,
                                            uint16_t line_length, void* intrp_ptr);
KORVO_API _korvo_errcode matu32_write_ascii(FILE* stream, const _u32_mat* mat, const char* delimiter,
                                            uint16_t line_length, void* intrp_ptr);
KORVO_API _korvo_errcode mats16_write_ascii(FILE* stream, const _s16_mat* mat, const char* delimiter,
                                            uint16_t line_length, void* intrp_ptr);
KORVO_API _korvo_errcode mats32_write_ascii(FILE* stream, const _s32_mat* mat, const char* delimiter,
                                            uint16_t line_length, void* intrp_ptr);
KORVO_API _korvo_errcode matflt_write_ascii(FILE* stream, const _flt_mat* mat, const char* delimiter,
                                            uint16_t line_length, void* intrp_ptr);
KORVO_API _korvo_errcode matdbl_write_ascii(FILE* stream, const _dbl_mat* mat, const char* delimiter,
                                            uint16_t line_length, void* intrp_ptr);
KORVO_API _korvo_errcode matuniv_write_ascii(FILE* stream, const _univ_mat* mat, const char* delimiter,
                                             uint16_t line_length, void* intrp_ptr);
/** @} */

/** @name read_ascii
 *  Reads a plain list of numbers into `mat`, in storage order; its shape says how many. Where a number does
 *  not stand at once, white space, delimiters and comments are passed, as many as there are; a comment runs
 *  from its character to the end of the line. The stream is left just after the last number.
 *
 *  @param delimiter  as an unsigned character; 0: none
 *  @param comment    the same
 *
 *  Cost 1000 for each number, and 1000 more for one before which something was passed; polled once, at the end.
 *  - the codes of `validate` for `mat`
 *  - KORVO_ERR_NULL_POINTER: `stream` is null.
 *  - KORVO_ERR_IO: a number is missing, or out of the range that `parse` has for integers; dbl and flt have
 *    none. `mat` is partly filled. */
/** @{ */
KORVO_API _korvo_errcode matu8_read_ascii(FILE* stream, char delimiter, char comment, void* intrp_ptr,
                                          _u8_mat* mat);
KORVO_API _korvo_errcode matu16_read_ascii(FILE* stream, char delimiter, char comment, void* intrp_ptr,
                                           _u16_mat* mat);
KORVO_API _korvo_errcode matu32_read_ascii(FILE* stream, char delimiter, char comment, void* intrp_ptr,
                                           _u32_mat* mat);
KORVO_API _korvo_errcode mats16_read_ascii(FILE* stream, char delimiter, char comment, void* intrp_ptr,
                                           _s16_mat* mat);
KORVO_API _korvo_errcode mats32_read_ascii(FILE* stream, char delimiter, char comment, void* intrp_ptr,
                                           _s32_mat* mat);
KORVO_API _korvo_errcode matflt_read_ascii(FILE* stream, char delimiter, char comment, void* intrp_ptr,
                                           _flt_mat* mat);
KORVO_API _korvo_errcode matdbl_read_ascii(FILE* stream, char delimiter, char comment, void* intrp_ptr,
                                           _dbl_mat* mat);
KORVO_API _korvo_errcode matuniv_read_ascii(FILE* stream, char delimiter, char comment, void* intrp_ptr,
                                            _univ_mat* mat);
/** @} */

/** @name write_raw
 *  Writes the elements as they lie in memory, in storage order: 1, 2, 4 or 8 bytes each, least significant
 *  byte first, or most significant first if `big_endian` is not 0. The bytes of floating numbers are ordered
 *  like those of integers. u8 has no flag, and the universal form drops it for u8.
 *
 *  Cost 1000 a byte and 2 an element, for u8 1000 an element; polled once, after the work.
 *  - KORVO_ERR_NULL_POINTER: `stream` is null.
 *  - the codes of `validate` for `mat`
 *  - KORVO_ERR_MALLOC: (not u8) no memory for a copy of the data.
 *  - KORVO_ERR_IO: the stream failed. */
/** @{ */
KORVO_API _korvo_errcode matu8_write_raw(FILE* stream, const _u8_mat* mat, void* intrp_ptr);
KORVO_API _korvo_errcode matu16_write_raw(FILE* stream, const _u16_mat* mat, uint8_t big_endian,
                                          void* intrp_ptr);
KORVO_API _korvo_errcode matu32_write_raw(FILE* stream, const _u32_mat* mat, uint8_t big_endian,
                                          void* intrp_ptr);
KORVO_API _korvo_errcode mats16_write_raw(FILE* stream, const _s16_mat* mat, uint8_t big_endian,
                                          void* intrp_ptr);
KORVO_API _korvo_errcode mats32_write_raw(FILE* stream, const _s32_mat* mat, uint8_t big_endian,
                                          void* intrp_ptr);
KORVO_API _korvo_errcode matflt_write_raw(FILE* stream, const _flt_mat* mat, uint8_t big_endian,
                                          void* intrp_ptr);
KORVO_API _korvo_errcode matdbl_write_raw(FILE* stream, const _dbl_mat* mat, uint8_t big_endian,
                                          void* intrp_ptr);
KORVO_API _korvo_errcode matuniv_write_raw(FILE* stream, const _univ_mat* mat, uint8_t big_endian,
                                           void* intrp_ptr);
/** @} */

/** @name read_raw
 *  Moves `skip` bytes on, if that is not 0, and reads what `write_raw` has written into `mat`, whose shape
 *  says how much.
 *
 *  Cost 1000 a byte, read or skipped, polled after reading; then, but for u8, 2 an element, polled after
 *  `mat` has been filled.
 *  - the codes of `validate` for `mat`
 *  - KORVO_ERR_NULL_POINTER: `stream` is null.
 *  - KORVO_ERR_ILLEGAL_VALUE: `skip` is negative.
 *  - KORVO_ERR_IO: the stream cannot be moved.
 *  - KORVO_ERR_MALLOC: (not u8) no memory for a copy of the data.
 *  - KORVO_ERR_IO: the stream failed or ended early. */
/** @{ */
KORVO_API _korvo_errcode matu8_read_raw(FILE* stream, int32_t skip, void* intrp_ptr, _u8_mat* mat);
KORVO_API _korvo_errcode matu16_read_raw(FILE* stream, int32_t skip, uint8_t big_endian, void* intrp_ptr,
                                         _u16_mat* mat);
KORVO_API _korvo_errcode matu32_read_raw(FILE* stream, int32_t skip, uint8_t big_endian, void* intrp_ptr,
                                         _u32_mat* mat);
KORVO_API _korvo_errcode mats16_read_raw(FILE* stream, int32_t skip, uint8_t big_endian, void* intrp_ptr,
                                         _s16_mat* mat);
KORVO_API _korvo_errcode mats32_read_raw(FILE* stream, int32_t skip, uint8_t big_endian, void* intrp_ptr,
                                         _s32_mat* mat);
KORVO_API _korvo_errcode matflt_read_raw(FILE* stream, int32_t skip, uint8_t big_endian, void* intrp_ptr,
                                         _flt_mat* mat);
KORVO_API _korvo_errcode matdbl_read_raw(FILE* stream, int32_t skip, uint8_t big_endian, void* intrp_ptr,
                                         _dbl_mat* mat);
KORVO_API _korvo_errcode matuniv_read_raw(FILE* stream, int32_t skip, uint8_t big_endian, void* intrp_ptr,
                                          _univ_mat* mat);
/** @} */

KORVO_END_DECLARATIONS

#endif
