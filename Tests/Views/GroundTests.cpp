// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Views/ViewTest.h"

namespace sallowmere {
namespace {

using namespace Samples;

class Ground : public ViewTest {
protected:
    /// How much of a white desktop is seen through a point of the window, from 0 to 255.
    int seenThrough(QPoint place) {
        stage.view().setColor(Qt::white);
        return pixel(place).red();
    }

    int width() { return stage.view().width(); }
    int height() { return stage.view().height(); }
};

TEST_F(Ground, OfTheBarIsRoundBelow) {
    stage.scan({idle()});
    EXPECT_EQ(seenThrough({0, 0}), 0);
    EXPECT_EQ(seenThrough({width() - 1, 0}), 0);
    EXPECT_EQ(seenThrough({0, height() - 1}), 255);
    EXPECT_EQ(seenThrough({width() - 1, height() - 1}), 255);
    EXPECT_EQ(seenThrough({width() / 2, height() - 1}), 0);
}

TEST_F(Ground, OfThePanelIsBlack) {
    showOpen({idle()});
    EXPECT_EQ(seenThrough({23, 1}), 0);
    EXPECT_EQ(seenThrough({width() - 24, 1}), 0);
    EXPECT_EQ(seenThrough({width() / 2, height() - 30}), 0);
    EXPECT_GT(seenThrough({23, height() - 30}), 0);
}

TEST_F(Ground, HasAShadowThatEndsWithinTheWindow) {
    showOpen({idle()});
    const int middle = height() / 2;
    int before = seenThrough({21, middle});
    EXPECT_GT(before, 64);
    EXPECT_LT(before, 200);
    for (int x = 20; x >= 0; --x) {
        const int seen = seenThrough({x, middle});
        EXPECT_GE(seen, before) << x;
        EXPECT_NEAR(seen, seenThrough({width() - 1 - x, middle}), 2) << x;
        before = seen;
    }
    EXPECT_GT(before, 250);
    EXPECT_GT(seenThrough({width() / 2, height() - 1}), 250);
    EXPECT_LT(seenThrough({width() / 2, height() - 28}), seenThrough({21, middle}));
    EXPECT_GT(seenThrough({1, height() - 2}), 250);
}

TEST_F(Ground, AsksForATransparentWindow) {
    EXPECT_EQ(stage.view().color().alpha(), 0);
    EXPECT_EQ(stage.view().requestedFormat().alphaBufferSize(), 8);
}

TEST_F(Ground, IsToldAsAShape) {
    stage.scan({idle()});
    const QRegion bar = stage.view().opaqueShape();
    EXPECT_EQ(bar.boundingRect(), QRect(0, 0, 240, 30));
    EXPECT_TRUE(bar.contains(QPoint(0, 0)));
    EXPECT_TRUE(bar.contains(QPoint(0, 19)));
    EXPECT_FALSE(bar.contains(QPoint(0, 29)));
    EXPECT_FALSE(bar.contains(QPoint(239, 29)));
    EXPECT_TRUE(bar.contains(QPoint(10, 29)));

    stage.open();
    const QRegion panel = stage.view().opaqueShape();
    EXPECT_EQ(panel.boundingRect(), QRect(22, 0, 620, height() - 28));
    EXPECT_TRUE(panel.contains(QPoint(22, 0)));
    EXPECT_FALSE(panel.contains(QPoint(22, height() - 29)));
    EXPECT_FALSE(panel.contains(QPoint(21, 10)));
}

TEST_F(Ground, ShowsNothingOfTheDesktopWithinItsShape) {
    for (const bool isOpen : {false, true}) {
        stage.scan({idle()});
        if (isOpen) {
            stage.open();
        }
        stage.view().setColor(Qt::white);
        const QImage seen = stage.view().grabWindow();
        const QRegion shape = stage.view().opaqueShape();
        const QRect ground = shape.boundingRect();
        // Below its texts.
        QRegion seenThrough;
        for (int y = ground.bottom() - 9; y <= ground.bottom(); ++y) {
            for (int x = ground.left(); x <= ground.right(); ++x) {
                if (seen.pixelColor(x, y).red() > 0) {
                    seenThrough += QRect(x, y, 1, 1);
                }
            }
        }
        EXPECT_FALSE(seenThrough.isEmpty());
        EXPECT_FALSE(shape.intersects(seenThrough));
    }
}

} // namespace
} // namespace sallowmere
