#pragma once

/// \file
/// The number of threads that the image primitives library works on. Kept apart from the
/// interface of the primitives, which a replacement of the library may offer without it.

#include <AppComponents/imgproc/orvimg.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Lets each further call of debayer24(), the white-balance functions, color_correction24() and
/// the median filters share the rows of its picture among \p threads threads, limited to 1 ... 256.
/// The start value is 1: processing then stays on the caller's thread. Results do not depend on it.
/// May be called from any thread at any time.
ORVIMG_EXPORT void orvimg_set_threads(int threads);

#ifdef __cplusplus
}
#endif
