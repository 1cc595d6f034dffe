// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Models/AppSettings.h"
#include "Platform/Linux/Preferences/JsonPreferencesStore.h"

#include "Platform/Linux/Preferences/PreferencesPlace.h"
#include "support/CapturedStandardError.h"
#include "support/FakeClock.h"
#include "support/SocketFile.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

#include <future>
#include <limits>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

using namespace velquarin;
using namespace Qt::StringLiterals;
using velquarin::test::CapturedStandardError;
using velquarin::test::instant;
using velquarin::test::modeOf;
using velquarin::test::namesIn;
using velquarin::test::PreferencesPlace;
using velquarin::test::readFile;
using velquarin::test::socketAt;
using velquarin::test::writeFile;

namespace {

constexpr auto number = 42.0;
const QString numberKey = u"number"_s;

// A file as the program writes it, with a value of each type and some of a version that is yet to come.
const QByteArray completeFile =
    "{\n"
    "    \"autoDiscoveryEnabled\": false,\n"
    "    \"countedAuthors\": \"me\",\n"
    "    \"countedBranches\": \"all\",\n"
    "    \"lastAutoDiscoveryScan\": {\n"
    "        \"date\": \"2026-11-20T18:10:00.123Z\"\n"
    "    },\n"
    "    \"lastStreakRiskNotification\": \"2026-11-20\",\n"
    "    \"later\": {\n"
    "        \"colour\": [\n"
    "            \"red\",\n"
    "            null\n"
    "        ]\n"
    "    },\n"
    "    \"notifyOnStreakRisk\": false,\n"
    "    \"refreshInterval\": 60,\n"
    "    \"showStreakInMenuBar\": false,\n"
    "    \"trackedRepositories\": {\n"
    "        \"data\": "
    "\"[{\\\"id\\\":\\\"E621E1F8-C36C-495A-93FC-0C247A3E6E5F\\\",\\\"isAutoDiscovered\\\":false,\\\"isEnabled\\\":true,"
    "\\\"name\\\":\\\"repo\\\",\\\"path\\\":\\\"/home/ann/repo\\\"}]\"\n"
    "    },\n"
    "    \"watchedFolders\": {\n"
    "        \"data\": "
    "\"[{\\\"id\\\":\\\"00112233-4455-6677-8899-AABBCCDDEEFF\\\",\\\"isEnabled\\\":true,\\\"maxDepth\\\":5,"
    "\\\"name\\\":\\\"code\\\",\\\"path\\\":\\\"/home/ann/code\\\"}]\"\n"
    "    }\n"
    "}\n";

QJsonObject objectIn(const QByteArray &text)
{
    return QJsonDocument::fromJson(text).object();
}

// Another instance in the middle of its save.
class HeldFolder
{
public:
    explicit HeldFolder(const QString &folder)
        : m_folder(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        if (::flock(m_folder, LOCK_EX | LOCK_NB) != 0)
            qFatal("%s cannot be held", qPrintable(folder));
    }
    ~HeldFolder() { ::close(m_folder); }
    HeldFolder(const HeldFolder &) = delete;
    HeldFolder &operator=(const HeldFolder &) = delete;

private:
    int m_folder;
};

// How often this process has it open.
qsizetype openings(const QString &folder)
{
    const auto files = QDir(u"/proc/self/fd"_s).entryInfoList(QDir::System | QDir::Dirs | QDir::NoDotAndDotDot);
    return std::count_if(files.begin(), files.end(), [&](const QFileInfo &file) {
        return QFile::symLinkTarget(file.filePath()) == QFileInfo(folder).canonicalFilePath();
    });
}

void setNumber(const QString &path)
{
    JsonPreferencesStore store(path);
    store.set(numberKey, number);
}

}  // namespace

class TestJsonPreferencesStore : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { test::failOnAnyWarning(); }

    void aMissingFileIsAnEmptyStore();
    void nothingIsWrittenWhileNothingIsSet();
    void foldersAndFileAreForTheirOwnerAlone();
    void aFileThatOthersCouldReadIsClosedToThem();
    void theSettingsStandInTheFileAsPromised();
    void aWholeFileIsWrittenAsItWasRead();
    void whatIsSetCanBeReadAtOnce();
    void valuesComeBackFromTheFile();
    void whatIsRemovedIsGone();
    void aNumberThatJsonCannotHoldLeavesTheKeyEmpty();

    void membersOfANewerVersionSurvive();
    void aFileOfAHundredMegabytesIsReadAndKept();
    void foreignValuesStayUntilTheyAreSet();
    void anyWrongTypeIsReplacedAndACopyPutAside_data();
    void anyWrongTypeIsReplacedAndACopyPutAside();
    void aBadIntervalNeedsNoCopy();
    void oneCopyIsPutAsideHoweverOftenOneIsAskedFor();
    void whereThereWasNoFileThereIsNoCopy();
    void askingForACopyWritesNothingByItself();
    void whatSomebodyElseWroteMeanwhileIsPutAsideOnce();
    void whatOnlySomebodyElseWroteStays();
    void whatSomebodyElseTookAwayStaysAway();
    void whatWeTookAwayIsNotBroughtBackByOthers();
    void whatCouldNotBeWrittenIsStillOurs();
    void aFileThatSomebodyElseOnlyTouchedNeedsNoCopy();
    void whatTwoInstancesWriteAtTheSameTimeIsAllThere();
    void whatAnotherInstanceIsWritingIsNoLeftOver();
    void anInstanceThatNeverLetsGoKeepsNobodyFromSaving();
    void aWriterThatWaitsForAnotherInstanceHoldsNobodyUp();
    void savingAllSettingsLeavesWhatOnlyAnotherInstanceChanged();
    void whatAnotherInstanceHasWrittenIsThereWhenAskedFor();
    void whatWasTakenAwayHereCanBeSetAgain();
    void aMergeThatLosesNothingNeedsNoCopy();
    void whatWasTakenOverAndIsChangedHereIsPutAside();
    void everyDamageDoneMeanwhileIsPutAside();
    void aFileTakenAwayMeanwhileIsWrittenAgain();

    void aDamagedFileIsMovedAside_data();
    void aDamagedFileIsMovedAside();
    void whatLiesAsideIsNeverWrittenOver();
    void aFileCutShortAnywhereIsNeitherLostNorFatal();
    void randomBytesAreNeitherLostNorFatal();
    void aFlippedByteIsNeitherLostNorFatal();

    void whatIsNoFileIsLeftAlone_data();
    void whatIsNoFileIsLeftAlone();
    void aCircleOfLinksIsLeftAlone();
    void linksAreFollowedAndStay_data();
    void linksAreFollowedAndStay();
    void aDanglingLinkGetsItsTarget();
    void aDamagedFileBehindALinkIsMovedAsideWhereItLies();
    void whatAKillLeftBehindIsRemoved_data();
    void whatAKillLeftBehindIsRemoved();
    void whatSomebodyElsePutBesideTheFileStays();
    void aFolderInThePlaceOfTheTemporaryIsNotRemoved();
};

