#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QSignalSpy>
#include <QTest>

#include "views/controls/FontPopUp.h"

namespace lumirra {
namespace {

using ImageTools::CaptionFont;

std::vector<CaptionFont> Fonts() {
    using M = CaptionFont::Match;
    const QString mono = QStringLiteral("DejaVu Sans Mono");
    return {{QStringLiteral("DejaVu Sans"), QStringLiteral("DejaVu Sans"), {}, M::Installed},
            {QStringLiteral("Monaco"), mono, {}, M::StandIn},
            {QStringLiteral("Skia"), QStringLiteral("DejaVu Sans"), {}, M::None}};
}

QImage RowPicture(FontPopUp& popUp, int row) {
    QAbstractItemView& view = *popUp.view();
    return view.grab(view.visualRect(view.model()->index(row, 0))).toImage();
}

TEST(FontPopUp, DrawsEachNameInItsFontAndSaysTheStandIn) {
    FontPopUp popUp;
    popUp.SetFonts(Fonts());
    popUp.show();
    popUp.showPopup();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(popUp.view()->window()));
    const QImage inMono = RowPicture(popUp, 1);
    const auto data = [&](int role) { return popUp.itemData(1, role).toString(); };
    EXPECT_EQ(data(Qt::AccessibleTextRole), QStringLiteral("Monaco, drawn in DejaVu Sans Mono"));
    EXPECT_EQ(FontNote(Fonts()[2]), QStringLiteral("not installed: DejaVu Sans"));
    EXPECT_TRUE(FontNote(Fonts()[0]).isEmpty());
    // the same words, another family
    std::vector<CaptionFont> other = Fonts();
    other[1].family = QStringLiteral("DejaVu Sans");
    popUp.hidePopup();
    popUp.SetFonts(other);
    popUp.showPopup();
    const QRect name(0, 0, 90, inMono.height());
    EXPECT_NE(RowPicture(popUp, 1).copy(name), inMono.copy(name));
}

TEST(FontPopUp, TheLastRowAsksAndIsNeverCurrent) {
    FontPopUp popUp;
    popUp.SetFonts(Fonts());
    popUp.setCurrentIndex(1);
    QSignalSpy asked(&popUp, &FontPopUp::OtherAsked);
    QList<int> currentWhenActivated;
    QObject::connect(&popUp, &QComboBox::activated, &popUp,
                     [&] { currentWhenActivated << popUp.currentIndex(); });
    popUp.show();
    popUp.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&popUp));
    popUp.setFocus();
    for (int i = 0; i < 5; ++i) {
        QTest::keyClick(&popUp, Qt::Key_Down);  // closed: the fonts alone
    }
    EXPECT_EQ(popUp.currentIndex(), 2);
    EXPECT_EQ(asked.size(), 0);

    currentWhenActivated.clear();
    popUp.showPopup();
    QAbstractItemView& view = *popUp.view();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(view.window()));
    view.setCurrentIndex(view.model()->index(3, 0));
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([&] { return asked.size() == 1; }));
    EXPECT_EQ(popUp.currentIndex(), 2);
    EXPECT_EQ(currentWhenActivated, QList<int>{2});

    popUp.SetFonts(Fonts());
    EXPECT_EQ(popUp.currentIndex(), 2) << "the row stays";
    const QImage plain = popUp.grab().toImage();
    popUp.SetOther(QStringLiteral("Comic Neue:Bold"));
    EXPECT_NE(popUp.grab().toImage(), plain);
    popUp.SetOther({});
    EXPECT_EQ(popUp.grab().toImage(), plain);
}

}  // namespace
}  // namespace lumirra
