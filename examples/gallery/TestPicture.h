#pragma once

#include <QImage>

/// A simulated micrograph: stained cells on a bright slide. The same picture on every call.
QImage cellPicture(int width, int height);