void TestJsonPreferencesStore::aMissingFileIsAnEmptyStore()
{
    const PreferencesPlace place;
    const JsonPreferencesStore store(place.path);
    QVERIFY(!store.value(numberKey));
}

void TestJsonPreferencesStore::nothingIsWrittenWhileNothingIsSet()
{
    const PreferencesPlace empty;
    {
        JsonPreferencesStore store(empty.path);
        store.remove(numberKey);
        store.flush(std::chrono::minutes(1));
    }
    QCOMPARE(namesIn(empty.home.path()), QStringList());

    const PreferencesPlace full;
    full.fill("{\"a\":1}");
    {
        JsonPreferencesStore store(full.path);
        store.remove(numberKey);
        store.flush(std::chrono::minutes(1));
    }
    QCOMPARE(full.content(), "{\"a\":1}");
}

void TestJsonPreferencesStore::foldersAndFileAreForTheirOwnerAlone()
{
    const auto before = ::umask(0);
    const PreferencesPlace place;
    setNumber(place.path);
    ::umask(before);
    QCOMPARE(modeOf(place.home.filePath(u"config"_s)), 0700);
    QCOMPARE(modeOf(place.folder), 0700);
    QCOMPARE(modeOf(place.path), 0600);
}

void TestJsonPreferencesStore::aFileThatOthersCouldReadIsClosedToThem()
{
    const PreferencesPlace place;
    place.fill("{}");
    QCOMPARE(::chmod(QFile::encodeName(place.path).constData(), 0644), 0);
    setNumber(place.path);
    QCOMPARE(modeOf(place.path), 0600);
}

void TestJsonPreferencesStore::theSettingsStandInTheFileAsPromised()
{
    const PreferencesPlace place;
    {
        JsonPreferencesStore store(place.path);
        const AppSettings settings(store);
    }
    QCOMPARE(place.content(), QByteArray("{\n"
                                         "    \"autoDiscoveryEnabled\": true,\n"
                                         "    \"countedAuthors\": \"everyone\",\n"
                                         "    \"countedBranches\": \"default\",\n"
                                         "    \"notifyOnStreakRisk\": true,\n"
                                         "    \"refreshInterval\": 300,\n"
                                         "    \"showStreakInMenuBar\": true,\n"
                                         "    \"trackedRepositories\": {\n"
                                         "        \"data\": \"[]\"\n"
                                         "    },\n"
                                         "    \"watchedFolders\": {\n"
                                         "        \"data\": \"[]\"\n"
                                         "    }\n"
                                         "}\n"));
}

void TestJsonPreferencesStore::aWholeFileIsWrittenAsItWasRead()
{
    const PreferencesPlace place;
    place.fill(completeFile);
    {
        JsonPreferencesStore store(place.path);
        AppSettings settings(store);
        QCOMPARE(settings.trackedRepositories().at(0).path, u"/home/ann/repo"_s);
        QCOMPARE(settings.watchedFolders().at(0).maxDepth, 5);
        QCOMPARE(settings.autoDiscoveryEnabled(), false);
        QCOMPARE(settings.refreshInterval(), 60.0);
        QCOMPARE(settings.showStreakInMenuBar(), false);
        QCOMPARE(settings.notifyOnStreakRisk(), false);
        QCOMPARE(settings.countedAuthors(), CountedAuthors::Me);
        QCOMPARE(settings.countedBranches(), CountedBranches::All);
        QCOMPARE(settings.lastAutoDiscoveryScan(), instant("2026-11-20T18:10:00.123Z"));
        settings.setRefreshInterval(60.0);
    }
    QCOMPARE(place.content(), completeFile);
    QCOMPARE(namesIn(place.folder), QStringList{u"preferences.json"_s});
}

void TestJsonPreferencesStore::whatIsSetCanBeReadAtOnce()
{
    const PreferencesPlace place;
    JsonPreferencesStore store(place.path);
    store.set(numberKey, number);
    QVERIFY(store.value(numberKey) == PreferenceValue(number));
    store.set(numberKey, false);
    QVERIFY(store.value(numberKey) == PreferenceValue(false));
    store.remove(numberKey);
    QVERIFY(!store.value(numberKey));
}

void TestJsonPreferencesStore::valuesComeBackFromTheFile()
{
    const QMap<QString, PreferenceValue> values{{u"false"_s, false},
                                                {u"zero"_s, 0.0},
                                                {u"moment"_s, instant("2026-11-20T18:10:00.123Z")},
                                                {u"text"_s, u"2026-11-20"_s},
                                                {u"bytes"_s, QByteArray("\xff\0", 2)},
                                                {u"mark"_s, QByteArray("\xef\xbb\xbf")}};
    const PreferencesPlace place;
    {
        JsonPreferencesStore store(place.path);
        for (auto value = values.begin(); value != values.end(); ++value)
            store.set(value.key(), *value);
    }
    const JsonPreferencesStore store(place.path);
    for (auto value = values.begin(); value != values.end(); ++value)
        QVERIFY2(store.value(value.key()) == *value, qPrintable(value.key()));
    QCOMPARE(objectIn(place.content()).value(u"bytes"_s), QJsonValue(QJsonObject{{u"base64"_s, u"/wA="_s}}));
}

