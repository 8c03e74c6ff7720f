/* SPDX-License-Identifier: MIT */
/* Everything korvos exports. */
#ifndef KORVOS_H
#define KORVOS_H

#include "korvos/classify/cls_gla.h"
#include "korvos/classify/img_mrf.h"
#include "korvos/core/api.h"
#include "korvos/core/mat_set.h"
#include "korvos/core/mat_univ.h"
#include "korvos/core/ut_alloc.h"
#include "korvos/core/ut_debug.h"
#include "korvos/core/ut_err.h"
#include "korvos/core/ut_intrp.h"
#include "korvos/core/ut_rand.h"
#include "korvos/host/korvos.h"
#include "korvos/image/img_io.h"
#include "korvos/image/img_pttr.h"
#include "korvos/matrix/mat_arit.h"
#include "korvos/matrix/mat_assn.h"
#include "korvos/matrix/mat_cast.h"
#include "korvos/matrix/mat_io.h"
#include "korvos/matrix/mat_summ.h"
#include "korvos/matrix/mat_tile.h"
#include "korvos/numeric/mat_num.h"
#include "korvos/segment/img_conv.h"
#include "korvos/signal/sig_conv.h"
#include "korvos/signal/sig_pow2.h"
#include "korvos/signal/sig_tfrq.h"
#include "korvos/signal/sig_tran.h"
#include "korvos/signal/sig_win.h"
#include "korvos/wavelet/wav_modw.h"
#include "korvos/wavelet/wav_skel.h"
#include "korvos/wavelet/wav_skel_local.h"
#include "korvos/wavelet/wav_wtmm.h"

#endif
