// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Autostart/AutostartEntry.h"

#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QProcessEnvironment>
#include <QTest>

#include <utility>

using namespace velquarin;
using namespace Qt::StringLiterals;

namespace {

const QString program = u"/opt/velquarin/bin/velquarin"_s;

// A machine on which exactly these programs are, seen from KDE on a distribution of its own name.
struct Machine
{
    QStringList programs{program, u"/bin/true"_s};
    QStringList desktop{u"Neon"_s, u"KDE"_s};

    [[nodiscard]] LoginItemStatus statusOf(const QByteArray &content) const
    {
        const AutostartEnvironment environment{{}, {}, desktop, {u"/usr/bin"_s, u"/bin"_s}, program};
        return autostartStatus(content, environment, [this](const QString &path) { return programs.contains(path); });
    }
};

QByteArray entry(const QByteArray &keys)
{
    return "[Desktop Entry]\n" + keys;
}

QByteArray usualEntryAnd(const QByteArray &keys)
{
    return entry("Type=Application\nName=Velquarin\nExec=" + program.toUtf8() + '\n' + keys);
}

const char *nameOf(LoginItemStatus status)
{
    switch (status) {
    case LoginItemStatus::Enabled:
        return "enabled";
    case LoginItemStatus::NotRegistered:
        return "not registered";
    case LoginItemStatus::RequiresApproval:
        return "requires approval";
    case LoginItemStatus::NotFound:
        return "not found";
    }
    return "";
}

void statusRow(const char *sentence, const QByteArray &content, const char *status)
{
    QTest::newRow(sentence) << content << QByteArray(status);
}

QProcessEnvironment variables(const QList<std::pair<QString, QString>> &values)
{
    QProcessEnvironment environment(QProcessEnvironment::Initialization{});
    for (const auto &[name, value] : values)
        environment.insert(name, value);
    return environment;
}

}  // namespace

class TestAutostartEntry : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { test::failOnAnyWarning(); }
    void anEntryThatStartsAProgramIs_data();
    void anEntryThatStartsAProgramIs();
    void theDesktopDecidesWhetherAnEntryIsForIt_data();
    void theDesktopDecidesWhetherAnEntryIsForIt();
    void theCommandNames_data();
    void theCommandNames();
    void aProgramIsFoundWhereItIsNamed_data();
    void aProgramIsFoundWhereItIsNamed();
    void aStringHolds_data();
    void aStringHolds();
    void aListHolds_data();
    void aListHolds();
    void aProgramIsQuotedWhereItHasToBe_data();
    void aProgramIsQuotedWhereItHasToBe();
    void whatIsQuotedIsReadBackWhateverItsLetters();
    void onlyUnusualPathsAreReadInTwoWays_data();
    void onlyUnusualPathsAreReadInTwoWays();
    void whatWeWriteIsThisAndNoMore();
    void whatWeWriteIsEnabledOnEveryDesktop();
    void whatWeHideIsNotRegisteredOnAnyDesktop();
    void cuttingWhatWeWriteShortNeverStartsAnotherProgram();
    void theEnvironmentSays_data();
    void theEnvironmentSays();
};

