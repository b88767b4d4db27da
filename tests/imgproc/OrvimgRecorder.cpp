#include "OrvimgRecorder.h"

#include <AppComponents/imgproc/orvimg.h>

#include <utility>

namespace orvimg_recorder
{
namespace
{

Calls calls;
char contexts[64];
int contextsMade = 0;

void fillTable(int entries, int brightness, int contrast, int gamma, unsigned char* table)
{
    for (int level = 0; level < entries; ++level)
        table[level] = tableEntry(level, brightness, contrast, gamma);
}

void recordTable(const char* function, int entries, int brightness, int contrast, int gamma,
                 unsigned char* table)
{
    calls.push_back({function,
                     {table},
                     {static_cast<double>(brightness), static_cast<double>(contrast),
                      static_cast<double>(gamma)}});
    fillTable(entries, brightness, contrast, gamma, table);
}

void recordBalance(const char* function, const unsigned char* mosaic, int width, int height,
                   double* red, double* blue)
{
    calls.push_back({function,
                     {mosaic},
                     {static_cast<double>(width), static_cast<double>(height), *red, *blue}});
    *red = estimatedRedGain;
    *blue = estimatedBlueGain;
}

template <typename Sample>
void recordMedian(const char* function, void* picture, int width, int height, int color)
{
    calls.push_back(
        {function,
         {picture},
         {static_cast<double>(width), static_cast<double>(height), static_cast<double>(color)}});
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
    recordTable("create_BCG_LUT8", 256, brightness, contrast, gamma, table);
}

void create_BCG_LUT10_8(int brightness, int contrast, int gamma, unsigned char* table)
{
    recordTable("create_BCG_LUT10_8", 1024, brightness, contrast, gamma, table);
}

void create_BCG_LUT12_8(int brightness, int contrast, int gamma, unsigned char* table)
{
    recordTable("create_BCG_LUT12_8", 4096, brightness, contrast, gamma, table);
}

void histogram10(const unsigned short* samples, int count, int* histogram)
{
    calls.push_back({"histogram10", {samples, histogram}, {static_cast<double>(count)}});
}

void histogram12(const unsigned short* samples, int count, int* histogram)
{
    calls.push_back({"histogram12", {samples, histogram}, {static_cast<double>(count)}});
}

void best_lookup_table10to8(const int* histogram, unsigned char* table)
{
    calls.push_back({"best_lookup_table10to8", {histogram, table}, {}});
    for (int level = 0; level < 1024; ++level)
        table[level] = bestTableEntry(level);
}

void best_lookup_table12to8(const int* histogram, unsigned char* table)
{
    calls.push_back({"best_lookup_table12to8", {histogram, table}, {}});
    for (int level = 0; level < 4096; ++level)
        table[level] = bestTableEntry(level);
}

void debayer24(const unsigned char* mosaic, int width, int height, int pattern, int algorithm,
               unsigned char* rgb)
{
    calls.push_back({"debayer24",
                     {mosaic, rgb},
                     {static_cast<double>(width), static_cast<double>(height),
                      static_cast<double>(pattern), static_cast<double>(algorithm)}});
    for (int i = 0; i < 3 * width * height; ++i)
        rgb[i] = static_cast<unsigned char>(mosaic[i / 3] + i % 3);
}

void white_balance8rggb(const unsigned char* mosaic, int width, int height, double* red,
                        double* blue)
{
    recordBalance("white_balance8rggb", mosaic, width, height, red, blue);
}

void white_balance8bggr(const unsigned char* mosaic, int width, int height, double* red,
                        double* blue)
{
    recordBalance("white_balance8bggr", mosaic, width, height, red, blue);
}

void white_balance8gbrg(const unsigned char* mosaic, int width, int height, double* red,
                        double* blue)
{
    recordBalance("white_balance8gbrg", mosaic, width, height, red, blue);
}

void white_balance8grbg(const unsigned char* mosaic, int width, int height, double* red,
                        double* blue)
{
    recordBalance("white_balance8grbg", mosaic, width, height, red, blue);
}

void* color_correction_init(void)
{
    calls.push_back({"color_correction_init", {}, {}});
    return contexts + contextsMade++;
}

void color_correction_set(void* context, double redGain, double redOffset, double greenGain,
                          double greenOffset, double blueGain, double blueOffset, double hue,
                          double saturation, double lightness, double offset)
{
    calls.push_back({"color_correction_set",
                     {context},
                     {redGain, redOffset, greenGain, greenOffset, blueGain, blueOffset, hue,
                      saturation, lightness, offset}});
}

void color_correction24(void* context, unsigned char* rgb, int width, int height)
{
    calls.push_back({"color_correction24",
                     {context, rgb},
                     {static_cast<double>(width), static_cast<double>(height)}});
    for (int i = 0; i < 3 * width * height; ++i)
        rgb[i] = static_cast<unsigned char>(rgb[i] + correctionIncrement);
}

void color_correction_done(void* context)
{
    calls.push_back({"color_correction_done", {context}, {}});
}

void median_filter8(void* picture, int width, int height, int color)
{
    recordMedian<unsigned char>("median_filter8", picture, width, height, color);
}

void median_filter16(void* picture, int width, int height, int color)
{
    recordMedian<unsigned short>("median_filter16", picture, width, height, color);
}
