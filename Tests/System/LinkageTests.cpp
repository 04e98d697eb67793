// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "System/ChildProcess.h"

#include <gmock/gmock.h>

namespace sallowmere {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(Linkage, TheCoreNeedsNoWindowSystem) {
    const Outcome outcome =
        run({"/usr/bin/ldd", {"ldd", SALLOWMERE_CORE_TESTS}, {"PATH=/usr/bin:/bin"}, {}});
    ASSERT_EQ(outcome.exitStatus, 0) << outcome.errors;
    EXPECT_THAT(outcome.output, HasSubstr("libQt6Core.so"));
    for (const char* library : {"Qt6Gui", "Qt6Widgets", "Qt6Qml", "Qt6Quick", "Qt6DBus", "libX11",
                                "libxcb", "libwayland", "libGL", "libEGL"}) {
        EXPECT_THAT(outcome.output, Not(HasSubstr(library)));
    }
}

} // namespace
} // namespace sallowmere