void TestJsonPreferencesStore::whatIsRemovedIsGone()
{
    const PreferencesPlace place;
    place.fill(R"({"a": 1, "number": 2})");
    {
        JsonPreferencesStore store(place.path);
        store.remove(numberKey);
    }
    QCOMPARE(objectIn(place.content()), objectIn(R"({"a": 1})"));
}

void TestJsonPreferencesStore::aNumberThatJsonCannotHoldLeavesTheKeyEmpty()
{
    const auto infinity = std::numeric_limits<double>::infinity();
    const PreferencesPlace place;
    {
        JsonPreferencesStore store(place.path);
        store.set(numberKey, number);
        store.flush(std::chrono::minutes(1));
        store.set(numberKey, infinity);
        store.flush(std::chrono::minutes(1));
        QVERIFY(!store.value(numberKey));
    }
    QCOMPARE(objectIn(place.content()), QJsonObject());
}

void TestJsonPreferencesStore::aFileOfAHundredMegabytesIsReadAndKept()
{
    constexpr qsizetype size = 100'000'000;
    const PreferencesPlace place;
    place.fill(QByteArray(R"({"number": 7, "unknown": "long"})").replace("long", QByteArray(size, 'x')));
    {
        JsonPreferencesStore store(place.path);
        QCOMPARE(store.value(u"number"_s), PreferenceValue(7.0));
        store.set(u"number"_s, 8.0);
        QVERIFY(store.flush(std::chrono::minutes(1)));
    }
    const JsonPreferencesStore store(place.path);
    QCOMPARE(store.value(u"number"_s), PreferenceValue(8.0));
    QCOMPARE(std::get<QString>(store.value(u"unknown"_s).value()).size(), size);
}

void TestJsonPreferencesStore::membersOfANewerVersionSurvive()
{
    const QByteArray newer = R"({"later": {"date": "soon"}, "": [[], {}, null, 1.5, "x"], "größe": {"data": 1}})";
    const PreferencesPlace place;
    place.fill(newer);
    {
        JsonPreferencesStore store(place.path);
        AppSettings settings(store);
        settings.setRefreshInterval(60.0);
    }
    auto written = objectIn(place.content());
    QCOMPARE(written.size(), 11);
    const auto expected = objectIn(newer);
    for (auto member = expected.begin(); member != expected.end(); ++member)
        QCOMPARE(written.value(member.key()), member.value());
    QVERIFY(place.aside().isEmpty());
}

void TestJsonPreferencesStore::foreignValuesStayUntilTheyAreSet()
{
    const PreferencesPlace place;
    place.fill(R"({"number": {"colour": "red"}, "other": null})");
    {
        JsonPreferencesStore store(place.path);
        QVERIFY(store.value(numberKey) == PreferenceValue(UnreadableValue()));
        QVERIFY(store.value(u"other"_s) == PreferenceValue(UnreadableValue()));
        store.set(numberKey, number);
    }
    QCOMPARE(objectIn(place.content()), objectIn(R"({"number": 42, "other": null})"));
}

void TestJsonPreferencesStore::anyWrongTypeIsReplacedAndACopyPutAside_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QByteArray>("json");
    const QList<QByteArray> values{"null",
                                   "true",
                                   "60",
                                   "\"text\"",
                                   "[]",
                                   "{}",
                                   R"({"date": "2026-11-20T18:10:00.123Z"})",
                                   R"({"date": "yesterday"})",
                                   R"({"data": "[]"})",
                                   R"({"data": "[{]"})",
                                   R"({"base64": "/wA="})",
                                   R"({"base64": "?"})",
                                   R"({"data": "[]", "date": "2026-11-20T18:10:00.123Z"})"};
    const QMap<QString, QByteArrayList> rightValues{
        {u"trackedRepositories"_s, {R"({"data": "[]"})"}},
        {u"watchedFolders"_s, {R"({"data": "[]"})"}},
        {u"autoDiscoveryEnabled"_s, {"true"}},
        {u"refreshInterval"_s, {"60"}},
        {u"showStreakInMenuBar"_s, {"true"}},
        {u"notifyOnStreakRisk"_s, {"true"}},
        {u"countedAuthors"_s, {}},
        {u"countedBranches"_s, {}},
        {u"lastAutoDiscoveryScan"_s, {R"({"date": "2026-11-20T18:10:00.123Z"})"}}};
    for (auto right = rightValues.begin(); right != rightValues.end(); ++right) {
        for (const auto &value : values) {
            if (!right->contains(value))
                QTest::addRow("%s as %s", qPrintable(right.key()), value.constData()) << right.key() << value;
        }
    }
}

void TestJsonPreferencesStore::anyWrongTypeIsReplacedAndACopyPutAside()
{
    QFETCH(QString, key);
    QFETCH(QByteArray, json);
    auto object = objectIn(completeFile);
    object.insert(key, objectIn(QByteArray("{\"a\": " + json + '}')).value(u"a"_s));
    const auto original = QJsonDocument(object).toJson(QJsonDocument::Compact);
    const PreferencesPlace fresh;
    const PreferencesPlace place;
    place.fill(original);
    const CapturedStandardError error;
    {
        JsonPreferencesStore store(place.path);
        const AppSettings settings(store);
        JsonPreferencesStore freshStore(fresh.path);
        const AppSettings freshSettings(freshStore);
        QCOMPARE(settings.property(key.toLatin1()), freshSettings.property(key.toLatin1()));
    }

    QCOMPARE(place.onlyAside(), original);
    QCOMPARE(modeOf(place.aside().at(0)), 0600);
    QCOMPARE(error.lines().size(), 1);
    QVERIFY(error.lines().at(0).contains(place.aside().at(0)));
    auto expected = objectIn(completeFile);
    expected.insert(key, objectIn(fresh.content()).value(key));
    if (key == u"lastAutoDiscoveryScan"_s)
        expected.remove(key);
    QCOMPARE(objectIn(place.content()), expected);
}

void TestJsonPreferencesStore::aBadIntervalNeedsNoCopy()
{
    for (const char *stored : {"0", "-5", "-0.0"}) {
        const PreferencesPlace place;
        place.fill(QByteArray("{\"refreshInterval\": ") + stored + "}");
        {
            JsonPreferencesStore store(place.path);
            const AppSettings settings(store);
            QCOMPARE(settings.refreshInterval(), 300.0);
        }
        QCOMPARE(objectIn(place.content()).value(u"refreshInterval"_s), QJsonValue(300));
        QVERIFY(place.aside().isEmpty());
    }
}