void TestAutostartEntry::anEntryThatStartsAProgramIs_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("status");
    const auto full = [](const QByteArray &keys) { return usualEntryAnd(keys); };
    const auto exec = program.toUtf8();

    statusRow("enabled when nothing speaks against it", full(""), "enabled");
    statusRow("enabled when the last line has no end", full("Terminal=false"), "enabled");
    statusRow("not registered when it is hidden", full("Hidden=true\n"), "not registered");
    statusRow("not registered when it is hidden in the old way", full("Hidden=1\n"), "not registered");
    statusRow("enabled when it is said not to be hidden", full("Hidden=false\n"), "enabled");
    statusRow("enabled when it is said not to be hidden in the old way", full("Hidden=0\n"), "enabled");
    statusRow("enabled when hidden has large letters", full("Hidden=True\n"), "enabled");
    statusRow("enabled when hidden has no value", full("Hidden=\n"), "enabled");
    statusRow("not registered when hidden is followed by blanks", full("Hidden=true \t\n"), "not registered");
    statusRow("not registered when its lines end as on other systems", full("Hidden=true\r\n"), "not registered");
    statusRow("requires approval when GNOME has switched it off", full("X-GNOME-Autostart-enabled=false\n"),
              "requires approval");
    statusRow("requires approval when it is off in the old way", full("X-GNOME-Autostart-enabled=0\n"),
              "requires approval");
    statusRow("enabled when GNOME has switched it on", full("X-GNOME-Autostart-enabled=true\n"), "enabled");
    statusRow("requires approval when MATE has switched it off", full("X-MATE-Autostart-enabled=false\n"),
              "requires approval");
    statusRow("enabled when MATE has switched it on", full("X-MATE-Autostart-enabled=true\n"), "enabled");
    statusRow("requires approval when one of two has switched it off",
              full("X-GNOME-Autostart-enabled=true\nX-MATE-Autostart-enabled=false\n"), "requires approval");
    statusRow("not registered when it is hidden and switched off",
              full("Hidden=true\nX-GNOME-Autostart-enabled=false\n"), "not registered");
    statusRow("not found when it is switched on and starts nothing",
              entry("Type=Application\nX-GNOME-Autostart-enabled=true\n"), "not found");

    statusRow("enabled when the program to try is there", full("TryExec=true\n"), "enabled");
    statusRow("enabled when the program to try has no name", full("TryExec=\n"), "enabled");
    statusRow("not found when the program to try is missing", full("TryExec=/bin/missing\n"), "not found");
    statusRow("not found when its program is missing", entry("Type=Application\nExec=/bin/missing\n"), "not found");
    statusRow("not found without a command", entry("Type=Application\n"), "not found");
    statusRow("not found when the command is empty", entry("Type=Application\nExec=\n"), "not found");
    statusRow("not found when the command is in no language of ours", entry("Type=Application\nExec[de]=true\n"),
              "not found");
    statusRow("not found when the command is no text", entry("Type=Application\nExec=/bin/true \xff\n"), "not found");
    statusRow("enabled when a name is no text", full("GenericName=\xff\n"), "enabled");
    statusRow("enabled when another program than ours is there", entry("Type=Application\nExec=true\n"), "enabled");

    statusRow("not found without a type", entry("Exec=" + exec + '\n'), "not found");
    statusRow("not found when it is a link", entry("Type=Link\nURL=/\nExec=" + exec + '\n'), "not found");

    statusRow("not found when the file is empty", "", "not found");
    statusRow("not found when the file is zeroes", QByteArray(512, '\0'), "not found");
    statusRow("not found when there is a comment alone", "# nothing\n", "not found");
    statusRow("not found when a line is neither key nor group", full("what is this\n"), "not found");
    statusRow("not found when a key has no name", full("=what\n"), "not found");
    statusRow("not found when a group has no name", full("[]\n"), "not found");
    statusRow("not found when a group is not closed", full("[Another\n"), "not found");
    statusRow("not found when a key comes before the group", "Name=Velquarin\n" + full(""), "not found");
    statusRow("not found when another group comes first", "[Another]\nA=b\n" + full(""), "not found");
    statusRow("not found when the group's name has small letters",
              "[desktop entry]\nType=Application\nExec=" + exec + '\n', "not found");

    statusRow("enabled below comments and empty lines", "\n# one\n\n #two\n" + full(""), "enabled");
    statusRow("enabled with blanks around the equals signs", entry("Type = Application\nExec\t=  " + exec + " \n"),
              "enabled");
    statusRow("enabled when another group is hidden", full("[Desktop Action quit]\nHidden=true\n"), "enabled");
    statusRow("not found when the command is in another group",
              entry("Type=Application\n[Desktop Action new]\nExec=" + exec + '\n'), "not found");
    statusRow("not registered when the group goes on further down",
              full("[Another]\nA=b\n[Desktop Entry]\nHidden=true\n"), "not registered");
    statusRow("not registered when the last of two says so", full("Hidden=false\nHidden=true\n"), "not registered");
    statusRow("enabled when the last of two says so", full("Hidden=true\nHidden=false\n"), "enabled");
    statusRow("enabled when hidden is commented out", full("#Hidden=true\n"), "enabled");
    statusRow("enabled when hidden has a language", full("Hidden[de]=true\n"), "enabled");
    statusRow("enabled when hidden has small letters", full("hidden=true\n"), "enabled");
}

