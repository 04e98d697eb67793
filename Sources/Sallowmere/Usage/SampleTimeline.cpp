// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Usage/SampleTimeline.h"

#include <algorithm>
#include <iterator>

namespace sallowmere {

namespace {

bool isEarlier(const Sample& left, const Sample& right) {
    return left.time < right.time;
}

} // namespace

void SampleTimeline::add(const Sample& sample) {
    const bool willGather = horizon_ == distantFuture;
    if (!willGather) {
        added_.push_back(sample);
    }
}

void SampleTimeline::invalidate() {
    ordered_ = std::vector<Sample>();
    added_ = std::vector<Sample>();
    winners_.clear();
    laterCopies_ = false;
    horizon_ = distantFuture;
}

std::span<const Sample> SampleTimeline::samples(const FileStates& files, Timestamp horizon) {
    const bool expiring = !ordered_.empty() && ordered_.front().time <= horizon;
    if (horizon < horizon_ || (expiring && laterCopies_)) {
        gather(files, horizon);
        return ordered_;
    }
    horizon_ = horizon;
    expire();
    mergeAdded();
    return ordered_;
}

void SampleTimeline::gather(const FileStates& files, Timestamp horizon) {
    invalidate();
    horizon_ = horizon;

    std::vector<FileStates::const_pointer> byPath;
    byPath.reserve(files.size());
    std::size_t most = 0;
    for (const auto& entry : files) {
        byPath.push_back(&entry);
        most += entry.second.samples.size();
    }
    ordered_.reserve(most);
    std::sort(byPath.begin(), byPath.end(),
              [](const auto* left, const auto* right) { return left->first < right->first; });

    for (const auto* entry : byPath) {
        for (const Sample& sample : entry->second.samples) {
            if (sample.time > horizon && claim(sample)) {
                ordered_.push_back(sample);
            }
        }
    }
    std::stable_sort(ordered_.begin(), ordered_.end(), isEarlier);
}

void SampleTimeline::mergeAdded() {
    std::erase_if(
        added_, [this](const Sample& sample) { return sample.time <= horizon_ || !claim(sample); });
    std::stable_sort(added_.begin(), added_.end(), isEarlier);
    const auto oldCount = std::ssize(ordered_);
    ordered_.insert(ordered_.end(), added_.begin(), added_.end());
    added_.clear();
    std::inplace_merge(ordered_.begin(), ordered_.begin() + oldCount, ordered_.end(), isEarlier);
}

void SampleTimeline::expire() {
    const auto firstKept = std::find_if(ordered_.begin(), ordered_.end(),
                                        [this](const Sample& s) { return s.time > horizon_; });
    std::for_each(ordered_.begin(), firstKept,
                  [this](const Sample& s) { winners_.remove(s.messageId); });
    ordered_.erase(ordered_.begin(), firstKept);
}

bool SampleTimeline::claim(const Sample& sample) {
    const auto winner = winners_.constFind(sample.messageId);
    if (winner == winners_.constEnd()) {
        winners_.insert(sample.messageId, sample.time);
        return true;
    }
    laterCopies_ = laterCopies_ || sample.time > *winner;
    return false;
}

} // namespace sallowmere