void TestJsonPreferencesStore::oneCopyIsPutAsideHoweverOftenOneIsAskedFor()
{
    const QByteArray original = " {\"number\":[]}";
    const PreferencesPlace place;
    place.fill(original);
    const CapturedStandardError error;
    JsonPreferencesStore store(place.path);
    store.putCopyAside();
    store.putCopyAside();
    store.set(numberKey, 1.0);
    store.flush(std::chrono::minutes(1));
    store.putCopyAside();
    store.set(numberKey, 2.0);
    store.flush(std::chrono::minutes(1));
    QCOMPARE(place.onlyAside(), original);
    QCOMPARE(objectIn(place.content()), objectIn(R"({"number": 2})"));
    QCOMPARE(error.lines().size(), 1);
}

void TestJsonPreferencesStore::whereThereWasNoFileThereIsNoCopy()
{
    const PreferencesPlace place;
    {
        JsonPreferencesStore store(place.path);
        store.putCopyAside();
        store.set(numberKey, number);
    }
    QCOMPARE(namesIn(place.folder), QStringList{u"preferences.json"_s});
}

void TestJsonPreferencesStore::askingForACopyWritesNothingByItself()
{
    const PreferencesPlace place;
    place.fill("{ }");
    {
        JsonPreferencesStore store(place.path);
        store.putCopyAside();
    }
    QCOMPARE(place.content(), "{ }");
    QCOMPARE(namesIn(place.folder), QStringList{u"preferences.json"_s});
}

void TestJsonPreferencesStore::whatSomebodyElseWroteMeanwhileIsPutAsideOnce()
{
    const PreferencesPlace place;
    place.fill("{}");
    const CapturedStandardError error;
    JsonPreferencesStore store(place.path);
    store.set(numberKey, 1.0);
    QVERIFY(store.flush(std::chrono::minutes(1)));
    place.fill(R"({"number": 2, "mine": "by hand"})");
    store.set(numberKey, 3.0);
    QVERIFY(store.flush(std::chrono::minutes(1)));
    place.fill(R"({"number": 4})");
    store.set(numberKey, 5.0);
    QVERIFY(store.flush(std::chrono::minutes(1)));
    const auto copies = QDir(place.folder).entryList({u"preferences.json.replaced-*"_s});
    QCOMPARE(copies.size(), 1);
    QCOMPARE(readFile(place.folder + u'/' + copies.first()), R"({"number": 2, "mine": "by hand"})");
    QCOMPARE(objectIn(place.content()), objectIn(R"({"number": 5})"));
    QCOMPARE(error.lines().size(), 1);
    QVERIFY(error.lines().at(0).contains(copies.first()));
}

void TestJsonPreferencesStore::whatOnlySomebodyElseWroteStays()
{
    const PreferencesPlace place;
    place.fill(R"({"text": "before"})");
    const CapturedStandardError error;
    JsonPreferencesStore store(place.path);
    store.set(numberKey, 1.0);
    QVERIFY(store.flush(std::chrono::minutes(1)));
    place.fill(R"({"number": 2, "text": "after", "new": true})");
    store.set(numberKey, 3.0);
    QVERIFY(store.flush(std::chrono::minutes(1)));
    QCOMPARE(objectIn(place.content()), objectIn(R"({"number": 3, "text": "after", "new": true})"));
    QCOMPARE(store.value(u"text"_s), PreferenceValue(u"after"_s));
    QCOMPARE(store.value(u"new"_s), PreferenceValue(true));
}

void TestJsonPreferencesStore::whatSomebodyElseTookAwayStaysAway()
{
    const PreferencesPlace place;
    place.fill(R"({"text": "before"})");
    const CapturedStandardError error;
    JsonPreferencesStore store(place.path);
    place.fill(R"({"number": 2})");
    store.set(numberKey, 3.0);
    QVERIFY(store.flush(std::chrono::minutes(1)));
    QCOMPARE(objectIn(place.content()), objectIn(R"({"number": 3})"));
    QVERIFY(!store.value(u"text"_s));
}

void TestJsonPreferencesStore::whatWeTookAwayIsNotBroughtBackByOthers()
{
    const PreferencesPlace place;
    place.fill(R"({"number": 1, "text": "before"})");
    const CapturedStandardError error;
    JsonPreferencesStore store(place.path);
    place.fill(R"({"number": 2, "text": "after"})");
    store.remove(numberKey);
    QVERIFY(store.flush(std::chrono::minutes(1)));
    QCOMPARE(objectIn(place.content()), objectIn(R"({"text": "after"})"));
    QVERIFY(!store.value(numberKey));
}

void TestJsonPreferencesStore::whatCouldNotBeWrittenIsStillOurs()
{
    const PreferencesPlace place;
    place.fill("{}");
    const CapturedStandardError error;
    JsonPreferencesStore store(place.path);
    QVERIFY(QFile::remove(place.path));
    QVERIFY(QDir().mkdir(place.path));
    store.set(numberKey, 1.0);
    QVERIFY(store.flush(std::chrono::minutes(1)));
    QVERIFY(QDir().rmdir(place.path));
    place.fill(R"({"number": 2, "text": "theirs"})");
    store.set(u"switch"_s, true);
    QVERIFY(store.flush(std::chrono::minutes(1)));
    QCOMPARE(objectIn(place.content()), objectIn(R"({"number": 1, "switch": true, "text": "theirs"})"));
}

void TestJsonPreferencesStore::aFileThatSomebodyElseOnlyTouchedNeedsNoCopy()
{
    const PreferencesPlace place;
    const CapturedStandardError error;
    JsonPreferencesStore store(place.path);
    store.set(numberKey, 1.0);
    QVERIFY(store.flush(std::chrono::minutes(1)));
    place.fill(place.content());
    store.set(numberKey, 2.0);
    QVERIFY(store.flush(std::chrono::minutes(1)));
    QCOMPARE(namesIn(place.folder), QStringList{u"preferences.json"_s});
    QVERIFY(error.lines().isEmpty());
}