void TestAutostartEntry::anEntryThatStartsAProgramIs()
{
    QFETCH(QByteArray, content);
    QTEST(QByteArray(nameOf(Machine().statusOf(content))), "status");
}

void TestAutostartEntry::theDesktopDecidesWhetherAnEntryIsForIt_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<QStringList>("desktop");
    QTest::addColumn<bool>("isForIt");
    const QStringList kde{u"KDE"_s};
    const QStringList ubuntu{u"ubuntu"_s, u"GNOME"_s};
    QTest::newRow("an entry for all is for this one") << QByteArray() << kde << true;
    QTest::newRow("an entry for all is for one without a name") << QByteArray() << QStringList() << true;
    QTest::newRow("an entry for this one is") << QByteArray("OnlyShowIn=KDE;\n") << kde << true;
    QTest::newRow("an entry for several is for each") << QByteArray("OnlyShowIn=GNOME;KDE;XFCE\n") << kde << true;
    QTest::newRow("an entry for another is not") << QByteArray("OnlyShowIn=GNOME;\n") << kde << false;
    QTest::newRow("an entry for another is not for one without a name")
        << QByteArray("OnlyShowIn=GNOME;\n") << QStringList() << false;
    QTest::newRow("an entry for nobody is for nobody") << QByteArray("OnlyShowIn=\n") << kde << false;
    QTest::newRow("any of the desktop's names will do") << QByteArray("OnlyShowIn=GNOME;\n") << ubuntu << true;
    QTest::newRow("a name in small letters is another one") << QByteArray("OnlyShowIn=kde;\n") << kde << false;
    QTest::newRow("a part of a name is none") << QByteArray("OnlyShowIn=KDE4;\n") << kde << false;
    QTest::newRow("an entry for all but this one is not") << QByteArray("NotShowIn=KDE;\n") << kde << false;
    QTest::newRow("an entry for all but another one is") << QByteArray("NotShowIn=GNOME;\n") << kde << true;
    QTest::newRow("any of the desktop's names shuts out") << QByteArray("NotShowIn=GNOME;\n") << ubuntu << false;
    QTest::newRow("an entry for all but nobody is") << QByteArray("NotShowIn=\n") << kde << true;
    QTest::newRow("the better name lets in first")
        << QByteArray("OnlyShowIn=ubuntu;\nNotShowIn=GNOME;\n") << ubuntu << true;
    QTest::newRow("the better name shuts out first")
        << QByteArray("OnlyShowIn=GNOME;\nNotShowIn=ubuntu;\n") << ubuntu << false;
}

void TestAutostartEntry::theDesktopDecidesWhetherAnEntryIsForIt()
{
    QFETCH(QByteArray, keys);
    QFETCH(QStringList, desktop);
    QFETCH(bool, isForIt);
    const Machine here{.desktop = desktop};
    QCOMPARE(nameOf(here.statusOf(usualEntryAnd(keys))), isForIt ? "enabled" : "not registered");
}

