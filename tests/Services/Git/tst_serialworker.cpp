// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/SerialWorker.h"

#include "support/Await.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QTest>
#include <QThread>

#include <latch>
#include <numeric>
#include <set>
#include <vector>

using namespace velquarin;
using namespace velquarin::test;
using namespace std::chrono_literals;

class TestSerialWorker : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void jobsRunInOrderOnOneOtherThread();
    void resultsArriveOnTheOwnersThread();
    void errorsKeepTheirType();
    void jobsThatNeverBeganEndWithTheirOwnError();
    void aStoppedWorkerTakesNoJobs();
    void whatWasDoneIsSettledWhenTheWorkerGoes();
};

void TestSerialWorker::jobsRunInOrderOnOneOtherThread()
{
    SerialWorker worker;
    std::vector<int> order;
    std::set<std::thread::id> threads;
    QFuture<bool> last;
    for (int number = 0; number < 1000; ++number) {
        last = worker.run([&, number] {
            order.push_back(number);
            threads.insert(std::this_thread::get_id());
            return true;
        });
    }
    await(last);
    std::vector<int> expected(1000);
    std::iota(expected.begin(), expected.end(), 0);
    QCOMPARE(order, expected);
    QCOMPARE(threads.size(), std::size_t(1));
    QVERIFY(!threads.contains(std::this_thread::get_id()));
}

void TestSerialWorker::resultsArriveOnTheOwnersThread()
{
    SerialWorker worker;
    const auto future = worker.run([] { return 42; });
    // Settling needs the event loop, so without it nothing has arrived, however quick the job was.
    QVERIFY(!future.isFinished());
    QCOMPARE(await(future), 42);
}

void TestSerialWorker::errorsKeepTheirType()
{
    SerialWorker worker;
    const auto failing = worker.run([]() -> int { throw std::out_of_range("too far"); });
    try {
        await(failing);
        QFAIL("no error came");
    } catch (const std::out_of_range &error) {
        QCOMPARE(QByteArray(error.what()), QByteArray("too far"));
    }
    QCOMPARE(await(worker.run([] { return 1; })), 1);
}

void TestSerialWorker::jobsThatNeverBeganEndWithTheirOwnError()
{
    SerialWorker worker;
    std::latch hasBegun(1);
    std::latch mayEnd(1);
    const auto running = worker.run([&] {
        hasBegun.count_down();
        mayEnd.wait();
        return 1;
    });
    const auto waiting = worker.run([] { return 2; });
    hasBegun.wait();
    QVERIFY(!worker.stop(0ms));
    QVERIFY_THROWS_EXCEPTION(WorkerStopped, await(waiting));
    mayEnd.count_down();
    QVERIFY(worker.stop(60s));
    QCOMPARE(await(running), 1);
}

void TestSerialWorker::aStoppedWorkerTakesNoJobs()
{
    SerialWorker worker;
    QVERIFY(worker.stop(60s));
    QVERIFY_THROWS_EXCEPTION(WorkerStopped, await(worker.run([] { return 1; })));
}

void TestSerialWorker::whatWasDoneIsSettledWhenTheWorkerGoes()
{
    QFuture<int> future;
    {
        SerialWorker worker;
        std::latch isDone(1);
        future = worker.run([&isDone] {
            isDone.count_down();
            return 7;
        });
        isDone.wait();
    }
    QCOMPARE(future.result(), 7);
}

VELQUARIN_TEST(TestSerialWorker)
#include "tst_serialworker.moc"