void TestJsonPreferencesStore::whatTwoInstancesWriteAtTheSameTimeIsAllThere()
{
    constexpr int rounds = 60;
    const PreferencesPlace place;
    const CapturedStandardError error;
    JsonPreferencesStore first(place.path);
    JsonPreferencesStore second(place.path);
    for (int round = 1; round <= rounds; ++round) {
        first.set(u"first%1"_s.arg(round), double(round));
        second.set(u"second%1"_s.arg(round), double(round));
        auto other = std::async(std::launch::async, [&] { return second.flush(std::chrono::minutes(1)); });
        QVERIFY(first.flush(std::chrono::minutes(1)));
        QVERIFY(other.get());
        QCOMPARE(objectIn(place.content()).size(), 2 * round);
    }
    QCOMPARE(error.lines(), QStringList());
    QCOMPARE(namesIn(place.folder), QStringList{u"preferences.json"_s});
}

void TestJsonPreferencesStore::whatAnotherInstanceIsWritingIsNoLeftOver()
{
    const PreferencesPlace place;
    place.fill("{}");
    const auto temporary = QString(place.folder + u"/.preferences.json.velquarin"_s);
    writeFile(temporary, "theirs");
    {
        const HeldFolder held(place.folder);
        const JsonPreferencesStore store(place.path);
        QVERIFY(QFileInfo::exists(temporary));
    }
    const JsonPreferencesStore store(place.path);
    QCOMPARE(namesIn(place.folder), QStringList{u"preferences.json"_s});
}

void TestJsonPreferencesStore::anInstanceThatNeverLetsGoKeepsNobodyFromSaving()
{
    const PreferencesPlace place;
    place.fill("{}");
    const HeldFolder held(place.folder);
    JsonPreferencesStore store(place.path);
    store.set(numberKey, number);
    QVERIFY(store.flush(std::chrono::minutes(1)));
    QCOMPARE(objectIn(place.content()), objectIn(R"({"number": 42})"));
}

// It waits for a second, so a machine that stands still meanwhile is given another chance.
void TestJsonPreferencesStore::aWriterThatWaitsForAnotherInstanceHoldsNobodyUp()
{
    const PreferencesPlace place;
    place.fill("{}");
    JsonPreferencesStore store(place.path);
    double last = 0;
    const auto setsWhileItWaits = [&] {
        const HeldFolder held(place.folder);
        store.set(numberKey, ++last);
        if (!QTest::qWaitFor([&] { return openings(place.folder) == 2; }))
            return false;
        store.set(numberKey, ++last);
        const bool isThere = store.value(numberKey) == PreferenceValue(last);
        return isThere && openings(place.folder) == 2;
    };
    QTRY_VERIFY(setsWhileItWaits());
    store.flush(std::chrono::minutes(1));
    QCOMPARE(objectIn(place.content()).value(numberKey), QJsonValue(last));
}

// The first save takes over what the other one has written, the second one must not take it back.
void TestJsonPreferencesStore::savingAllSettingsLeavesWhatOnlyAnotherInstanceChanged()
{
    const PreferencesPlace place;
    JsonPreferencesStore ourStore(place.path);
    AppSettings ours(ourStore);
    QVERIFY(ourStore.flush(std::chrono::minutes(1)));
    JsonPreferencesStore theirStore(place.path);
    AppSettings theirs(theirStore);
    theirs.setRefreshInterval(60.0);
    theirs.addRepository(u"/home/ann/repo"_s, false);
    theirs.setLastAutoDiscoveryScan(instant("2026-11-20T18:10:00.123Z"));
    QVERIFY(theirStore.flush(std::chrono::minutes(1)));

    ours.setNotifyOnStreakRisk(false);
    QVERIFY(ourStore.flush(std::chrono::minutes(1)));
    ours.setShowStreakInMenuBar(false);
    QVERIFY(ourStore.flush(std::chrono::minutes(1)));

    JsonPreferencesStore laterStore(place.path);
    const AppSettings later(laterStore);
    QCOMPARE(later.refreshInterval(), 60.0);
    QCOMPARE(later.trackedRepositories(), theirs.trackedRepositories());
    QCOMPARE(later.lastAutoDiscoveryScan(), theirs.lastAutoDiscoveryScan());
    QCOMPARE(later.notifyOnStreakRisk(), false);
    QCOMPARE(later.showStreakInMenuBar(), false);
    QCOMPARE(namesIn(place.folder), QStringList{u"preferences.json"_s});
}

void TestJsonPreferencesStore::whatAnotherInstanceHasWrittenIsThereWhenAskedFor()
{
    const PreferencesPlace place;
    JsonPreferencesStore ours(place.path);
    ours.set(numberKey, number);
    QVERIFY(ours.flush(std::chrono::minutes(1)));
    JsonPreferencesStore theirs(place.path);
    theirs.set(u"moment"_s, instant("2026-11-20T18:10:00Z"));
    QVERIFY(theirs.flush(std::chrono::minutes(1)));
    QCOMPARE(ours.value(u"moment"_s), std::nullopt);

    ours.takeOverChanges().waitForFinished();
    QCOMPARE(ours.value(u"moment"_s), PreferenceValue(instant("2026-11-20T18:10:00Z")));
    QCOMPARE(ours.value(numberKey), PreferenceValue(number));

    const QByteArray byHand(R"({"number":   43})");
    place.fill(byHand);
    ours.takeOverChanges().waitForFinished();
    QCOMPARE(ours.value(numberKey), PreferenceValue(43.0));
    QCOMPARE(place.content(), byHand);
}

void TestJsonPreferencesStore::whatWasTakenAwayHereCanBeSetAgain()
{
    const PreferencesPlace place;
    place.fill(R"({"number": 42})");
    JsonPreferencesStore store(place.path);
    place.fill("{}");
    store.set(u"other"_s, true);
    QVERIFY(store.flush(std::chrono::minutes(1)));
    QVERIFY(!store.value(numberKey));
    store.remove(numberKey);
    QVERIFY(store.flush(std::chrono::minutes(1)));
    store.set(numberKey, number);
    QVERIFY(store.flush(std::chrono::minutes(1)));
    QCOMPARE(objectIn(place.content()), objectIn(R"({"number": 42, "other": true})"));
}