void TestAutostartEntry::theCommandNames_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("expected");  // null where there is none
    QTest::newRow("a program by its name") << u"velquarin"_s << u"velquarin"_s;
    QTest::newRow("a program by its path") << u"/usr/bin/velquarin"_s << u"/usr/bin/velquarin"_s;
    QTest::newRow("the first of several words") << u"  nice -n 5 \tvelquarin "_s << u"nice"_s;
    QTest::newRow("a program in quotes") << u"\"/my programs/velquarin\" --flag"_s << u"/my programs/velquarin"_s;
    QTest::newRow("each sign that is escaped in quotes") << u"\"a\\\"b\\`c\\$d\\\\e\""_s << u"a\"b`c$d\\e"_s;
    QTest::newRow("a backslash in quotes that escapes nothing") << u"\"a\\b\""_s << u"a\\b"_s;
    QTest::newRow("a program in single quotes") << u"'/my programs/a\\b\"c' x"_s << u"/my programs/a\\b\"c"_s;
    QTest::newRow("a blank after a backslash") << u"/my\\ programs/velquarin"_s << u"/my programs/velquarin"_s;
    QTest::newRow("a word that is quoted in part") << u"/my\" \"programs/'vel'quarin"_s << u"/my programs/velquarin"_s;
    QTest::newRow("one per cent sign for two") << u"/100%%/velquarin %U"_s << u"/100%/velquarin"_s;
    QTest::newRow("a program beside codes of all kinds") << u"velquarin %f %F %u %U %i %c %k"_s << u"velquarin"_s;
    QTest::newRow("a program beside codes of old files") << u"velquarin %d %D %n %N %v %m"_s << u"velquarin"_s;
    QTest::newRow("an empty program in quotes") << u"\"\" x"_s << u""_s;
    QTest::newRow("a program as long as a file may be")
        << u"\"/"_s + u"a\\\""_s.repeated(300'000) + u'"' << u"/"_s + u"a\""_s.repeated(300'000);
    QTest::newRow("nothing when it is empty") << u""_s << QString();
    QTest::newRow("nothing when it is blank") << u" \t "_s << QString();
    QTest::newRow("nothing when a quote is not closed") << u"velquarin \"x"_s << QString();
    QTest::newRow("nothing when a single quote is not closed") << u"velquarin 'x"_s << QString();
    QTest::newRow("nothing when a backslash is the end") << u"velquarin \\"_s << QString();
    QTest::newRow("nothing beside a code that does not exist") << u"velquarin %x"_s << QString();
    QTest::newRow("nothing when a code has no letter") << u"velquarin 100%"_s << QString();
}

void TestAutostartEntry::theCommandNames()
{
    QFETCH(QString, command);
    QFETCH(QString, expected);
    const auto named = programOfExec(command);
    QCOMPARE(named.has_value(), !expected.isNull());
    QCOMPARE(named.value_or(QString()), expected);
}

void TestAutostartEntry::aProgramIsFoundWhereItIsNamed_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QString>("place");
    QTest::addColumn<bool>("isFound");
    const auto row = [](const char *sentence, const char *command, const QString &place, bool isFound) {
        QTest::newRow(sentence) << QByteArray(command) << place << isFound;
    };
    row("a name is found in the first folder", "velquarin", u"/usr/bin/velquarin"_s, true);
    row("a name is found in the last folder", "velquarin", u"/bin/velquarin"_s, true);
    row("a name is not found elsewhere", "velquarin", u"/opt/velquarin"_s, false);
    row("a path is found where it says", "/opt/velquarin", u"/opt/velquarin"_s, true);
    row("a path is not looked for in the folders", "/velquarin", u"/usr/bin/velquarin"_s, false);
    row("a relative path is not found", "bin/velquarin", u"/usr/bin/bin/velquarin"_s, false);
    row("a relative path with a dot is not found", "./velquarin", u"/usr/bin/./velquarin"_s, false);
    row("a tilde is no home folder", "~/velquarin", u"/home/ann/velquarin"_s, false);
    row("a variable is not replaced", R"("\\$HOME/velquarin")", u"/home/ann/velquarin"_s, false);
    row("an empty name is not a folder", "\"\"", u"/usr/bin/"_s, false);
    row("escaped blanks belong to the path", R"("/my\sprograms/v")", u"/my programs/v"_s, true);
    row("a backslash is written four times", R"("/a\\\\b/v")", u"/a\\b/v"_s, true);
    row("an escape that does not exist spoils the command", "/opt/\\velquarin", u"/opt/velquarin"_s, false);
}

