// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Timestamp.h"
#include "Sallowmere/Usage/FileState.h"
#include "Sallowmere/Usage/Sample.h"

#include <QByteArrayView>
#include <QHash>

#include <span>
#include <vector>

namespace sallowmere {

/// All files' samples in one list: later than the horizon, each message once, by ascending time.
///
/// The list is kept between computations. Gathering it anew costs time for every sample there is,
/// while an ordinary refresh brings a handful: those are merged in, and samples that fell behind
/// the horizon leave at the front. Anything unusual gathers anew.
class SampleTimeline {
public:
    /// Tells of a sample that was appended to a file's state.
    void add(const Sample& sample);

    /// Tells that a file's state was dropped: no text of its samples may be looked at any more.
    void invalidate();

    /// The list for this horizon. Valid until the next call of any member.
    std::span<const Sample> samples(const FileStates& files, Timestamp horizon);

private:
    void gather(const FileStates& files, Timestamp horizon);
    void mergeAdded();
    void expire();
    /// Whether the sample's message is new; the first copy of a message wins.
    bool claim(const Sample& sample);

    /// Ascending by time; equal times in the order they were met.
    std::vector<Sample> ordered_;
    std::vector<Sample> added_;
    /// Time of the copy that won, by message id.
    QHash<QByteArrayView, Timestamp> winners_;
    /// The horizon of the list; later than everything while there is no valid list.
    Timestamp horizon_ = distantFuture;
    /// A copy that lost is later than the one that won, and counts once the winner has expired.
    bool laterCopies_ = false;
};

} // namespace sallowmere
