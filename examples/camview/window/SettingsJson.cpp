#include "SettingsJson.h"

#include <algorithm>

QJsonObject toJson(const CameraSettings& settings)
{
    return {{"x", settings.region.x},
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

CameraSettings cameraSettingsFrom(const QJsonObject& json, const CameraSettings& fallback)
{
    CameraSettings settings = fallback;
    settings.region.x = json["x"].toInt(fallback.region.x);
    settings.region.y = json["y"].toInt(fallback.region.y);
    settings.region.width = json["width"].toInt(fallback.region.width);
    settings.region.height = json["height"].toInt(fallback.region.height);
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