void TestAutostartEntry::aProgramIsFoundWhereItIsNamed()
{
    QFETCH(QByteArray, command);
    QFETCH(QString, place);
    QFETCH(bool, isFound);
    const auto content = entry("Type=Application\nExec=" + command + '\n');
    QCOMPARE(nameOf(Machine{.programs = {place}}.statusOf(content)), isFound ? "enabled" : "not found");
}

void TestAutostartEntry::aStringHolds_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("expected");  // null where it cannot be read
    QTest::newRow("what it says") << QByteArray("a b=c;d#e") << u"a b=c;d#e"_s;
    QTest::newRow("nothing when there is nothing") << QByteArray("") << u""_s;
    QTest::newRow("letters of all languages") << QByteArray("grüße 火") << u"grüße 火"_s;
    QTest::newRow("every escape sequence") << QByteArray(R"(\sa\nb\tc\rd\\e\s)") << u" a\nb\tc\rd\\e "_s;
    QTest::newRow("a backslash before an escaped one's letter") << QByteArray("\\\\n") << u"\\n"_s;
    QTest::newRow("no escape sequence of another kind") << QByteArray("a\\qb") << QString();
    QTest::newRow("no escaped semicolon, which is for lists") << QByteArray("a\\;b") << QString();
    QTest::newRow("no backslash at the end") << QByteArray("a\\") << QString();
    QTest::newRow("no bytes that are no text") << QByteArray("a\xc3") << QString();
}

void TestAutostartEntry::aStringHolds()
{
    QFETCH(QByteArray, value);
    QFETCH(QString, expected);
    const auto parsed = parseDesktopEntry(entry("Key=" + value + '\n'));
    QVERIFY(parsed.has_value());
    const auto string = stringIn(parsed->value("Key"));
    QCOMPARE(string.has_value(), !expected.isNull());
    QCOMPARE(string.value_or(QString()), expected);
    QVERIFY(!stringIn(parsed->value("Another")).has_value());
}

void TestAutostartEntry::aListHolds_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("isReadable");
    QTest::addColumn<QStringList>("items");
    QTest::newRow("one item") << QByteArray("a") << true << QStringList{u"a"_s};
    QTest::newRow("one item that is ended") << QByteArray("a;") << true << QStringList{u"a"_s};
    QTest::newRow("two items") << QByteArray("a;b c;") << true << QStringList{u"a"_s, u"b c"_s};
    QTest::newRow("none") << QByteArray("") << true << QStringList();
    QTest::newRow("an escaped semicolon") << QByteArray("a\\;b;c") << true << QStringList{u"a;b"_s, u"c"_s};
    QTest::newRow("a semicolon after an escaped backslash")
        << QByteArray("a\\\\;b") << true << QStringList{u"a\\"_s, u"b"_s};
    QTest::newRow("nothing with an escape of another kind") << QByteArray("a\\q;b") << false << QStringList();
    QTest::newRow("nothing that is no text") << QByteArray("a;\xff") << false << QStringList();
}

void TestAutostartEntry::aListHolds()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, isReadable);
    const auto parsed = parseDesktopEntry(entry("Key=" + value + '\n'));
    QVERIFY(parsed.has_value());
    const auto list = listIn(parsed->value("Key"));
    QCOMPARE(list.has_value(), isReadable);
    QTEST(list.value_or(QStringList()), "items");
}