void TestJsonPreferencesStore::aMergeThatLosesNothingNeedsNoCopy()
{
    const PreferencesPlace place;
    place.fill(R"({"number": 1})");
    const CapturedStandardError error;
    JsonPreferencesStore store(place.path);
    place.fill(R"({"number": 1, "text": "theirs"})");
    store.set(numberKey, 2.0);
    QVERIFY(store.flush(std::chrono::minutes(1)));
    place.fill(R"({"number": 3, "text": "theirs", "scan": {"date": "2026-11-20T18:10:00.123Z"}})");
    store.set(numberKey, 3.0);
    store.set(u"scan"_s, instant("2026-11-20T18:20:00.000Z"));
    QVERIFY(store.flush(std::chrono::minutes(1)));
    QCOMPARE(objectIn(place.content()),
             objectIn(R"({"number": 3, "text": "theirs", "scan": {"date": "2026-11-20T18:20:00.000Z"}})"));
    QCOMPARE(namesIn(place.folder), QStringList{u"preferences.json"_s});
    QCOMPARE(error.lines(), QStringList());
}

void TestJsonPreferencesStore::whatWasTakenOverAndIsChangedHereIsPutAside()
{
    const PreferencesPlace place;
    place.fill(R"({"text": "before"})");
    const CapturedStandardError error;
    JsonPreferencesStore store(place.path);
    place.fill(R"({"text": "theirs"})");
    store.set(numberKey, number);
    QVERIFY(store.flush(std::chrono::minutes(1)));
    QCOMPARE(namesIn(place.folder), QStringList{u"preferences.json"_s});
    store.set(u"text"_s, u"ours"_s);
    QVERIFY(store.flush(std::chrono::minutes(1)));
    const auto copies = QDir(place.folder).entryList({u"preferences.json.replaced-*"_s});
    QCOMPARE(copies.size(), 1);
    QCOMPARE(objectIn(readFile(place.folder + u'/' + copies.first())), objectIn(R"({"number": 42, "text": "theirs"})"));
    QCOMPARE(objectIn(place.content()), objectIn(R"({"number": 42, "text": "ours"})"));
}

void TestJsonPreferencesStore::everyDamageDoneMeanwhileIsPutAside()
{
    const PreferencesPlace place;
    place.fill(R"({"text": "before"})");
    const CapturedStandardError error;
    JsonPreferencesStore store(place.path);
    place.fill(R"({"number": 7, "text": "before"})");
    store.set(numberKey, 1.0);
    QVERIFY(store.flush(std::chrono::minutes(1)));
    for (const auto *damaged : {"{\"first\"", "{\"second\""}) {
        place.fill(damaged);
        store.set(numberKey, damaged[2] == 'f' ? 2.0 : 3.0);
        QVERIFY(store.flush(std::chrono::minutes(1)));
    }
    QStringList copies;
    for (const auto &name : QDir(place.folder).entryList({u"preferences.json.replaced-*"_s}))
        copies.append(QString::fromUtf8(readFile(place.folder + u'/' + name)));
    QCOMPARE(copies.size(), 3);
    QVERIFY(copies.contains(u"{\"first\""_s) && copies.contains(u"{\"second\""_s));
    QCOMPARE(objectIn(place.content()), objectIn(R"({"number": 3, "text": "before"})"));
}

void TestJsonPreferencesStore::aFileTakenAwayMeanwhileIsWrittenAgain()
{
    const PreferencesPlace place;
    JsonPreferencesStore store(place.path);
    store.set(numberKey, number);
    QVERIFY(store.flush(std::chrono::minutes(1)));
    QVERIFY(QFile::remove(place.path));
    store.set(numberKey, number);
    QVERIFY(store.flush(std::chrono::minutes(1)));
    QCOMPARE(objectIn(place.content()), objectIn(R"({"number": 42})"));
}

void TestJsonPreferencesStore::aDamagedFileIsMovedAside_data()
{
    QTest::addColumn<QByteArray>("damaged");
    QTest::newRow("an empty file") << QByteArray();
    QTest::newRow("nothing but spaces") << QByteArray(" \n");
    QTest::newRow("an array") << QByteArray("[]");
    QTest::newRow("a file cut short") << completeFile.first(completeFile.size() / 2);
    QTest::newRow("two objects") << QByteArray("{}{}");
    QTest::newRow("bytes that are no UTF-8") << QByteArray("{\"a\": \"\xff\"}");
    QTest::newRow("nested too deep") << QByteArray("{\"a\":" + QByteArray(1025, '[') + QByteArray(1025, ']') + '}');
    QTest::newRow("a number outside of a double") << QByteArray(R"({"refreshInterval": 1e400})");
    QTest::newRow("zeros, as after a power cut") << QByteArray(4096, '\0');
}

void TestJsonPreferencesStore::aDamagedFileIsMovedAside()
{
    QFETCH(QByteArray, damaged);
    const PreferencesPlace place;
    place.fill(damaged);
    const CapturedStandardError error;
    {
        JsonPreferencesStore store(place.path);
        QVERIFY(!store.value(u"a"_s));
        QCOMPARE(place.aside().size(), 1);
        QCOMPARE(place.onlyAside(), damaged);
        QVERIFY(!QFileInfo::exists(place.path));
        const AppSettings settings(store);
    }
    QCOMPARE(place.onlyAside(), damaged);
    QCOMPARE(objectIn(place.content()).size(), 8);
    const QRegularExpression name(u"/preferences\\.json\\.damaged-\\d{8}T\\d{6}Z$"_s);
    QVERIFY(name.match(place.aside().at(0)).hasMatch());
    QCOMPARE(error.lines().size(), 1);
    QVERIFY(error.lines().at(0).startsWith(u"velquarin: "_s));
    QVERIFY(error.lines().at(0).contains(place.aside().at(0)));
}

