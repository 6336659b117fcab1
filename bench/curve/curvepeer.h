#pragma once

#include <functional>

#include "output/curveview.h"

/// A plot of the plotting library with the same curve, scale, grid and marks, 1200 by 700 pixels. Each call
/// of what comes back draws it anew. With its reduction of crowded points, as it comes.
std::function<void()> MakeCurvePeer(const spectrane::CurveView& view, bool antialiased);
