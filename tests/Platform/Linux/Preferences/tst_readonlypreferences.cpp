// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Preferences/ReadOnlyPreferences.h"

#include "Models/AppSettings.h"
#include "support/Files.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <sys/stat.h>

using namespace velquarin;
using namespace velquarin::test;

class TestReadOnlyPreferences : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        failOnAnyWarning();
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath(QStringLiteral("preferences.json"));
    }
    void whatIsStoredIsRead();
    void whatIsSetStaysInMemory();
    void aMissingFileIsEmpty();
    void whatIsNoFileIsAFailure_data();
    void whatIsNoFileIsAFailure();
    void aValueThatCannotBeReadIsAFailure();
    void aDamagedFileIsAFailureAndStaysWhereItIs();
    void aFileThatMayNotBeReadIsAFailure();
    void aLinkIsFollowed();

private:
    [[nodiscard]] QStringList names() const
    {
        return QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
};

void TestReadOnlyPreferences::whatIsStoredIsRead()
{
    writeFile(m_path, R"({"refreshInterval": 60, "autoDiscoveryEnabled": false, "watchedFolders": {"data": "[]"}})");
    const ReadOnlyPreferences preferences(m_path);
    QCOMPARE(preferences.failure(), std::nullopt);
    QVERIFY(preferences.value(QStringLiteral("refreshInterval")) == PreferenceValue(60.0));
    QVERIFY(preferences.value(QStringLiteral("autoDiscoveryEnabled")) == PreferenceValue(false));
    QVERIFY(preferences.value(QStringLiteral("watchedFolders")) == PreferenceValue(QByteArray("[]")));
    QVERIFY(!preferences.value(QStringLiteral("nothing")));
}

void TestReadOnlyPreferences::whatIsSetStaysInMemory()
{
    const QByteArray text = R"({"refreshInterval": 60, "nothing": 1})";
    writeFile(m_path, text);
    {
        ReadOnlyPreferences preferences(m_path);
        preferences.set(QStringLiteral("refreshInterval"), 90.0);
        preferences.remove(QStringLiteral("nothing"));
        QVERIFY(preferences.takeOverChanges().isFinished());
        QVERIFY(preferences.value(QStringLiteral("refreshInterval")) == PreferenceValue(90.0));
        QVERIFY(!preferences.value(QStringLiteral("nothing")));
    }
    QCOMPARE(readFile(m_path), text);
    QCOMPARE(names(), QStringList(QStringLiteral("preferences.json")));
}

void TestReadOnlyPreferences::aMissingFileIsEmpty()
{
    const ReadOnlyPreferences preferences(m_folder->filePath(QStringLiteral("no/such/file")));
    QCOMPARE(preferences.failure(), std::nullopt);
    QVERIFY(!preferences.value(QStringLiteral("refreshInterval")));
    QCOMPARE(names(), QStringList());
}

void TestReadOnlyPreferences::whatIsNoFileIsAFailure_data()
{
    QTest::addColumn<bool>("isFifo");
    QTest::newRow("a fifo, which nobody waits for") << true;
    QTest::newRow("a folder") << false;
}

void TestReadOnlyPreferences::whatIsNoFileIsAFailure()
{
    QFETCH(bool, isFifo);
    const auto name = QFile::encodeName(m_path);
    QCOMPARE(isFifo ? mkfifo(name.constData(), 0600) : mkdir(name.constData(), 0700), 0);
    const ReadOnlyPreferences preferences(m_path);
    QCOMPARE(preferences.failure(), QString(m_path + QStringLiteral(" is no file.")));
    QVERIFY(!preferences.value(QStringLiteral("refreshInterval")));
}

void TestReadOnlyPreferences::aValueThatCannotBeReadIsAFailure()
{
    writeFile(m_path, R"({"trackedRepositories": 5})");
    ReadOnlyPreferences preferences(m_path);
    QCOMPARE(preferences.failure(), std::nullopt);
    const AppSettings settings(preferences);
    QCOMPARE(preferences.failure(), QString(m_path + QStringLiteral(" holds a value that cannot be read.")));
    QCOMPARE(names(), QStringList(QStringLiteral("preferences.json")));
}

void TestReadOnlyPreferences::aDamagedFileIsAFailureAndStaysWhereItIs()
{
    writeFile(m_path, "{\"refreshInterval\": 60");
    const ReadOnlyPreferences preferences(m_path);
    QCOMPARE(preferences.failure(), QString(m_path + QStringLiteral(" is damaged.")));
    QCOMPARE(names(), QStringList(QStringLiteral("preferences.json")));
}

void TestReadOnlyPreferences::aFileThatMayNotBeReadIsAFailure()
{
    // Nobody may go through a folder that links to itself, whoever they are.
    QVERIFY(QFile::link(m_folder->filePath(QStringLiteral("circle")), m_folder->filePath(QStringLiteral("circle"))));
    const auto path = m_folder->filePath(QStringLiteral("circle/preferences.json"));
    const ReadOnlyPreferences preferences(path);
    QVERIFY(preferences.failure());
    QVERIFY2(preferences.failure()->startsWith(path + QStringLiteral(" cannot be read: ")),
             qPrintable(*preferences.failure()));
}

void TestReadOnlyPreferences::aLinkIsFollowed()
{
    writeFile(m_path, R"({"refreshInterval": 60})");
    const auto link = m_folder->filePath(QStringLiteral("link.json"));
    QVERIFY(QFile::link(m_path, link));
    const ReadOnlyPreferences preferences(link);
    QVERIFY(preferences.value(QStringLiteral("refreshInterval")) == PreferenceValue(60.0));
}

VELQUARIN_TEST(TestReadOnlyPreferences)
#include "tst_readonlypreferences.moc"
