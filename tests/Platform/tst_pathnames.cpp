// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/PathNames.h"

#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QTest>

using namespace velquarin;
using namespace Qt::StringLiterals;

class TestPathNames : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { test::failOnAnyWarning(); }
    void theNameIsTheLastComponent_data();
    void theNameIsTheLastComponent();
    void oneSlashStandsBetweenFolderAndName_data();
    void oneSlashStandsBetweenFolderAndName();
};

void TestPathNames::theNameIsTheLastComponent_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::newRow("of a plain path") << u"/home/ann/repo"_s << u"repo"_s;
    QTest::newRow("without a trailing slash") << u"/home/ann/repo/"_s << u"repo"_s;
    QTest::newRow("without many trailing slashes") << u"/home/ann/repo///"_s << u"repo"_s;
    QTest::newRow("after doubled slashes") << u"/home//repo"_s << u"repo"_s;
    QTest::newRow("right below the root") << u"/repo"_s << u"repo"_s;
    QTest::newRow("of the root is the root") << u"/"_s << u"/"_s;
    QTest::newRow("of nothing but slashes is the root") << u"///"_s << u"/"_s;
    QTest::newRow("of an empty path is empty") << u""_s << u""_s;
    QTest::newRow("of a bare name is that name") << u"repo"_s << u"repo"_s;
    QTest::newRow("of a bare name with a slash is that name") << u"repo/"_s << u"repo"_s;
    QTest::newRow("keeps dots") << u"/home/ann/.dotfiles.git"_s << u".dotfiles.git"_s;
    QTest::newRow("is not looked up where it is two dots") << u"/home/ann/.."_s << u".."_s;
    QTest::newRow("keeps spaces and percent signs") << u"/home/ann/a b%20c"_s << u"a b%20c"_s;
    QTest::newRow("keeps letters of any script") << u"/home/ann/Größe 🔥"_s << u"Größe 🔥"_s;
}

void TestPathNames::theNameIsTheLastComponent()
{
    QFETCH(QString, path);
    QTEST(lastPathComponent(path), "name");
}

void TestPathNames::oneSlashStandsBetweenFolderAndName_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("joined");
    QTest::newRow("where neither brings one") << u"/home/ann"_s << u"repo"_s << u"/home/ann/repo"_s;
    QTest::newRow("where the folder brings one") << u"/home/ann/"_s << u"repo"_s << u"/home/ann/repo"_s;
    QTest::newRow("where both bring one") << u"/home/ann/"_s << u"/repo"_s << u"/home/ann/repo"_s;
    QTest::newRow("where the folder brings many") << u"/home/ann//"_s << u"repo"_s << u"/home/ann/repo"_s;
    QTest::newRow("below the root") << u"/"_s << u"repo"_s << u"/repo"_s;
    QTest::newRow("and none where the folder is empty") << u""_s << u"repo"_s << u"repo"_s;
    QTest::newRow("and none where the name is empty") << u"/home/ann"_s << u""_s << u"/home/ann"_s;
    QTest::newRow("and the slashes inside of the name stay") << u"/home"_s << u"ann/repo"_s << u"/home/ann/repo"_s;
}

void TestPathNames::oneSlashStandsBetweenFolderAndName()
{
    QFETCH(QString, folder);
    QFETCH(QString, name);
    QTEST(joinPath(folder, name), "joined");
}

VELQUARIN_TEST(TestPathNames)
#include "tst_pathnames.moc"
