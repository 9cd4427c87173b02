#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>

#include "sources/LibrariesInUse.h"

namespace lumirra {
namespace {

TEST(LibrariesInUse, HaveVersionsAndTheLicencesThatThePackageTells) {
    QFile file(QStringLiteral(LUMIRRA_SOURCE_DIR "/debian/copyright"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString told = QString::fromUtf8(file.readAll());
    const QRegularExpression version(QStringLiteral("^\\d+(\\.\\d+)+$"));
    QStringList names;
    for (const LibraryInUse& library : LibrariesInUse()) {
        names << library.name;
        EXPECT_TRUE(version.match(library.version).hasMatch()) << library.version.toStdString();
        const QRegularExpression row(QStringLiteral("\n  (\\w+, )*%1(, \\w+)*: %2\n")
                                         .arg(QRegularExpression::escape(library.name),
                                              QRegularExpression::escape(library.licence)));
        EXPECT_TRUE(row.match(told).hasMatch()) << library.name.toStdString();
    }
    // those of the module too
    EXPECT_TRUE(names.contains(QStringLiteral("libavcodec")));
    EXPECT_TRUE(names.contains(QStringLiteral("libtiff")));
}

}  // namespace
}  // namespace lumirra
