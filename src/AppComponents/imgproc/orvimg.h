#pragma once

/// \file
/// The C interface of the image primitives library orvimg.
///
/// Pictures are packed row after row without padding. Null pointers and non-positive sizes
/// make every function return without doing anything. Nothing is thrown or reported: without
/// memory for its work a function leaves a picture unfinished. The functions keep no shared state:
/// different pictures may be processed on different threads at once; one colour-correction
/// context belongs to one thread at a time.

#if defined(_WIN32)
#define ORVIMG_EXPORT
#else
#define ORVIMG_EXPORT __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/// Fill a table that maps sample levels to 8-bit output under brightness, contrast and gamma
/// steps, each -127 ... 127 with 0 neutral: brightness step / 254 of full scale, contrast
/// 4^(step / 127) but exactly 0.5 and 2 at -64 and 64, gamma 3^(step / 127); a step beyond counts
/// as the nearest one. Level i of N maps at x = (i + 0.5) / N to
/// floor(256 * (contrast * (x^gamma - 0.5) + 0.5 + brightness)), clamped to 0 ... 255.
/// The neutral table is the plain shift. The tables hold 256, 1024 and 4096 entries.
ORVIMG_EXPORT void create_BCG_LUT8(int brightness, int contrast, int gamma, unsigned char* table);
ORVIMG_EXPORT void create_BCG_LUT10_8(int brightness, int contrast, int gamma,
                                      unsigned char* table);
ORVIMG_EXPORT void create_BCG_LUT12_8(int brightness, int contrast, int gamma,
                                      unsigned char* table);

/// Overwrite the histogram (1024 or 4096 entries) with the number of samples of each level;
/// samples above the level range are left out.
ORVIMG_EXPORT void histogram10(const unsigned short* samples, int count, int* histogram);
ORVIMG_EXPORT void histogram12(const unsigned short* samples, int count, int* histogram);

/// Fill the table that spreads the histogram's levels over 0 ... 255. The darkest and the
/// brightest 0.05 % of the samples do not decide the range. An empty histogram, or one with
/// a single level left, gives the plain shift table.
ORVIMG_EXPORT void best_lookup_table10to8(const int* histogram, unsigned char* table);
ORVIMG_EXPORT void best_lookup_table12to8(const int* histogram, unsigned char* table);

/// Interpolate a Bayer mosaic of width x height bytes into width x height RGB triples.
/// \param pattern 0 RGGB, 1 GRBG, 2 GBRG, 3 BGGR (first row, second row of the 2x2 cell);
///   any other value is taken as 2.
/// \param algorithm 0 nearest neighbour; 1 one colour per 2x2 cell; 2 bilinear;
///   3 gradient-corrected linear; 4 edge-directed; 5 variable number of gradients;
///   6 best picture in real time. Any other value is taken as 0.
/// \param rgb must not overlap the mosaic. Every pixel is written, borders included: the
///   picture is mirrored at its edges without repeating the edge sample.
ORVIMG_EXPORT void debayer24(const unsigned char* mosaic, int width, int height, int pattern,
                             int algorithm, unsigned char* rgb);

/// Estimate the gains that make the mean of the picture grey, each 0.25 ... 4, green being the
/// reference. Only 2x2 cells whose samples all lie in 6 ... 249 count; when fewer than 1 % of
/// the cells do, both gains are 1.
ORVIMG_EXPORT void white_balance8rggb(const unsigned char* mosaic, int width, int height,
                                      double* redGain, double* blueGain);
ORVIMG_EXPORT void white_balance8bggr(const unsigned char* mosaic, int width, int height,
                                      double* redGain, double* blueGain);
ORVIMG_EXPORT void white_balance8gbrg(const unsigned char* mosaic, int width, int height,
                                      double* redGain, double* blueGain);
ORVIMG_EXPORT void white_balance8grbg(const unsigned char* mosaic, int width, int height,
                                      double* redGain, double* blueGain);

/// \return a new colour-correction context, the identity, or null without memory; release it
///   with color_correction_done().
ORVIMG_EXPORT void* color_correction_init(void);

/// Configure a context: channel gains first; then the chroma of Y = 0.299 R + 0.587 G + 0.114 B
/// is turned by \p hue degrees and scaled by \p saturation (luma is kept); then all channels
/// are scaled by \p lightness; last the channel's offset and the common \p offset, fractions
/// of full scale, are added. Rounded to nearest, to within 1. NaN counts as the neutral
/// value, and so does an infinite hue.
ORVIMG_EXPORT void color_correction_set(void* context, double redGain, double redOffset,
                                        double greenGain, double greenOffset, double blueGain,
                                        double blueOffset, double hue, double saturation,
                                        double lightness, double offset);

/// Correct width x height RGB triples in place.
ORVIMG_EXPORT void color_correction24(void* context, unsigned char* rgb, int width, int height);

/// Release a context; it must not be used any more.
ORVIMG_EXPORT void color_correction_done(void* context);

/// Replace each sample by the median of nine, in place.
/// \param picture bytes (median_filter8) or 16-bit words (median_filter16).
///   Beyond its edges it is mirrored without repeating the edge sample.
/// \param color 1: width x height interleaved triples, the neighbours lie one pixel apart; any
///   other value: a mosaic of width x height samples, the neighbours lie two samples apart so
///   that each colour is filtered by itself.
ORVIMG_EXPORT void median_filter8(void* picture, int width, int height, int color);
ORVIMG_EXPORT void median_filter16(void* picture, int width, int height, int color);

#ifdef __cplusplus
}
#endif