void TestAutostartEntry::aProgramIsQuotedWhereItHasToBe_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("inFile");
    QTest::newRow("a plain path is not") << u"/usr/bin/velquarin-1.0_x+y=z,@:"_s
                                         << QByteArray("/usr/bin/velquarin-1.0_x+y=z,@:");
    QTest::newRow("a path in another language is not") << u"/opt/grüße/火"_s << QByteArray("/opt/grüße/火");
    QTest::newRow("a blank is") << u"/my programs/v"_s << QByteArray("\"/my programs/v\"");
    QTest::newRow("a dollar sign is, with two backslashes") << u"/a$b"_s << QByteArray(R"("/a\\$b")");
    QTest::newRow("a backtick is, with two backslashes") << u"/a`b"_s << QByteArray(R"("/a\\`b")");
    QTest::newRow("a double quote is, with two backslashes") << u"/a\"b"_s << QByteArray(R"("/a\\"b")");
    QTest::newRow("a backslash becomes four") << u"/a\\b"_s << QByteArray(R"("/a\\\\b")");
    QTest::newRow("a single quote is") << u"/a'b"_s << QByteArray("\"/a'b\"");
    QTest::newRow("a tilde is") << u"/a~"_s << QByteArray("\"/a~\"");
    QTest::newRow("every other reserved sign is") << u"/><|&;*?#()"_s << QByteArray("\"/><|&;*?#()\"");
    QTest::newRow("a per cent sign becomes two") << u"/100%/v"_s << QByteArray("/100%%/v");
    QTest::newRow("a line's end stays on one line") << u"/a\nb"_s << QByteArray(R"("/a\nb")");
}

void TestAutostartEntry::aProgramIsQuotedWhereItHasToBe()
{
    QFETCH(QString, path);
    QTEST(execOfProgram(path), "inFile");
}

void TestAutostartEntry::whatIsQuotedIsReadBackWhateverItsLetters()
{
    for (char16_t letter = 1; letter < 0x180; ++letter) {
        for (const auto &path : {u"/a"_s + letter + u"b"_s, u"/"_s + letter, u"/"_s + letter + letter + u" x"_s}) {
            const auto content = "[Desktop Entry]\nExec=" + execOfProgram(path) + '\n';
            const auto parsed = parseDesktopEntry(content);
            QVERIFY2(parsed, content.constData());
            QCOMPARE(programOfExec(*stringIn(parsed->value("Exec"))), std::optional(path));
        }
    }
}

void TestAutostartEntry::onlyUnusualPathsAreReadInTwoWays_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("isReadAlike");
    QTest::newRow("a usual path is read alike") << program << true;
    QTest::newRow("blanks and quotes are read alike") << u"/my 'own' \"programs\"/$v`~;"_s << true;
    QTest::newRow("letters of all languages are read alike") << u"/grüße/火"_s << true;
    QTest::newRow("a per cent sign is not") << u"/100%/v"_s << false;
    QTest::newRow("a backslash is not") << u"/a\\b"_s << false;
    QTest::newRow("a tabulator is not") << u"/a\tb"_s << false;
    QTest::newRow("a line's end is not") << u"/a\nb"_s << false;
}

void TestAutostartEntry::onlyUnusualPathsAreReadInTwoWays()
{
    QFETCH(QString, path);
    QTEST(isReadAlikeInExec(path), "isReadAlike");
}

void TestAutostartEntry::whatWeWriteIsThisAndNoMore()
{
    const QByteArray common = "[Desktop Entry]\n"
                              "Type=Application\n"
                              "Name=Velquarin\n"
                              "Comment=Your commit streak in the status bar\n"
                              "Exec=/opt/velquarin/bin/velquarin\n"
                              "Icon=io.velquarin.Velquarin\n"
                              "Terminal=false\n";
    QCOMPARE(autostartEntry(program), common + "X-GNOME-Autostart-enabled=true\n");
    QCOMPARE(hiddenAutostartEntry(program), common + "Hidden=true\n");
}

void TestAutostartEntry::whatWeWriteIsEnabledOnEveryDesktop()
{
    for (const auto &desktop : {QStringList(), {u"GNOME"_s}, {u"X-Own"_s, u"XFCE"_s}}) {
        const Machine there{.desktop = desktop};
        QCOMPARE(nameOf(there.statusOf(autostartEntry(program))), "enabled");
    }
    QCOMPARE(nameOf(Machine{.programs = {}}.statusOf(autostartEntry(program))), "not found");
}

