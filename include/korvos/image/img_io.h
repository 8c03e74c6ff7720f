/* SPDX-License-Identifier: MIT */
/** @file img_io.h  Images on a stream: PNM files (magic numbers P1 to P6), and the one-bit images beneath them.
 *
 *  A grey image is a matrix; a colour image is a set of exactly three matrices of one shape and type, in the
 *  order of a file's samples. Streams are the caller's, and an image may stand in the middle of one: they are
 *  read and written from where they are, never opened, closed, rewound or flushed, and after an image that was
 *  read they stand just behind it. What was written before a failure or an interrupt stays on the stream. A
 *  stream whose error indicator is set has failed. All text is that of the "C" locale (see mat_io.h).
 *
 *  Bits. An image is one run of `nelem` bits in storage order, most significant bit of each byte first, and
 *  rows are NOT padded to whole bytes: the bit of pixel k is bit 7 - (k mod 8) of byte k / 8, and there are
 *  (nelem + 7) / 8 bytes. Other PBM software pads each row; raw bit images go from one to the other only if the
 *  number of columns is a multiple of 8. A bit of 1 is a pixel of zero. The unused bits of the last byte are 1.
 *
 *  The flag `plain` asks for text, `raw` for packed bytes; any value but 0 counts as true. */
#ifndef KORVOS_IMAGE_IMG_IO_H
#define KORVOS_IMAGE_IMG_IO_H

#include <stdio.h>

#include "korvos/core/mat_set.h"

KORVO_BEGIN_DECLARATIONS

/** @name write_pgm, write_ppm
 *  Writes a grey image as P2 (plain) or P5 (raw), a colour image as P3 or P6. Only u8 has a raw form: u16 and
 *  u32 are written as text, whatever `plain` says. The header is one line, magic number, columns, rows and
 *  maximum:
 *
 *      P5 512 384 200
 *
 *  The maximum is the largest sample that is there, not the largest that the type could hold. Hence the maximum
 *  of an image of zeros is 0, and the readers refuse that file; and one above 2147483647 is written as a
 *  negative number, 2^32 below it, and refused as well. Text has lines of at most 70 characters, as
 *  matuniv_write_ascii() sets them; raw samples follow the header at once. Of the set of a colour image the
 *  three matrices count, not how its dimensions arrange them.
 *
 *  Costs, each polled by itself: (colour) that of matset_tile(), into one matrix of all samples;
 *  matuniv_range(); 1000 a character of the header; the samples as matuniv_write_ascii() or
 * matuniv_write_raw(). The checks, in their order:
 *  - KORVO_ERR_NULL_POINTER: `stream` or `image` is null.
 *  - (colour) the codes of matset_verify_allsame().
 *  - KORVO_ERR_ILLEGAL_SIZE: (colour) there are not three matrices.
 *  - KORVO_ERR_ILLEGAL_TYPE: not u8, u16 or u32.
 *  - the codes of `validate` for each matrix.
 *  - KORVO_ERR_MALLOC: (colour) no memory for the matrix of all samples. Up to here nothing is written.
 *  - KORVO_ERR_IO: the stream failed. */
/** @{ */
KORVO_API _korvo_errcode imguniv_write_pgm(FILE* stream, const _univ_mat* image, uint8_t plain,
                                           void* intrp_ptr);
KORVO_API _korvo_errcode imgset_write_ppm(FILE* stream, const _mat_set* image, uint8_t plain, void* intrp_ptr);
/** @} */

/** Writes an image of two values, as P1 (plain) or P4 (raw): a pixel above `threshold` is a bit of 0, one at or
 *  below it (or NaN) a bit of 1. The header, magic number, columns and rows, is written first; then follows
 *  imguniv_write_to_bits() with a blank as separator and lines of 70 characters, that is, of 35 pixels.
 *
 *  Cost that of imguniv_write_to_bits().
 *  - KORVO_ERR_NULL_POINTER: `stream` or `image` is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: `image` is cpx; nothing is written.
 *  - KORVO_ERR_IO: the stream failed.
 *  - otherwise the codes of imguniv_write_to_bits(), the header being written: s16 and flt are refused then. */
KORVO_API _korvo_errcode imguniv_write_pbm(FILE* stream, const _univ_mat* image, double threshold,
                                           uint8_t plain, void* intrp_ptr);

