// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace sallowmere {

/// What is measured, and on which home directory.
struct MeasuredProgram {
    std::string program;
    std::string home;
};

/// From the start of the process to the first frame of the bar, so often.
void measureStart(const MeasuredProgram& measured, int runs);

/// From the pointer's coming to the first larger frame, and the frames of the growing, so often.
void measureOpening(const MeasuredProgram& measured, int runs);

/// Processor time, frames and waits in so many seconds each: collapsed and expanded, with nobody
/// at work and with one session at work.
void measureWork(const MeasuredProgram& measured, int seconds);

/// What is resident over so many seconds with an opening every six of them, after a tenth of that
/// with openings without a pause.
void measureMemory(const MeasuredProgram& measured, int seconds);

/// Memory, and processor time in so many seconds, beside panels that people use.
void measurePeers(const MeasuredProgram& measured, int seconds);

} // namespace sallowmere
