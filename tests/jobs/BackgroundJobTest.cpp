#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QStringList>
#include <QThread>
#include <atomic>

#include "jobs/BackgroundJob.h"

namespace lumirra {
namespace {

using Kind = BackgroundJob::Kind;

template <typename Condition>
bool WaitFor(Condition condition) {
    QElapsedTimer clock;
    clock.start();
    while (!condition() && clock.elapsed() < 20000) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    return condition();
}

void WaitForStop(const std::stop_token& stop) {
    while (!stop.stop_requested()) {
        QThread::msleep(1);
    }
}

TEST(BackgroundJob, MessagesArriveInOrderOnTheMainThreadBeforeTheEnd) {
    BackgroundJob job;
    QStringList seen;
    const QThread* main = QThread::currentThread();
    bool elsewhere = false;
    ASSERT_TRUE(job.Start(
        Kind::Extraction,
        [&](const std::stop_token&) {
            elsewhere = QThread::currentThread() != main;
            for (int i = 0; i < 100; ++i) {
                job.Post([&seen, main, i] {
                    EXPECT_EQ(QThread::currentThread(), main);
                    seen.append(QString::number(i));
                });
            }
        },
        [&] {
            EXPECT_EQ(job.Running(), Kind::None);
            seen.append(QStringLiteral("end"));
        }));
    EXPECT_EQ(job.Running(), Kind::Extraction);
    EXPECT_TRUE(seen.isEmpty());
    ASSERT_TRUE(WaitFor([&] { return job.Running() == Kind::None; }));
    EXPECT_TRUE(elsewhere);
    ASSERT_EQ(seen.size(), 101);
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(seen[i], QString::number(i));
    }
    EXPECT_EQ(seen.last(), QStringLiteral("end"));
}

TEST(BackgroundJob, StoppingDeliversWhatWasSaidAndTheEnd) {
    BackgroundJob job;
    int messages = 0;
    int ends = 0;
    std::atomic<bool> said = false;
    const auto work = [&](const std::stop_token& stop) {
        job.Post([&] { ++messages; });
        said = true;
        WaitForStop(stop);
        job.Post([&] { ++messages; });
    };
    job.Stop();
    ASSERT_TRUE(job.Start(Kind::Generation, work, [&] { ++ends; }));
    while (!said) {
        QThread::msleep(1);
    }
    job.Stop();
    EXPECT_EQ(messages, 2);
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(job.Running(), Kind::None);
    QCoreApplication::processEvents();
    EXPECT_EQ(ends, 1) << "nothing is left over in the event queue";

    ASSERT_TRUE(job.Start(Kind::Extraction, work, [&] { ++ends; }));
    job.Stop();
    EXPECT_EQ(ends, 2) << "and the next job runs as the first did";
    {
        BackgroundJob left;
        ASSERT_TRUE(left.Start(Kind::Extraction, WaitForStop, [&] { ++ends; }));
    }
    EXPECT_EQ(ends, 2) << "what is destroyed says nothing more";
}

}  // namespace
}  // namespace lumirra
