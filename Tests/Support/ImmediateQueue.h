// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/WorkQueue.h"

namespace sallowmere {

/// Runs what is posted before `post` returns.
class ImmediateQueue : public WorkQueue {
public:
    void post(Work work) override { work(); }
};

} // namespace sallowmere