void TestJsonPreferencesStore::whatLiesAsideIsNeverWrittenOver()
{
    const PreferencesPlace place;
    const auto now = QDateTime::currentDateTimeUtc();
    // As long as this test may ever take, every name that could be chosen is taken already.
    for (int second = 0; second < 120; ++second) {
        const auto time = now.addSecs(second).toString(u"yyyyMMdd'T'HHmmss'Z'"_s);
        writeFile(QString(place.path + u".damaged-"_s + time), "earlier");
    }
    const auto before = place.aside();
    const CapturedStandardError error;
    for (const auto *damaged : {"first", "second"}) {
        place.fill(damaged);
        const JsonPreferencesStore store(place.path);
    }
    {
        place.fill(R"({"refreshInterval": "often"})");
        JsonPreferencesStore store(place.path);
        const AppSettings settings(store);
    }
    QStringList added;
    for (const auto &path : place.aside()) {
        if (!before.contains(path))
            added.append(QString::fromUtf8(readFile(path)));
        else
            QCOMPARE(readFile(path), "earlier");
    }
    QCOMPARE(added.size(), 3);
    QVERIFY(added.contains(u"first"_s) && added.contains(u"second"_s));
    QVERIFY(added.contains(u"{\"refreshInterval\": \"often\"}"_s));
}

void TestJsonPreferencesStore::aFileCutShortAnywhereIsNeitherLostNorFatal()
{
    const CapturedStandardError error;
    int damagedCount = 0;
    for (qsizetype length = 0; length <= completeFile.size(); ++length) {
        const auto part = completeFile.first(length);
        const PreferencesPlace place;
        place.fill(part);
        {
            JsonPreferencesStore store(place.path);
            const AppSettings settings(store);
        }
        const bool isWhole = part.trimmed() == completeFile.trimmed();
        QCOMPARE(place.aside().size(), isWhole ? 0 : 1);
        QCOMPARE(objectIn(place.content()).size(), isWhole ? objectIn(completeFile).size() : 8);
        if (!isWhole)
            QCOMPARE(place.onlyAside(), part);
        damagedCount += isWhole ? 0 : 1;
    }
    QCOMPARE(damagedCount, completeFile.size() - 1);
    QCOMPARE(error.lines().size(), damagedCount);
}

void TestJsonPreferencesStore::randomBytesAreNeitherLostNorFatal()
{
    QRandomGenerator random(20261120);
    const CapturedStandardError error;
    for (int round = 0; round < 100; ++round) {
        QByteArray noise;
        const int length = random.bounded(500);
        for (int i = 0; i < length; ++i)
            noise.append(static_cast<char>(random.bounded(256)));
        const PreferencesPlace place;
        place.fill(noise);
        {
            JsonPreferencesStore store(place.path);
            const AppSettings settings(store);
        }
        QCOMPARE(place.aside().size(), 1);
        QCOMPARE(place.onlyAside(), noise);
        QCOMPARE(objectIn(place.content()).size(), 8);
    }
}

// Whatever the changed byte did, the values of before are either in the file as they were or in a file aside.
void TestJsonPreferencesStore::aFlippedByteIsNeitherLostNorFatal()
{
    QRandomGenerator random(20261121);
    const CapturedStandardError error;
    for (int round = 0; round < 200; ++round) {
        auto changed = completeFile;
        changed[random.bounded(changed.size())] = static_cast<char>(random.bounded(256));
        const PreferencesPlace place;
        place.fill(changed);
        {
            JsonPreferencesStore store(place.path);
            const AppSettings settings(store);
        }
        if (place.aside().isEmpty()) {
            const auto before = objectIn(changed);
            const auto after = objectIn(place.content());
            for (auto member = before.begin(); member != before.end(); ++member)
                QCOMPARE(after.value(member.key()).type(), member.value().type());
        } else {
            QCOMPARE(place.onlyAside(), changed);
        }
    }
}

namespace {

void makeSocket(const QString &path)
{
    ::close(socketAt(path));
}

// One of our own: should the program ever replace a device, then not the system's. Source: full(4)
bool makeDevice(const QString &path)
{
    return ::mknod(QFile::encodeName(path).constData(), S_IFCHR | 0600, makedev(1, 7)) == 0;
}

// Of what was made there, so that any change to it is seen: its number and when it was last changed.
QString identityOf(const QString &path)
{
    struct stat status
    {
    };
    ::lstat(QFile::encodeName(path).constData(), &status);
    return u"%1 %2 %3"_s.arg(status.st_ino).arg(status.st_mode).arg(status.st_ctim.tv_nsec);
}

}  // namespace

void TestJsonPreferencesStore::whatIsNoFileIsLeftAlone_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("a folder") << u"folder"_s;
    QTest::newRow("a folder with something in it") << u"full folder"_s;
    QTest::newRow("a fifo") << u"fifo"_s;
    QTest::newRow("a socket") << u"socket"_s;
    QTest::newRow("a link to a fifo") << u"link to fifo"_s;
    QTest::newRow("a link to a folder") << u"link to folder"_s;
    QTest::newRow("a link to a device") << u"link to device"_s;
}

void TestJsonPreferencesStore::whatIsNoFileIsLeftAlone()
{
    QFETCH(QString, kind);
    const PreferencesPlace place;
    const auto other = place.home.filePath(u"other"_s);
    QDir().mkpath(place.folder);
    if (kind.endsWith(u"folder"_s))
        QDir().mkpath(kind.startsWith(u"link"_s) ? other : place.path);
    if (kind == u"full folder"_s)
        writeFile(QString(place.path + u"/something"_s), "x");
    if (kind.endsWith(u"fifo"_s))
        QCOMPARE(::mkfifo(QFile::encodeName(kind == u"fifo"_s ? place.path : other).constData(), 0600), 0);
    if (kind == u"socket"_s)
        makeSocket(place.path);
    if (kind.endsWith(u"device"_s) && !makeDevice(other))
        QSKIP("this needs the right to make a device");
    if (kind.startsWith(u"link"_s))
        QVERIFY(QFile::link(other, place.path));
    const QString before = identityOf(place.path) + identityOf(other);
    const CapturedStandardError error;
    {
        JsonPreferencesStore store(place.path);
        AppSettings settings(store);
        QCOMPARE(settings.refreshInterval(), 300.0);
        store.flush(std::chrono::minutes(1));
        settings.setRefreshInterval(60.0);
        QCOMPARE(settings.refreshInterval(), 60.0);
        QVERIFY(store.value(u"refreshInterval"_s) == PreferenceValue(60.0));
    }
    QCOMPARE(QString(identityOf(place.path) + identityOf(other)), before);
    QCOMPARE(namesIn(place.folder), QStringList{u"preferences.json"_s});
    QCOMPARE(error.lines().size(), 1);
}

