// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Files/ConfigHome.h"
#include "Platform/Linux/Preferences/JsonPreferencesStore.h"

#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QTest>

using namespace velquarin;
using namespace Qt::StringLiterals;

class TestConfigHome : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { test::failOnAnyWarning(); }
    void aRelativeOrEmptyVariableIsIgnored_data();
    void aRelativeOrEmptyVariableIsIgnored();
    void thePreferencesLieBelowIt();
};

void TestConfigHome::aRelativeOrEmptyVariableIsIgnored_data()
{
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("home");
    QTest::addColumn<QString>("folder");
    QTest::newRow("an absolute one counts") << u"/etc/ann"_s << u"/home/ann"_s << u"/etc/ann"_s;
    QTest::newRow("an empty one does not") << u""_s << u"/home/ann"_s << u"/home/ann/.config"_s;
    QTest::newRow("a relative one does not") << u"config"_s << u"/home/ann"_s << u"/home/ann/.config"_s;
    QTest::newRow("one that starts with a dot does not") << u"./config"_s << u"/home/ann"_s << u"/home/ann/.config"_s;
    QTest::newRow("a home in the root makes no double slash") << u""_s << u"/"_s << u"/.config"_s;
}

void TestConfigHome::aRelativeOrEmptyVariableIsIgnored()
{
    QFETCH(QString, variable);
    QFETCH(QString, home);
    QTEST(configHome(variable, home), "folder");
}

void TestConfigHome::thePreferencesLieBelowIt()
{
    qputenv("HOME", "/home/ann");
    qputenv("XDG_CONFIG_HOME", "/etc/ann/");
    QCOMPARE(defaultPreferencesPath(), u"/etc/ann/velquarin/preferences.json"_s);
    qputenv("XDG_CONFIG_HOME", "here");
    QCOMPARE(defaultPreferencesPath(), u"/home/ann/.config/velquarin/preferences.json"_s);
    qunsetenv("XDG_CONFIG_HOME");
    QCOMPARE(defaultPreferencesPath(), u"/home/ann/.config/velquarin/preferences.json"_s);
}

VELQUARIN_TEST(TestConfigHome)
#include "tst_confighome.moc"
