// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Files/PosixFileTree.h"
#include "Services/Git/GitQueries.h"
#include "support/FakeClock.h"
#include "support/FakeProcessRunner.h"
#include "Target.h"

#include <QRegularExpression>

#include <regex.h>

using namespace velquarin;
using namespace velquarin::fuzz;

namespace {

const QString folder = QStringLiteral("/somewhere");

// What git is asked for the newest commit, when it says that its configuration holds this: the pattern for its author, or
// nothing.
QString patternFor(const QByteArray &configuration)
{
    test::FakeProcessRunner runner;
    const test::FakeClock clock;
    const PosixFileTree files;
    GitQueries git(runner, files, clock, {});
    runner.answer(QStringLiteral("config -z --get-regexp ^(user|author|velquarin)\\.email$"), configuration);
    git.count({CountedAuthors::Me, CountedBranches::Default});
    try {
        static_cast<void>(git.getLastCommitDate(folder));
    } catch (const LaunchError &) {
        // The command that has no answer is what is looked at.
    }
    const auto last = runner.requests().constLast().arguments.constLast();
    const QString option = QStringLiteral("--author=");
    return last.startsWith(option) ? last.mid(option.size()) : QString();
}

// The addresses in it, slowly.
QStringList addressesIn(const QByteArray &configuration)
{
    QStringList addresses;
    for (const auto &entry : configuration.split('\0')) {
        const auto value = entry.mid(entry.indexOf('\n') + 1);
        const bool isText = QUtf8StringView(value).isValidUtf8();
        const auto address = QString::fromUtf8(value);
        const bool isOne = entry.contains('\n') && isText && !value.isEmpty() && value.size() <= 320;
        if (isOne && address.indexOf(QRegularExpression(QStringLiteral("[<>\r\n]"))) < 0)
            addresses << address;
    }
    return addresses;
}

// As git compares a pattern with the author of a commit.
bool fits(const QString &pattern, const QByteArray &author)
{
    regex_t expression;
    if (regcomp(&expression, pattern.toUtf8().constData(), REG_ICASE | REG_NEWLINE) != 0)
        return false;
    const bool isFound = regexec(&expression, author.constData(), 0, nullptr, 0) == 0;
    regfree(&expression);
    return isFound;
}

}  // namespace

// The addresses go into a pattern that fits each of them, and nobody else.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto configuration = bytes(data, size);
    const auto addresses = addressesIn(configuration);
    const auto pattern = patternFor(configuration);
    require(pattern.isEmpty() == addresses.isEmpty(), "where there is an address, authors are told apart");
    for (const auto &address : addresses) {
        const auto utf8 = address.toUtf8();
        require(fits(pattern, "Name <" + utf8 + '>'), "an address fits itself");
        for (const auto &other : {address + u'x', u'x' + address}) {
            const bool isKnown = addresses.contains(other, Qt::CaseInsensitive);
            require(isKnown || !fits(pattern, "Name <" + other.toUtf8() + '>'), "an address fits no other");
            require(isKnown || !fits(pattern, "Name <" + other.toUtf8() + "> <" + utf8 + '>'), "the first one counts");
        }
    }
    return 0;
}
