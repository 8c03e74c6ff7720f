// Interpolation of images: bilinear.
#include "korvos/image/img_intp.h"

#include "core/dispatch.hpp"
#include "core/valid.hpp"
#include "image/img_intp.hpp"

using namespace korvo;

extern "C" {

code imguniv_interpolate_linear(const _univ_mat* image, double row, double col, void* /*intrp_ptr*/,
                                double* value) {
  if (!image || !value) return KORVO_ERR_NULL_POINTER;
  return dispatch(image->type, real_records{}, [&]<class M> {
    const M from = as<M>(*image);
    TRY(valid(&from));
    *value = corners(row, col, from.nrow, from.ncol).of(from.data);
    return KORVO_ERR_OK;
  });
}

}  // extern "C"
