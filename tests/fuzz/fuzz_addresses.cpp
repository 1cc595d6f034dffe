// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Files/PosixFileTree.h"
#include "Services/Git/GitQueries.h"
#include "support/FakeClock.h"
#include "support/FakeProcessRunner.h"
#include "Target.h"

#include <regex.h>

using namespace velquarin;
using namespace velquarin::fuzz;

namespace {

const QString folder = QStringLiteral("/somewhere");

// What git is asked for the newest commit, when it says that its configuration holds this.
struct Asked
{
    explicit Asked(const QByteArray &configuration)
    {
        test::FakeProcessRunner runner;
        const test::FakeClock clock;
        const PosixFileTree files;
        GitQueries git(runner, files, clock, {});
        const QString last = QStringLiteral("log HEAD -1 --format=%aI");
        runner.answer(QStringLiteral("config -z --get-regexp ^(user|author|velquarin)\\.email$"), configuration);
        git.count({CountedAuthors::Me, CountedBranches::Default});
        addresses = git.getAddresses(folder);
        try {
            static_cast<void>(git.getLastCommitDate(folder));
        } catch (const LaunchError &) {
            // The command that has no answer is what is looked at.
        }
        arguments = runner.requests().constLast().arguments;
    }

    QStringList addresses;
    QStringList arguments;
};

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

void requireOf(const QString &address, const QString &argument)
{
    const QString option = QStringLiteral("--author=");
    const auto utf8 = address.toUtf8();
    require(utf8.size() <= 320 && address.indexOf(u'<') < 0 && address.indexOf(u'>') < 0 && address.indexOf(u'\n') < 0,
            "an address may be an author's");
    require(argument.startsWith(option), "an address is no option of its own");
    const auto pattern = argument.mid(option.size());
    require(fits(pattern, "Name <" + utf8 + '>'), "an address fits itself");
    require(!fits(pattern, "Name <" + utf8 + "x>") && !fits(pattern, "Name <x" + utf8 + '>') &&
                !fits(pattern, "Name <" + utf8 + "x> <" + utf8 + '>'),
            "an address fits no other");
}

}  // namespace

// Each address goes into a pattern that fits it alone.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const Asked asked(bytes(data, size));
    require(asked.addresses.size() <= 256, "there are no more addresses than people have");
    const auto patterns = asked.arguments.mid(asked.arguments.size() - asked.addresses.size());
    for (qsizetype number = 0; number < asked.addresses.size(); ++number)
        requireOf(asked.addresses.at(number), patterns.at(number));
    return 0;
}
