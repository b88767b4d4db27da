#pragma once

#include "Scene.h"
#include "core/Camera.h"

#include <memory>
#include <vector>

/// A sensor made of arithmetic: exposes a scene, adds photon and read-out noise, and reads a
/// region out as a real sensor would, decimated and mirrored.
class SimulatedSensor
{
public:
    /// \param noiseFactor 1 is the noise of an ordinary sensor, 0 none
    SimulatedSensor(std::unique_ptr<Scene> what, bool isMosaic, double noiseFactor, unsigned seed);

    int width() const { return scene->width(); }
    int height() const { return scene->height(); }
    bool isMosaic() const { return mosaic; }

    /// The settings nearest to what is wanted: the region inside the sensor, on steps that keep
    /// the mosaic's phase and give pictures whose width is a multiple of 4.
    CameraSettings adjusted(const CameraSettings& wanted) const;

    /// Exposes and reads out one frame under adjusted settings.
    void expose(const CameraSettings& settings, CameraFrame& frame);

private:
    void gatherRow(const std::uint16_t* light, const CameraSettings& settings, int row);
    template <typename Sample>
    void develop(const CameraSettings& settings, Sample* out);

    std::unique_ptr<Scene> scene;
    const bool mosaic;
    const float noise;
    std::uint32_t random;
    std::vector<float> noiseTable; ///< normal deviates, wrapped so that any start has a whole row
    std::vector<std::uint16_t> line;
};