void TestAutostartEntry::whatWeHideIsNotRegisteredOnAnyDesktop()
{
    for (const auto &desktop : {QStringList(), {u"GNOME"_s}, {u"X-Own"_s, u"XFCE"_s}}) {
        const Machine there{.desktop = desktop};
        QCOMPARE(nameOf(there.statusOf(hiddenAutostartEntry(program))), "not registered");
    }
}

void TestAutostartEntry::cuttingWhatWeWriteShortNeverStartsAnotherProgram()
{
    const auto whole = autostartEntry(program);
    const auto endOfExec = whole.indexOf("\nIcon");
    for (qsizetype length = 0; length < endOfExec; ++length)
        QCOMPARE(nameOf(Machine().statusOf(whole.left(length))), "not found");
}

void TestAutostartEntry::theEnvironmentSays_data()
{
    using Values = QList<std::pair<QString, QString>>;
    QTest::addColumn<Values>("values");
    QTest::addColumn<QString>("userFolder");
    QTest::addColumn<QStringList>("systemFolders");
    QTest::addColumn<QStringList>("desktop");
    QTest::addColumn<QStringList>("searchPath");
    const std::pair home{u"HOME"_s, u"/home/ann"_s};
    const auto folder = u"/home/ann/.config/autostart"_s;
    const QStringList system{u"/etc/xdg/autostart"_s};
    const QStringList path{u"/usr/local/bin"_s, u"/usr/bin"_s, u"/bin"_s};
    QTest::newRow("the defaults when little is set") << Values{home} << folder << system << QStringList() << path;
    QTest::newRow("the defaults when all is empty")
        << Values{home, {u"XDG_CONFIG_HOME"_s, u""_s}, {u"XDG_CONFIG_DIRS"_s, u""_s}, {u"PATH"_s, u""_s}} << folder
        << system << QStringList() << path;
    QTest::newRow("no folder of the user's without a home") << Values{} << QString() << system << QStringList() << path;
    QTest::newRow("no folder of the user's in a relative home")
        << Values{{u"HOME"_s, u"ann"_s}} << QString() << system << QStringList() << path;
    QTest::newRow("where the configuration is without a home")
        << Values{{u"XDG_CONFIG_HOME"_s, u"/c/"_s}} << u"/c/autostart"_s << system << QStringList() << path;
    QTest::newRow("nothing by a relative folder")
        << Values{home, {u"XDG_CONFIG_HOME"_s, u"c"_s}, {u"XDG_CONFIG_DIRS"_s, u"d:/e"_s}} << folder
        << QStringList{u"/e/autostart"_s} << QStringList() << path;
    QTest::newRow("several folders of the system in their order")
        << Values{home, {u"XDG_CONFIG_DIRS"_s, u"/b:/a/::/c"_s}} << folder
        << QStringList{u"/b/autostart"_s, u"/a/autostart"_s, u"/c/autostart"_s} << QStringList() << path;
    QTest::newRow("the user's folder only once")
        << Values{home, {u"XDG_CONFIG_DIRS"_s, u"/home/ann/.config/:/etc/xdg"_s}} << folder << system << QStringList()
        << path;
    QTest::newRow("every name of the desktop") << Values{home, {u"XDG_CURRENT_DESKTOP"_s, u"ubuntu::GNOME"_s}} << folder
                                               << system << QStringList{u"ubuntu"_s, u"GNOME"_s} << path;
    QTest::newRow("where programs are") << Values{home, {u"PATH"_s, u"/b:.::/a"_s}} << folder << system << QStringList()
                                        << QStringList{u"/b"_s, u"/a"_s};
}

void TestAutostartEntry::theEnvironmentSays()
{
    using Values = QList<std::pair<QString, QString>>;
    QFETCH(Values, values);
    const auto environment = autostartEnvironment(variables(values), program);
    QTEST(environment.userFolder, "userFolder");
    QTEST(environment.systemFolders, "systemFolders");
    QTEST(environment.currentDesktop, "desktop");
    QTEST(environment.searchPath, "searchPath");
    QCOMPARE(environment.program, program);
}

VELQUARIN_TEST(TestAutostartEntry)
#include "tst_autostartentry.moc"
