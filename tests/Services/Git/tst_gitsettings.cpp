// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "hostile/Readings.h"
#include "support/Extent.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QRegularExpression>
#include <QSet>
#include <QTest>

using namespace velquarin;
using namespace velquarin::test;

namespace {

// Every setting that the installed git knows, as "section.key" or "section.name.key"; a newer git knows more of them.
// Source: git-help(1), --config
QStringList allSettings(const HostileRepository &repository)
{
    static const QRegularExpression placeholder(QStringLiteral("<[^>]*>|\\*"));
    auto settings = QString::fromUtf8(repository.git("help --config")).split(u'\n').filter(QStringLiteral("."));
    settings.replaceInStrings(placeholder, QStringLiteral("origin"));
    settings.removeIf([](const QString &setting) { return setting.contains(u' '); });
    settings.removeDuplicates();
    return settings;
}

// Every day those that by their names take a program or an address, and of each section the first. The others are like
// them: what they mean to git is in the sections that are tried, and the whole run has them all.
QStringList settingsToTry(const QStringList &all)
{
    static const QRegularExpression telling(
        QStringLiteral(
            "program|command|cmd|hook|helper|pager|editor|askpass|proxy|monitor|pack$|textconv|driver|vcs|path|url"),
        QRegularExpression::CaseInsensitiveOption);
    QSet<QString> sections;
    QStringList chosen;
    for (const auto &setting : all) {
        const auto section = setting.section(u'.', 0, 0);
        if (wholeRun() || !sections.contains(section) || setting.section(u'.', 1).contains(telling))
            chosen << setting;
        sections << section;
    }
    return chosen;
}

// "a.b.c" as git's configuration files have it: [a "b"] and, in a line of its own, c = value.
QByteArray asConfiguration(const QString &setting, const QString &value)
{
    const auto section = setting.section(u'.', 0, 0);
    const auto name = setting.section(u'.', 1, -2);
    const auto title = name.isEmpty() ? section : section + QStringLiteral(" \"") + name + u'"';
    return QStringLiteral("\n[%1]\n%2 = \"%3\"\n").arg(title, setting.section(u'.', -1), value).toUtf8();
}

}  // namespace

class TestGitSettings : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void noSettingByItselfRunsAProgram_data();
    void noSettingByItselfRunsAProgram();
};

void TestGitSettings::noSettingByItselfRunsAProgram_data()
{
    QTest::addColumn<bool>("isSigned");
    QTest::addColumn<QString>("dangerous");
    QTest::newRow("where a commit is signed") << true << QStringLiteral("gpg.program");
    QTest::newRow("where a commit is missing") << false << QStringLiteral("remote.origin.uploadpack");
}

// Without confinement, so that only the environment stands between the setting and the program.
void TestGitSettings::noSettingByItselfRunsAProgram()
{
    QFETCH(bool, isSigned);
    QFETCH(QString, dangerous);
    HostileRepository repository;
    if (isSigned)
        repository.addSignedCommit("PGP SIGNATURE");
    else
        repository.promise("main", QStringLiteral("/"));
    repository.configure("[log]\nshowSignature = true\n[hook \"origin\"]\nevent = reference-transaction");
    const auto settings = allSettings(repository);
    const auto configuration = readFile(repository.file(QStringLiteral(".git/config")));
    QVERIFY(settings.contains(dangerous));
    repository.write(QStringLiteral(".git/config"), configuration + asConfiguration(dangerous, repository.program()));
    NaiveReader::read(repository.path());
    QVERIFY(repository.programWasRun() && QFile::remove(repository.marker()));

    SystemService service(Confinement::Missing);
    for (const auto &setting : settingsToTry(settings)) {
        repository.write(QStringLiteral(".git/config"), configuration + asConfiguration(setting, repository.program()));
        QVERIFY2(answerOf(getLastCommitDate(service.git, repository.path())), qPrintable(setting));
        QVERIFY2(!repository.programWasRun(), qPrintable(setting));
    }
}

VELQUARIN_TEST(TestGitSettings)
#include "tst_gitsettings.moc"