/** @name read_pgm, read_ppm
 *  Reads a grey image or one of bits (P1, P2, P4, P5), or a colour image (P3, P6). The result is an unset
 *  record, which on success owns what was allocated: to be freed by matuniv_free(), or by
 *  matset_free_matrices() and then matset_free(). On every failure it is an empty record without data, and
 *  nothing stays allocated.
 *
 *  The file begins with the letter P. Sizes may be preceded by comments, from `#` to the end of the line, and
 *  the maximum may not. It may be written like any floating number; it decides the type, u8 up to 255, u16 up
 *  to 65535, u32 up to 4294967295, and nothing else: samples are neither scaled nor held against it. After it,
 *  or after the rows of an image of bits, exactly one character is passed.
 *
 *  Plain samples are read as by matuniv_read_ascii(), with comments between any two of them; raw ones have 1, 2
 *  or 4 bytes, the most significant first. Bits become u8 pixels, 255 for a bit of 0 and 0 for one of 1; plain
 *  ones must be parted by white space, as 0110 would be one pixel.
 *
 *  Costs, each polled by itself: that of matuniv_read_ascii(), matuniv_read_raw() or imguniv_read_from_bits();
 *  (colour) that of matset_untile(). The codes, in their order:
 *  - KORVO_ERR_NULL_POINTER: `stream` or `image` is null.
 *  - KORVO_ERR_IO: no letter P, or no number where one must be, or the stream failed or has ended; a magic
 *    number, a number of columns or of rows outside 32 bits.
 *  - KORVO_ERR_ILLEGAL_VALUE: a magic number that the routine does not read; a maximum that is not above 0 (or
 *    is NaN), or is above 4294967295. The one character is passed before the maximum is judged.
 *  - KORVO_ERR_ILLEGAL_SIZE: a size below 1.
 *  - KORVO_ERR_ILLEGAL_VALUE: the samples would take more than 2147483647 bytes.
 *  - KORVO_ERR_MALLOC: no memory.
 *  - KORVO_ERR_IO: a sample is missing, or plain and out of the range of the type. */
/** @{ */
KORVO_API _korvo_errcode imguniv_read_pgm(FILE* stream, void* intrp_ptr, _univ_mat* image);
KORVO_API _korvo_errcode imgset_read_ppm(FILE* stream, void* intrp_ptr, _mat_set* image);
/** @} */

/** Writes an image of two values as bits without a header: packed bytes if `raw` is true, else the characters
 *  1 and 0 with `separator` between them. A pixel above `threshold` is a bit of 0, one at or below it (or NaN)
 *  a bit of 1.
 *
 *  @param image        u8, u16, u32, s32 or dbl
 *  @param separator    null: a single blank; no separator follows the last pixel, but a line end does
 *  @param line_length  a line is ended before a pixel when this is less than what the line holds, the separator
 *                      and 1 together, so no pixel is parted from its separator
 *
 *  Cost that of imguniv_map_window_level(); then, with a tally of its own, 5 * `nelem`, polled before and after
 *  matu8_write_raw(); or 1000 for each character, polled after each line.
 *  - KORVO_ERR_NULL_POINTER: `stream` or `image` is null.
 *  - KORVO_ERR_MALLOC: no memory for the pixels of two values, or for the packed bytes.
 *  - otherwise the codes of imguniv_map_window_level(): KORVO_ERR_ILLEGAL_TYPE for the type of `image`,
 *    KORVO_ERR_ILLEGAL_VALUE for a threshold that is NaN.
 *  - KORVO_ERR_IO: the stream failed. */
KORVO_API _korvo_errcode imguniv_write_to_bits(FILE* stream, const _univ_mat* image, double threshold,
                                               uint8_t raw, const char* separator, uint16_t line_length,
                                               void* intrp_ptr);

/** Reads bits without a header into `image`, whose shape says how many: a bit of 0 becomes `zero_bit`, one of 1
 *  becomes 0. Packed bytes if `raw` is true; else numbers from 0 to 255, as by matu8_read_ascii(), of which all
 *  but 0 count as a bit of 1.
 *
 *  @param skip       bytes to pass before packed bits; not looked at for text
 *  @param delimiter  for text; 0: none
 *  @param comment    the same
 *  @param image      u8, u16, u32 or dbl; after a failure its contents are undefined
 *
 *  Cost that of matu8_read_raw() or matu8_read_ascii(); then, with a tally of its own, 5 (raw) or 1000 (text)
 *  times `nelem`, polled, and `nelem` more, polled once `image` is filled. The codes, in their order:
 *  - the codes of `validate` for `image`
 *  - KORVO_ERR_NULL_POINTER: `stream` is null.
 *  - KORVO_ERR_ILLEGAL_VALUE: `raw` is true and `skip` negative.
 *  - KORVO_ERR_ILLEGAL_TYPE: `zero_bit` has not the type of `image`.
 *  - KORVO_ERR_MALLOC: no memory for the bits, or for the packed bytes.
 *  - KORVO_ERR_IO: the stream failed, has ended, or holds something else.
 *  - KORVO_ERR_ILLEGAL_TYPE: there is no form for the type. The bits have been read. */
KORVO_API _korvo_errcode imguniv_read_from_bits(FILE* stream, _univ_scalar zero_bit, uint8_t raw, int32_t skip,
                                                char delimiter, char comment, void* intrp_ptr,
                                                _univ_mat* image);

KORVO_END_DECLARATIONS

#endif
