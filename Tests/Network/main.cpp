// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Network/NetworkThreads.h"
#include "Support/Sanitizers.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    const int status = RUN_ALL_TESTS();
    sallowmere::NetworkThreads::waitForTheirEnd();
    return status;
}
