#pragma once

#include "sources/video/VideoStream.h"

namespace lumirra {

/// How long the film is, in seconds. The container's own figure, which spans the longest track,
/// since the player's scale and the labels show it; less the time before anything starts where
/// the container counts that in; the video track's finer figure where the two differ by rounding
/// only; the track's frames counted where the file says nothing or too little.
double MediaDuration(const VideoStream& stream);

/// What may be added to a wanted time, in seconds, so that asking for exactly a frame's time gives
/// that frame although time stamps are rounded to ticks and positions to single precision. At
/// most a quarter of a frame.
double TimeSlack(const VideoStream& stream, double durationSeconds);

}  // namespace lumirra
