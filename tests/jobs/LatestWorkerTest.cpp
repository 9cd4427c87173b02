#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>
#include <atomic>

#include "jobs/LatestWorker.h"

namespace lumirra {
namespace {

class Latest : public testing::Test {
  protected:
    /// Work that takes until `Release` or until nobody wants it.
    LatestWorker::Work Held(int number) {
        return [this, number](const std::stop_token& stop) {
            begun = number;
            while (!stop.stop_requested() && released < number) {
                QThread::msleep(1);
            }
            stopped = stop.stop_requested();
            return [this, number] { delivered.append(number); };
        };
    }
    template <typename Condition>
    void WaitFor(Condition condition) {
        QElapsedTimer clock;
        clock.start();
        while (!condition() && clock.elapsed() < 20000) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        }
        ASSERT_TRUE(condition());
    }

    std::atomic<int> begun = 0;
    std::atomic<int> released = 0;
    std::atomic<bool> stopped = false;
    QList<int> delivered;
    LatestWorker worker;
};

TEST_F(Latest, OnlyTheNewestOfManyRequestsIsAnswered) {
    released = 9;
    worker.Submit(Held(10));
    WaitFor([&] { return begun == 10; });
    worker.Submit(Held(7));
    worker.Submit(Held(8));
    EXPECT_TRUE(worker.IsReplaced());
    WaitFor([&] { return !worker.IsBusy(); });
    EXPECT_EQ(delivered, QList<int>{8}) << "the running one was stopped, the waiting one replaced";
}

TEST_F(Latest, AnOlderAnswerCanBeDeliveredFirst) {
    worker.Submit(Held(1));
    worker.Submit(Held(2), LatestWorker::Older::Delivered);
    worker.Submit(Held(3), LatestWorker::Older::Delivered);
    EXPECT_FALSE(worker.IsReplaced());
    released = 3;
    WaitFor([&] { return !worker.IsBusy(); });
    EXPECT_EQ(delivered, (QList<int>{1, 3}));
}

TEST_F(Latest, WhatIsForgottenIsStoppedAndNeverDelivered) {
    worker.Submit(Held(1));
    worker.Submit(Held(2), LatestWorker::Older::Delivered);
    WaitFor([&] { return begun == 1; });
    worker.Forget();
    WaitFor([&] { return !worker.IsBusy(); });
    EXPECT_TRUE(stopped);
    EXPECT_TRUE(delivered.isEmpty());
    {
        LatestWorker gone;
        gone.Submit(Held(5));
    }
    QCoreApplication::processEvents();
    EXPECT_TRUE(delivered.isEmpty()) << "nothing comes from a worker that has gone";
}

}  // namespace
}  // namespace lumirra
