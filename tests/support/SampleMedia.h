#pragma once

#include <gtest/gtest.h>

#include <QDir>

/// For tests on the clips and pictures that lie beside the checkout: without them the test is
/// skipped, but under CI, where they must be, it fails.
#define LUMIRRA_NEED_SAMPLE_MEDIA()                               \
    if (!QDir(QStringLiteral(LUMIRRA_MEDIA_DIR)).exists()) {      \
        if (qEnvironmentVariableIsSet("CI")) {                    \
            FAIL() << "the folder of sample media is missing";    \
        }                                                         \
        GTEST_SKIP() << "the folder of sample media is not here"; \
    }                                                             \
    static_assert(true)
