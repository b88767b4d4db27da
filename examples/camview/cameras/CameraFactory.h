#pragma once

#include "core/Camera.h"

#include <QStringList>

#include <memory>

/// Opens the camera that a source text names:
///   sim[?width=&height=&bits=&mono=&noise=&seed=]   a simulated sensor before a test chart
///   photo:FILE[?bits=&mono=&noise=&seed=]           the same sensor before a photograph
///   raw:FILE?width=&height=&bits=[&mono=&mirrorh=&mirrorv=&loop=]   raw frames from a file
///   play:FILE[?loop=]                               a recording of camview
///   genicam[:NAME]                                  a GigE Vision or USB3 Vision camera
/// \throws CameraError with one line for the user
std::unique_ptr<Camera> openCamera(const QString& source);

/// The names that "genicam:NAME" takes now; empty when built without support for them.
QStringList listCameras();

/// The sources, one per line, for a help text.
QString sourceHelp();
