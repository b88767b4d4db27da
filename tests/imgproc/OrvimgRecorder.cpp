#include "OrvimgRecorder.h"

#include <AppComponents/imgproc/orvimg.h>

#include <utility>

namespace orvimg_recorder
{
namespace
{

Calls calls;
char contexts[8192];
int contextsMade = 0;

template <typename... Numbers>
void record(std::string function, std::vector<const void*> pointers, Numbers... numbers)
{
    calls.push_back({std::move(function), std::move(pointers), {static_cast<double>(numbers)...}});
}

void fillTable(int bits, int brightness, int contrast, int gamma, unsigned char* table)
{
    const std::string name = bits == 8 ? "8" : std::to_string(bits) + "_8";
    record("create_BCG_LUT" + name, {table}, brightness, contrast, gamma);
    for (int level = 0; level < 1 << bits; ++level)
        table[level] = tableEntry(level, brightness, contrast, gamma);
}

void fillBestTable(int bits, const int* histogram, unsigned char* table)
{
    record("best_lookup_table" + std::to_string(bits) + "to8", {histogram, table});
    for (int level = 0; level < 1 << bits; ++level)
        table[level] = bestTableEntry(level);
}

void balance(const char* phase, const unsigned char* mosaic, int width, int height, double* red,
             double* blue)
{
    record(std::string("white_balance8") + phase, {mosaic}, width, height, *red, *blue);
    *red = estimatedRedGain;
    *blue = estimatedBlueGain;
}

template <typename Sample>
void median(const char* function, void* picture, int width, int height, int color)
{
    record(function, {picture}, width, height, color);
    Sample* const samples = static_cast<Sample*>(picture);
    for (int i = 0; i < width * height; ++i)
        samples[i] = static_cast<Sample>(samples[i] + medianIncrement);
}

} // namespace

Calls take()
{
    return std::exchange(calls, {});
}

const void* nextContext()
{
    return contexts + contextsMade;
}

unsigned char tableEntry(int level, int brightness, int contrast, int gamma)
{
    return static_cast<unsigned char>(level * 7 + level / 256 * 13 + brightness + 3 * contrast +
                                      5 * gamma);
}

unsigned char bestTableEntry(int level)
{
    return static_cast<unsigned char>(level * 11 + level / 256 * 17 + 1);
}

} // namespace orvimg_recorder

using namespace orvimg_recorder;

void create_BCG_LUT8(int brightness, int contrast, int gamma, unsigned char* table)
{
    fillTable(8, brightness, contrast, gamma, table);
}
void create_BCG_LUT10_8(int brightness, int contrast, int gamma, unsigned char* table)
{
    fillTable(10, brightness, contrast, gamma, table);
}
void create_BCG_LUT12_8(int brightness, int contrast, int gamma, unsigned char* table)
{
    fillTable(12, brightness, contrast, gamma, table);
}
void histogram10(const unsigned short* samples, int count, int* histogram)
{
    record("histogram10", {samples, histogram}, count);
}
void histogram12(const unsigned short* samples, int count, int* histogram)
{
    record("histogram12", {samples, histogram}, count);
}
void best_lookup_table10to8(const int* histogram, unsigned char* table)
{
    fillBestTable(10, histogram, table);
}
void best_lookup_table12to8(const int* histogram, unsigned char* table)
{
    fillBestTable(12, histogram, table);
}
void debayer24(const unsigned char* mosaic, int width, int height, int pattern, int algorithm,
               unsigned char* rgb)
{
    record("debayer24", {mosaic, rgb}, width, height, pattern, algorithm);
    for (int i = 0; i < 3 * width * height; ++i)
        rgb[i] = static_cast<unsigned char>(mosaic[i / 3] + i % 3);
}
void white_balance8rggb(const unsigned char* m, int w, int h, double* red, double* blue)
{
    balance("rggb", m, w, h, red, blue);
}
void white_balance8bggr(const unsigned char* m, int w, int h, double* red, double* blue)
{
    balance("bggr", m, w, h, red, blue);
}
void white_balance8gbrg(const unsigned char* m, int w, int h, double* red, double* blue)
{
    balance("gbrg", m, w, h, red, blue);
}
void white_balance8grbg(const unsigned char* m, int w, int h, double* red, double* blue)
{
    balance("grbg", m, w, h, red, blue);
}
void* color_correction_init(void)
{
    record("color_correction_init", {});
    return contexts + contextsMade++;
}
void color_correction_set(void* context, double r, double r0, double g, double g0, double b,
                          double b0, double hue, double saturation, double lightness, double all0)
{
    record("color_correction_set", {context}, r, r0, g, g0, b, b0, hue, saturation, lightness,
           all0);
}
void color_correction24(void* context, unsigned char* rgb, int width, int height)
{
    record("color_correction24", {context, rgb}, width, height);
    for (int i = 0; i < 3 * width * height; ++i)
        rgb[i] = static_cast<unsigned char>(rgb[i] + correctionIncrement);
}
void color_correction_done(void* context)
{
    record("color_correction_done", {context});
}
void median_filter8(void* picture, int width, int height, int color)
{
    median<unsigned char>("median_filter8", picture, width, height, color);
}
void median_filter16(void* picture, int width, int height, int color)
{
    median<unsigned short>("median_filter16", picture, width, height, color);
}
