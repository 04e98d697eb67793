// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Panel/Cases.h"
#include "Panel/Desktop.h"
#include "Panel/PanelHome.h"
#include "Panel/RunningPanel.h"
#include "Panel/Table.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace sallowmere {

namespace {

using Moment = ScreenWatch::Moment;
using Kind = ScreenWatch::Event::Kind;

/// What was seen of one opening; times in milliseconds since the pointer came.
struct Opening {
    double firstHeight = 0;
    double firstFrame = 0;
    double lastHeight = 0;
    double heights = 0;
    double frames = 0;
    double longestPause = 0;
    /// Sizes that were smaller than the one before.
    double stepsBack = 0;
};

double millisecondsBetween(Moment from, Moment to) {
    return std::chrono::duration<double, std::milli>(to - from).count();
}

/// Everything until the window has not changed its size for a while.
std::vector<ScreenWatch::Event> untilStill(ScreenWatch& watch) {
    constexpr std::chrono::milliseconds still(300);
    std::vector<ScreenWatch::Event> events;
    Moment deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (const auto event = watch.next(deadline)) {
        events.push_back(*event);
        if (event->kind == Kind::configured) {
            deadline = event->at + still;
        }
    }
    return events;
}

class OpeningReader {
public:
    OpeningReader(Moment entered, int barHeight)
        : entered_(entered), barHeight_(barHeight), height_(barHeight) {}

    void read(const ScreenWatch::Event& event) {
        const double time = millisecondsBetween(entered_, event.at);
        if (event.kind == Kind::configured && event.height != height_) {
            readHeight(event.height, time);
        } else if (event.kind == Kind::drawn && time > opening_.lastHeight + clearing) {
            readFrame(time);
        }
    }

    Opening opening() const {
        if (opening_.firstFrame <= 0) {
            throw std::runtime_error("the panel did not open");
        }
        return opening_;
    }

private:
    /// Milliseconds in which the server itself clears what a window has grown by.
    static constexpr double clearing = 1;

    void readHeight(int height, double time) {
        opening_.stepsBack += height < height_ ? 1 : 0;
        height_ = height;
        if (height <= barHeight_) {
            // Its growing begins only now.
            opening_ = {.stepsBack = opening_.stepsBack};
            frames_ = 0;
            return;
        }
        if (opening_.heights > 0) {
            opening_.longestPause = std::max(opening_.longestPause, time - opening_.lastHeight);
        } else {
            opening_.firstHeight = time;
        }
        ++opening_.heights;
        opening_.lastHeight = time;
        opening_.frames = frames_;
    }

    void readFrame(double time) {
        if (opening_.heights > 0) {
            opening_.firstFrame = opening_.firstFrame > 0 ? opening_.firstFrame : time;
            ++frames_;
        }
    }

    Moment entered_;
    int barHeight_;
    int height_;
    int frames_ = 0;
    Opening opening_;
};

Opening open(RunningPanel& panel, ScreenWatch& watch) {
    OpeningReader reader(std::chrono::steady_clock::now(), panel.barHeight());
    panel.enter();
    for (const ScreenWatch::Event& event : untilStill(watch)) {
        reader.read(event);
    }
    return reader.opening();
}

Spread spreadOver(const std::vector<Opening>& openings, double Opening::*what) {
    std::vector<double> values;
    for (const Opening& opening : openings) {
        values.push_back(opening.*what);
    }
    return spreadOf(values);
}

void printTimes(const char* what, const char* target, const Spread& time) {
    printRow(what, target, "median %.1f, longest %.1f ms", time.median, time.most);
}

void printCounts(const char* what, const char* target, const Spread& count) {
    printRow(what, target, "median %.0f, fewest %.0f", count.median, count.least);
}

} // namespace

void measureOpening(const MeasuredProgram& measured, int runs) {
    const PanelHome home(measured.home);
    const Desktop desktop;
    ScreenWatch watch(desktop.display());
    watch.paintBackground();
    RunningPanel panel(desktop, watch, measured.program, home.path());
    // The first scan fills the list.
    watch.framesUntil(std::chrono::steady_clock::now() + std::chrono::seconds(2));
    const Opening first = open(panel, watch);
    std::vector<Opening> openings;
    for (int run = 0; run < runs; ++run) {
        panel.leave();
        untilStill(watch);
        openings.push_back(open(panel, watch));
    }
    printTargetHead(("opening, " + std::to_string(runs) + " times").c_str());
    printTimes("from the pointer to a larger window", "",
               spreadOver(openings, &Opening::firstHeight));
    printTimes("from the pointer to the first larger frame", "32 ms",
               spreadOver(openings, &Opening::firstFrame));
    printRow("the same, of the first opening", "", "%.1f ms", first.firstFrame);
    printTimes("from the pointer to the full size", "", spreadOver(openings, &Opening::lastHeight));
    printCounts("sizes of the window on the way, ten in 160 ms", "9",
                spreadOver(openings, &Opening::heights));
    printCounts("frames drawn on the way", "9", spreadOver(openings, &Opening::frames));
    printRow("sizes smaller than the one before", "0", "at most %.0f",
             spreadOver(openings, &Opening::stepsBack).most);
    printTimes("longest pause between two sizes", "", spreadOver(openings, &Opening::longestPause));
}

} // namespace sallowmere
