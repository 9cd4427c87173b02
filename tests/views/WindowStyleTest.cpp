#include <gtest/gtest.h>

#include <QPainter>
#include <QPushButton>
#include <QStyleOptionButton>

#include "views/style/Colors.h"
#include "views/style/WindowStyle.h"

namespace lumirra {
namespace {

/// The button on white, as it looks in that state.
QImage Drawn(const QPushButton& button, QStyle::State more) {
    WindowStyle style;
    QStyleOptionButton option;
    option.initFrom(&button);
    option.rect = QRect(0, 0, 90, 30);
    option.palette = PaletteFor(LightColors());
    option.text = button.text();
    option.state = QStyle::State_Enabled | QStyle::State_Active | more;
    QImage image(option.rect.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    style.drawControl(QStyle::CE_PushButton, &option, &painter, &button);
    return image;
}

TEST(WindowStyle, AQuietButtonIsHalfThereUntilItIsPointedAtOrHasTheKeyboard) {
    QPushButton plain(QStringLiteral("Reset"));
    QPushButton quiet(QStringLiteral("Reset"));
    quiet.setProperty("quiet", true);
    const QImage whole = Drawn(plain, {});
    const QImage half = Drawn(quiet, {});
    ASSERT_NE(whole, half);
    for (int y = 0; y < whole.height(); ++y) {
        for (int x = 0; x < whole.width(); ++x) {
            const int ink = 255 - whole.pixelColor(x, y).green();
            ASSERT_NEAR(255 - half.pixelColor(x, y).green(), ink * 0.5, 6) << x << " " << y;
        }
    }
    EXPECT_EQ(Drawn(quiet, QStyle::State_MouseOver), Drawn(plain, QStyle::State_MouseOver));
    EXPECT_EQ(Drawn(quiet, QStyle::State_HasFocus), Drawn(plain, QStyle::State_HasFocus));
}

}  // namespace
}  // namespace lumirra
