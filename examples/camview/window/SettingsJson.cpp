#include "SettingsJson.h"

#include <algorithm>

namespace
{

SensorRegion regionFrom(const QJsonObject& json, const SensorRegion& fallback)
{
    return {json["x"].toInt(fallback.x), json["y"].toInt(fallback.y),
            json["width"].toInt(fallback.width), json["height"].toInt(fallback.height)};
}

} // namespace

QJsonObject toJson(const CameraSettings& settings, const CameraInfo& info)
{
    return {{"sensorWidth", info.sensorWidth},
            {"sensorHeight", info.sensorHeight},
            {"x", settings.region.x},
            {"y", settings.region.y},
            {"width", settings.region.width},
            {"height", settings.region.height},
            {"decimation", settings.decimation},
            {"bitDepth", settings.bitDepth},
            {"mirrorH", settings.mirrorH},
            {"mirrorV", settings.mirrorV},
            {"exposureMs", settings.exposureMs},
            {"gainDb", settings.gainDb},
            {"frameRate", settings.frameRate}};
}

CameraSettings cameraSettingsFrom(const QJsonObject& json, const CameraSettings& fallback,
                                  const CameraInfo& info)
{
    CameraSettings settings = fallback;
    if (json["sensorWidth"].toInt(info.sensorWidth) == info.sensorWidth &&
        json["sensorHeight"].toInt(info.sensorHeight) == info.sensorHeight)
        settings.region = regionFrom(json, fallback.region);
    settings.decimation = std::max(1, json["decimation"].toInt(fallback.decimation));
    settings.bitDepth = json["bitDepth"].toInt(fallback.bitDepth);
    settings.mirrorH = json["mirrorH"].toBool(fallback.mirrorH);
    settings.mirrorV = json["mirrorV"].toBool(fallback.mirrorV);
    settings.exposureMs = json["exposureMs"].toDouble(fallback.exposureMs);
    settings.gainDb = json["gainDb"].toDouble(fallback.gainDb);
    settings.frameRate = json["frameRate"].toDouble(fallback.frameRate);
    return settings;
}

QJsonObject toJson(const ProcessingSettings& settings)
{
    return {{"averageFrames", settings.averageFrames},
            {"autoStretch", settings.autoStretch},
            {"greyFromMosaic", settings.greyFromMosaic}};
}

void readProcessing(const QJsonObject& json, ProcessingSettings& settings)
{
    settings.averageFrames = json["averageFrames"].toInt(settings.averageFrames);
    settings.autoStretch = json["autoStretch"].toBool(settings.autoStretch);
    settings.greyFromMosaic = json["greyFromMosaic"].toBool(settings.greyFromMosaic);
}
