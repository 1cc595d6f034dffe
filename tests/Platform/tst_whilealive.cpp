// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/WhileAlive.h"

#include "support/Await.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QPromise>
#include <QTest>

#include <memory>
#include <stdexcept>

using namespace velquarin;
using test::await;

namespace {

// Waits for an answer in a coroutine of its own, and notes down how that ended.
class Asker : public QObject
{
public:
    explicit Asker(QString &outcome)
        : m_outcome(outcome)
    {
    }

    QCoro::Task<> ask(QFuture<int> answer)
    {
        try {
            m_outcome = QString::number(co_await answerTo(answer));
        } catch (const std::runtime_error &error) {
            m_outcome = QString::fromUtf8(error.what());
        }
    }

    QCoro::Task<> wait(QFuture<void> end)
    {
        co_await whileAlive(this, end);
        m_outcome = QStringLiteral("ended");
    }

private:
    QCoro::Task<int> answerTo(QFuture<int> answer) { co_return co_await whileAlive(this, answer); }

    QString &m_outcome;
};

}  // namespace

class TestWhileAlive : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { test::failOnAnyWarning(); }
    void givesWhatWasAwaited();
    void givesTheErrorOfWhatWasAwaited();
    void goesOnAfterWhatGivesNothing();
    void endsWhoeverWaitsOnceTheOwnerIsGone_data();
    void endsWhoeverWaitsOnceTheOwnerIsGone();
};

void TestWhileAlive::givesWhatWasAwaited()
{
    QString outcome;
    Asker asker(outcome);
    QPromise<int> answer;
    answer.start();
    const auto asked = asker.ask(answer.future());
    QVERIFY(!asked.isReady());
    answer.addResult(7);
    answer.finish();
    await(asked);
    QCOMPARE(outcome, QStringLiteral("7"));
}

void TestWhileAlive::givesTheErrorOfWhatWasAwaited()
{
    QString outcome;
    Asker asker(outcome);
    QPromise<int> answer;
    answer.start();
    const auto asked = asker.ask(answer.future());
    answer.setException(std::make_exception_ptr(std::runtime_error("nobody knows")));
    answer.finish();
    await(asked);
    QCOMPARE(outcome, QStringLiteral("nobody knows"));
}

void TestWhileAlive::goesOnAfterWhatGivesNothing()
{
    QString outcome;
    Asker asker(outcome);
    QPromise<void> end;
    end.start();
    const auto waiting = asker.wait(end.future());
    end.finish();
    await(waiting);
    QCOMPARE(outcome, QStringLiteral("ended"));
}

void TestWhileAlive::endsWhoeverWaitsOnceTheOwnerIsGone_data()
{
    QTest::addColumn<bool>("isAnswered");
    QTest::newRow("an answer") << true;
    QTest::newRow("an error") << false;
}

void TestWhileAlive::endsWhoeverWaitsOnceTheOwnerIsGone()
{
    QFETCH(const bool, isAnswered);
    QString outcome;
    auto asker = std::make_unique<Asker>(outcome);
    QPromise<int> answer;
    answer.start();
    const auto asked = asker->ask(answer.future());
    asker.reset();
    if (isAnswered)
        answer.addResult(7);
    else
        answer.setException(std::make_exception_ptr(std::runtime_error("nobody knows")));
    answer.finish();
    await(asked);
    QVERIFY(outcome.isEmpty());
}

VELQUARIN_TEST(TestWhileAlive)
#include "tst_whilealive.moc"
