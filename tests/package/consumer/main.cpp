#include <AppComponents/AppComponents.h>

#include <cstdio>

/// Sends one raw frame down the whole road and checks that a picture comes out.
int main()
{
    _FrameParams params{};
    params.width = 64;
    params.height = 48;
    params.decimation = 1;
    params.bitsPerPixel = 8;
    FrameEx2 frame(params, 12);
    unsigned char* samples = frame.getImageBuffer();
    for (int i = 0; i < frame.getImageBuffSize(); i += 2) {
        samples[i] = 0x00;
        samples[i + 1] = 0x08;
    }

    ImgProcessor processor;
    processor.setColorReconstructionMethod(2);
    processor.ProcessFrame(&frame, 8);

    const QSharedPointer<QImage> image = frame.getLasFrameInChain(true)->getImage();
    const QRgb expected = qRgb(0x80, 0x80, 0x80);
    if (image->size() != QSize(64, 48) || image->pixel(31, 17) != expected) {
        std::puts("The installed library gave a wrong picture.");
        return 1;
    }
    return 0;
}
