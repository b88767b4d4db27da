#include <AppComponents/imgproc/orvimg.h>

#include <orvimg/reference/reference.h>

void histogram10(const unsigned short* samples, int count, int* histogram)
{
    if (samples != nullptr && count > 0 && histogram != nullptr)
        orvimg::reference::histogram(samples, static_cast<std::size_t>(count), 1024, histogram);
}

void histogram12(const unsigned short* samples, int count, int* histogram)
{
    if (samples != nullptr && count > 0 && histogram != nullptr)
        orvimg::reference::histogram(samples, static_cast<std::size_t>(count), 4096, histogram);
}
