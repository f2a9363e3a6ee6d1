#pragma once
// Measuring what the synthesizer rendered: the pitch of a steady tone and where notes
// begin. Written for these tests, independent of the code they check.
#include <vector>

namespace lirenza::testing {

// Mono mix of interleaved stereo.
std::vector<float> Mono(const std::vector<float>& interleaved);

// Fundamental frequency over [first, first + count) of a steady, near-sinusoidal tone:
// rising zero crossings located to a fraction of a sample by linear interpolation,
// their mean period taken between the first and the last. Over a second of tone the
// error is far below a hundredth of a cent. 0 when fewer than two crossings.
double ZeroCrossingFrequency(const std::vector<float>& mono, double sampleRate, long first, long count);

// Frames where a note begins: the first sample above `threshold` (relative to the peak)
// after at least `quietFrames` below it.
std::vector<long> Onsets(const std::vector<float>& mono, double threshold, long quietFrames);

double CentsBetween(double f, double reference);

}  // namespace lirenza::testing