void TestJsonPreferencesStore::aCircleOfLinksIsLeftAlone()
{
    const PreferencesPlace place;
    QDir().mkpath(place.folder);
    QVERIFY(QFile::link(u"there"_s, place.path));
    QVERIFY(QFile::link(u"preferences.json"_s, QString(place.folder + u"/there"_s)));
    const CapturedStandardError error;
    setNumber(place.path);
    QCOMPARE(namesIn(place.folder), (QStringList{u"preferences.json"_s, u"there"_s}));
    QVERIFY(QFileInfo(place.path).isSymLink());
    QCOMPARE(error.lines().size(), 1);
}

void TestJsonPreferencesStore::linksAreFollowedAndStay_data()
{
    QTest::addColumn<QStringList>("links");
    QTest::newRow("one absolute link") << QStringList{u"/dots/mine.json"_s};
    QTest::newRow("one relative link") << QStringList{u"../../dots/mine.json"_s};
    QTest::newRow("a chain of links") << QStringList{u"first"_s, u"second"_s, u"../../dots/mine.json"_s};
}

void TestJsonPreferencesStore::linksAreFollowedAndStay()
{
    QFETCH(QStringList, links);
    const PreferencesPlace place;
    const auto target = place.home.filePath(u"dots/mine.json"_s);
    writeFile(target, R"({"a": 1})");
    QDir().mkpath(place.folder);
    QString link = place.path;
    for (const auto &next : links) {
        QVERIFY(QFile::link(next.startsWith(u'/') ? QString(place.home.path() + next) : next, link));
        link = QString(place.folder + u'/' + next);
    }
    {
        JsonPreferencesStore store(place.path);
        QVERIFY(store.value(u"a"_s) == PreferenceValue(1.0));
        store.set(numberKey, number);
    }
    QVERIFY(QFileInfo(place.path).isSymLink());
    QVERIFY(!QFileInfo(target).isSymLink());
    QCOMPARE(objectIn(readFile(target)), objectIn(R"({"a": 1, "number": 42})"));
    QCOMPARE(namesIn(place.folder).size(), links.size());
    QCOMPARE(namesIn(place.home.filePath(u"dots"_s)), QStringList{u"mine.json"_s});
}

void TestJsonPreferencesStore::aDanglingLinkGetsItsTarget()
{
    const PreferencesPlace place;
    QDir().mkpath(place.folder);
    QVERIFY(QFile::link(u"../../dots/mine.json"_s, place.path));
    setNumber(place.path);
    QVERIFY(QFileInfo(place.path).isSymLink());
    QCOMPARE(objectIn(readFile(place.home.filePath(u"dots/mine.json"_s))), objectIn(R"({"number": 42})"));
    QCOMPARE(modeOf(place.home.filePath(u"dots"_s)), 0700);
}

void TestJsonPreferencesStore::aDamagedFileBehindALinkIsMovedAsideWhereItLies()
{
    const PreferencesPlace place;
    const auto target = place.home.filePath(u"dots/mine.json"_s);
    writeFile(target, "damaged");
    QDir().mkpath(place.folder);
    QVERIFY(QFile::link(target, place.path));
    const CapturedStandardError error;
    setNumber(place.path);
    const auto names = namesIn(place.home.filePath(u"dots"_s));
    QCOMPARE(names.size(), 2);
    QVERIFY(names.at(1).startsWith(u"mine.json.damaged-"_s));
    QCOMPARE(readFile(place.home.filePath(QString(u"dots/"_s + names.at(1)))), "damaged");
    QVERIFY(QFileInfo(place.path).isSymLink());
    QCOMPARE(objectIn(place.content()), objectIn(R"({"number": 42})"));
}

void TestJsonPreferencesStore::whatAKillLeftBehindIsRemoved_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("nothing yet") << QByteArray();
    QTest::newRow("a fragment") << QByteArray("{\"a\":");
    QTest::newRow("all of it") << QByteArray("{}");
}

void TestJsonPreferencesStore::whatAKillLeftBehindIsRemoved()
{
    QFETCH(QByteArray, content);
    const PreferencesPlace place;
    place.fill("{}");
    writeFile(QString(place.folder + u"/.preferences.json.velquarin"_s), content);
    const JsonPreferencesStore store(place.path);
    QCOMPARE(namesIn(place.folder), QStringList{u"preferences.json"_s});
}

// Whatever people call the copies that they make, and editors those that they forget.
void TestJsonPreferencesStore::whatSomebodyElsePutBesideTheFileStays()
{
    const PreferencesPlace place;
    place.fill("{}");
    const QStringList names{u"preferences.json.backup"_s, u"preferences.json.Laptop"_s, u"preferences.json.AbCdEf"_s,
                            u"preferences.json~"_s,       u".preferences.json.swp"_s,   u"preferences.json.velquarin"_s,
                            u".other.json.velquarin"_s};
    for (const auto &name : names)
        writeFile(QString(place.folder + u'/' + name), "{\"a\": 1}");
    const auto before = namesIn(place.folder);
    setNumber(place.path);
    QCOMPARE(namesIn(place.folder), before);
}

void TestJsonPreferencesStore::aFolderInThePlaceOfTheTemporaryIsNotRemoved()
{
    const PreferencesPlace place;
    place.fill("{}");
    QDir().mkpath(QString(place.folder + u"/.preferences.json.velquarin"_s));
    const CapturedStandardError error;
    setNumber(place.path);
    QCOMPARE(error.lines().size(), 1);
    QVERIFY(error.lines().at(0).contains(u"cannot be written"_s));
    QCOMPARE(place.content(), "{}");
}

VELQUARIN_TEST(TestJsonPreferencesStore)
#include "tst_jsonpreferencesstore.moc"
