#include <gtest/gtest.h>

#include <random>

#include "views/panel/ZoomGeometry.h"

namespace lumirra {
namespace {

/// The same rules in coordinates that grow upwards, axis by axis, as plain numbers.
struct UpwardModel {
    double panelW, panelH;
    double x = 0, y = 0, w = panelW, h = panelH;

    void Zoom(double f) {
        const double z = w / panelW * f;
        const double oldW = w;
        const double oldH = h;
        w = z < 1 ? panelW : z > 10 ? 10 * panelW : w * f;
        h = z < 1 ? panelH : z > 10 ? 10 * panelH : h * f;
        x -= 0.5 * (w - oldW);
        y -= 0.5 * (h - oldH);
        if (x < panelW - w)
            x = panelW - w;
        if (x > 0)
            x = 0;
        if (y < panelH - h)
            y = panelH - h;
        if (y > 0)
            y = 0;
    }
    void Pan(double dx, double dy) {
        const double nx = x + dx;
        const double ny = y - dy;
        if (panelW - w <= nx && nx <= 0)
            x = nx;
        if (panelH - h <= ny && ny <= 0)
            y = ny;
    }
};

TEST(ZoomGeometry, AgreesWithTheUpwardModelOverLongWalks) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> moves(-90, 90);
    for (const QSizeF panel : {QSizeF(640, 480), QSizeF(701, 333), QSizeF(320, 900)}) {
        ZoomGeometry zoom(panel);
        UpwardModel model{panel.width(), panel.height()};
        for (int step = 0; step < 3000; ++step) {
            const auto choice = random() % 8;
            // Long enough in one direction to reach both ends of the range.
            if (choice == 0) {
                const bool in = (step / 300) % 2 == 0;
                in ? zoom.ZoomIn() : zoom.ZoomOut();
                model.Zoom(in ? 1.1 : 0.9);
            } else {
                const double dx = moves(random);
                const double dy = moves(random);
                zoom.Pan(dx, dy);
                model.Pan(dx, dy);
            }
            const QRectF view = zoom.View();
            ASSERT_NEAR(view.x(), model.x, 1e-6) << step;
            ASSERT_NEAR(panel.height() - view.bottom(), model.y, 1e-6) << step;
            ASSERT_NEAR(view.width(), model.w, 1e-6) << step;
            ASSERT_NEAR(view.height(), model.h, 1e-6) << step;
        }
    }
}

TEST(ZoomGeometry, StopsAtTenAndSnapsBackToThePanel) {
    ZoomGeometry zoom(QSizeF(640, 480));
    zoom.ZoomOut();
    EXPECT_EQ(zoom.View(), QRectF(0, 0, 640, 480));
    zoom.Pan(5, 5);
    EXPECT_EQ(zoom.View(), QRectF(0, 0, 640, 480)) << "as large as the panel: it cannot move";
    for (int i = 0; i < 60; ++i) {
        zoom.ZoomIn();
    }
    EXPECT_EQ(zoom.View().size(), QSizeF(6400, 4800));
    for (int i = 0; i < 60; ++i) {
        zoom.ZoomOut();
    }
    EXPECT_EQ(zoom.View(), QRectF(0, 0, 640, 480));
}

TEST(ZoomGeometry, AnotherPanelSizeKeepsZoomAndMiddle) {
    ZoomGeometry zoom(QSizeF(600, 400));
    zoom.ZoomIn();
    zoom.ZoomIn();
    zoom.Pan(20, -10);
    const double middle = (300 - zoom.View().x()) / zoom.View().width();
    zoom.SetPanel(QSizeF(900, 500));
    EXPECT_NEAR(zoom.View().width(), 900 * 1.21, 1e-9);
    EXPECT_NEAR((450 - zoom.View().x()) / zoom.View().width(), middle, 1e-9);
    zoom.SetPanel(QSizeF());
    zoom.ZoomIn();
    zoom.SetPanel(QSizeF(300, 200));
    EXPECT_EQ(zoom.View(), QRectF(0, 0, 300, 200));
}

}  // namespace
}  // namespace lumirra
