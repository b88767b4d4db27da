// The display path: handing a 12-megapixel picture to a shown live view of 1600x1000 and painting
// it, beside QPainter::drawImage of the same picture with the same transform into an image of the
// viewport's size and format.

#include <support/BenchmarkSupport.h>

#include <AppComponents/view/LifeView.h>

#include <QApplication>
#include <QPainter>

#include <array>
#include <cstring>

namespace
{

constexpr bench::PictureSize pictureSize{4000, 3000};
constexpr int viewWidth = 1600;
constexpr int viewHeight = 1000;

using Picture = QSharedPointer<QImage>;

enum class Zoom { Fitted, OneToOne };

Picture randomPicture(QImage::Format format)
{
    auto picture = Picture::create(pictureSize.width, pictureSize.height, format);
    if (format == QImage::Format_Indexed8)
        picture->setColorTable(FrameEx2::getStandardColorTable());
    const auto size = static_cast<std::size_t>(picture->sizeInBytes());
    const auto bytes = bench::randomSamples<unsigned char>(size, 255);
    std::memcpy(picture->bits(), bytes.data(), size);
    return picture;
}

TFrameParams frameParams()
{
    TFrameParams params{};
    params.width = pictureSize.width;
    params.height = pictureSize.height;
    params.decimation = 1;
    return params;
}

std::unique_ptr<LifeView> shownView(const Picture& picture, Zoom zoom)
{
    auto view = std::make_unique<LifeView>();
    view->setMaxImageSize(pictureSize.width, pictureSize.height);
    view->resize(viewWidth, viewHeight);
    view->show();
    view->viewFrame(frameParams(), picture, 0);
    if (zoom == Zoom::Fitted)
        view->setMinZoom();
    else
        view->setZoom(1.0);
    QCoreApplication::processEvents();
    return view;
}

// Two pictures in turn, so that nothing can be kept from one repaint to the next.
using Pictures = std::array<Picture, 2>;

void repaintView(benchmark::State& state, const Pictures& pictures, Zoom zoom)
{
    const auto view = shownView(pictures[0], zoom);
    std::size_t turn = 0;
    for (auto _ : state) {
        view->viewFrame(frameParams(), pictures[++turn % 2], 0);
        view->viewport()->repaint();
    }
}

void drawPicture(benchmark::State& state, const Pictures& pictures, Zoom zoom)
{
    const auto view = shownView(pictures[0], zoom);
    QImage target(view->viewport()->size(), QImage::Format_RGB32);
    target.fill(Qt::black);
    std::size_t turn = 0;
    for (auto _ : state) {
        QPainter painter(&target);
        painter.setRenderHint(QPainter::SmoothPixmapTransform, zoom == Zoom::Fitted);
        painter.setTransform(view->viewportTransform());
        painter.drawImage(QPointF(0, 0), *pictures[++turn % 2]);
    }
}

void registerBenchmarks(const std::string& color, QImage::Format format)
{
    const Pictures pictures{randomPicture(format), randomPicture(format)};
    for (const Zoom zoom : {Zoom::Fitted, Zoom::OneToOne}) {
        const std::string work =
            "liveview_" + color + (zoom == Zoom::Fitted ? "_fit" : "_one_to_one");
        const auto add = [&](const char* who, auto run) {
            benchmark::RegisterBenchmark(
                (work + '/' + who).c_str(),
                [=](benchmark::State& state) { run(state, pictures, zoom); })
                ->Unit(benchmark::kMillisecond)
                ->UseRealTime();
        };
        add("ours", repaintView);
        add("drawimage", drawPicture);
    }
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    registerBenchmarks("color", QImage::Format_RGB888);
    registerBenchmarks("grey", QImage::Format_Indexed8);
    return bench::runBenchmarks(argc, argv);
}
