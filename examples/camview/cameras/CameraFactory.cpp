#include "CameraFactory.h"

#ifdef CAMVIEW_WITH_ARAVIS
#include "GenicamCamera.h"
#endif
#include "PlaybackCamera.h"
#include "RawFileCamera.h"
#include "SimCamera.h"
#include "SourceText.h"

#include <functional>
#include <map>

namespace
{

#ifdef CAMVIEW_WITH_ARAVIS
std::unique_ptr<Camera> openGenicam(const SourceText& source)
{
    source.allowOnly({});
    return std::make_unique<GenicamCamera>(source.path());
}
#else
std::unique_ptr<Camera> openGenicam(const SourceText&)
{
    throw CameraError("this camview was built without Aravis, which GenICam cameras need");
}
#endif

} // namespace

std::unique_ptr<Camera> openCamera(const QString& text)
{
    using Opener = std::function<std::unique_ptr<Camera>(const SourceText&)>;
    static const std::map<QString, Opener> openers = {
        {"sim", SimCamera::openChart}, {"photo", SimCamera::openPhoto},
        {"raw", RawFileCamera::open},  {"play", PlaybackCamera::open},
        {"genicam", openGenicam},
    };
    const SourceText source(text);
    const auto opener = openers.find(source.scheme());
    if (opener == openers.end())
        throw CameraError(QString("unknown source \"%1\"").arg(text));
    return opener->second(source);
}

QStringList listCameras()
{
#ifdef CAMVIEW_WITH_ARAVIS
    return GenicamDevice::list();
#else
    return {};
#endif
}

QString sourceHelp()
{
    return "  sim[?width=&height=&bits=&mono=&noise=&seed=]\n"
           "  photo:FILE[?bits=&mono=&noise=&seed=]\n"
           "  raw:FILE?width=&height=&bits=[&mono=&mirrorh=&mirrorv=&loop=]\n"
           "  play:FILE[?loop=]\n"
           "  genicam[:NAME]\n";
}
