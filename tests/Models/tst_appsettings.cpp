// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Models/AppSettings.h"
#include "Models/SettingsRecords.h"

#include "support/FakeClock.h"
#include "support/MemoryPreferences.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QMetaProperty>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <limits>

using namespace velquarin;
using namespace Qt::StringLiterals;
using velquarin::test::instant;
using velquarin::test::MemoryPreferences;

namespace {

using Stored = QMap<QString, PreferenceValue>;

const QList<TrackedRepository> twoRepositories{{QUuid::createUuid(), u"/a/one"_s, u"one"_s, true, false},
                                               {QUuid::createUuid(), u"/a/two"_s, u"two"_s, false, true}};
const QList<WatchedFolder> twoFolders{{QUuid::createUuid(), u"/a"_s, u"a"_s, true, 5},
                                      {QUuid::createUuid(), u"/b"_s, u"b"_s, false, 2}};

// Everything different from its default.
Stored complete()
{
    return {{u"trackedRepositories"_s, *encodeRecords(twoRepositories)},
            {u"watchedFolders"_s, *encodeRecords(twoFolders)},
            {u"autoDiscoveryEnabled"_s, false},
            {u"refreshInterval"_s, 60.0},
            {u"showStreakInMenuBar"_s, false},
            {u"notifyOnStreakRisk"_s, false},
            {u"countedAuthors"_s, u"me"_s},
            {u"countedBranches"_s, u"all"_s},
            {u"lastAutoDiscoveryScan"_s, instant("2026-11-20T18:10:00.123Z")}};
}

const QStringList savingWithoutScan{
    u"set trackedRepositories"_s, u"set watchedFolders"_s,      u"set autoDiscoveryEnabled"_s,
    u"set refreshInterval"_s,     u"set showStreakInMenuBar"_s, u"set notifyOnStreakRisk"_s,
    u"set countedAuthors"_s,      u"set countedBranches"_s,     u"remove lastAutoDiscoveryScan"_s};

QStringList savingWithScan()
{
    auto operations = savingWithoutScan;
    operations.last() = u"set lastAutoDiscoveryScan"_s;
    return operations;
}

QStringList pathsOf(const AppSettings &settings)
{
    QStringList paths;
    for (const auto &repository : settings.trackedRepositories())
        paths.append(repository.path);
    return paths;
}

QStringList folderPathsOf(const AppSettings &settings)
{
    QStringList paths;
    for (const auto &folder : settings.watchedFolders())
        paths.append(folder.path);
    return paths;
}

void compareWithDefault(const AppSettings &settings, const QString &key)
{
    MemoryPreferences empty;
    const AppSettings fresh(empty);
    const auto name = key.toLatin1();
    QCOMPARE(settings.property(name), fresh.property(name));
}

}  // namespace

class TestAppSettings : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { test::failOnAnyWarning(); }

    void theFirstLaunchHasTheDefaults();
    void theFirstLaunchStoresAllKeysButTheScan();
    void whatWasStoredIsLoaded();
    void creationSavesOnceInOrder();
    void whatIsSavedIsLoadedAgain();

    void anIntervalThatIsNotAboveZeroLoadsAs300_data();
    void anIntervalThatIsNotAboveZeroLoadsAs300();
    void anyIntervalAboveZeroIsKept_data();
    void anyIntervalAboveZeroIsKept();
    void aSwitchStoredAsAStringLoadsAsTrue_data();
    void aSwitchStoredAsAStringLoadsAsTrue();
    void aWordThatIsNotKnownMeansTheDefault_data();
    void aWordThatIsNotKnownMeansTheDefault();
    void recordsThatShareAnIdAreRemovedOneByOne();
    void malformedListsLoadEmptyAndAreOverwritten_data();
    void malformedListsLoadEmptyAndAreOverwritten();
    void aValueOfTheWrongTypeReadsAsItsDefault_data();
    void aValueOfTheWrongTypeReadsAsItsDefault();
    void anUnreadableValueIsCopiedAsideOnceBeforeTheSave();
    void aReadableStoreIsNotCopiedAside_data();
    void aReadableStoreIsNotCopiedAside();
    void oneUnreadableListLeavesTheOtherOne();

    void observersHearBeforeTheValueIsTakenOverAndSaved_data();
    void observersHearBeforeTheValueIsTakenOverAndSaved();
    void anEqualValueIsAnnouncedAndSavedToo();
    void everyPropertyCanBeWrittenByName();
    void anyIntervalCanBeAssigned();
    void theScanCanBeForgotten();
    void anAssignmentMadeByAnObserverIsNotLost();

    void anAddedRepositoryIsEnabledAndNamedAfterItsPath();
    void anAddedFolderIsEnabledAndNamedAfterItsPath();
    void aRepositoryIsTrackedOnce();
    void aTrailingSlashMakesAnotherPathWithTheSameName();
    void pathsDifferInCase();
    void aRefusedRepositorySavesNothing();
    void manyRepositoriesAreAddedWithOneSave();
    void aFolderIsWatchedOnceWhateverItsDepth();
    void additionsStandAtTheEnd();
    void idsAreNew();
    void removalGoesByIdAlone();
    void removingWhatIsNotThereSavesAllTheSame();
    void removalTakesEveryRecordWithThatId();
    void removingAFolderKeepsTheRepositoriesFoundUnderIt();
    void pruningRemovesDiscoveredRepositoriesThatAreGone();
    void pruningNeverTouchesWhatTheUserAdded_data();
    void pruningNeverTouchesWhatTheUserAdded();
    void pruningWithNoPathsRemovesAllDiscovered();
    void pruningComparesLetterByLetter();
    void pruningSavesWhetherOrNotAnythingWentAway();
    void aListThatCannotBeEncodedLeavesTheStoredOne();
};

void TestAppSettings::theFirstLaunchHasTheDefaults()
{
    MemoryPreferences store;
    const AppSettings settings(store);
    QVERIFY(settings.trackedRepositories().isEmpty());
    QVERIFY(settings.watchedFolders().isEmpty());
    QCOMPARE(settings.autoDiscoveryEnabled(), true);
    QCOMPARE(settings.refreshInterval(), 300.0);
    QCOMPARE(settings.showStreakInMenuBar(), true);
    QCOMPARE(settings.notifyOnStreakRisk(), true);
    QCOMPARE(settings.countedAuthors(), CountedAuthors::Everyone);
    QCOMPARE(settings.countedBranches(), CountedBranches::Default);
    QVERIFY(!settings.lastAutoDiscoveryScan());
}

void TestAppSettings::theFirstLaunchStoresAllKeysButTheScan()
{
    MemoryPreferences store;
    const AppSettings settings(store);
    const Stored expected{{u"trackedRepositories"_s, QByteArray("[]")},
                          {u"watchedFolders"_s, QByteArray("[]")},
                          {u"autoDiscoveryEnabled"_s, true},
                          {u"refreshInterval"_s, 300.0},
                          {u"showStreakInMenuBar"_s, true},
                          {u"notifyOnStreakRisk"_s, true},
                          {u"countedAuthors"_s, u"everyone"_s},
                          {u"countedBranches"_s, u"default"_s}};
    QCOMPARE(store.values, expected);
}

void TestAppSettings::whatWasStoredIsLoaded()
{
    MemoryPreferences store(complete());
    const AppSettings settings(store);
    QCOMPARE(settings.trackedRepositories(), twoRepositories);
    QCOMPARE(settings.watchedFolders(), twoFolders);
    QCOMPARE(settings.autoDiscoveryEnabled(), false);
    QCOMPARE(settings.refreshInterval(), 60.0);
    QCOMPARE(settings.showStreakInMenuBar(), false);
    QCOMPARE(settings.notifyOnStreakRisk(), false);
    QCOMPARE(settings.countedAuthors(), CountedAuthors::Me);
    QCOMPARE(settings.countedBranches(), CountedBranches::All);
    QCOMPARE(settings.lastAutoDiscoveryScan(), instant("2026-11-20T18:10:00.123Z"));
}

void TestAppSettings::creationSavesOnceInOrder()
{
    MemoryPreferences empty;
    const AppSettings first(empty);
    QCOMPARE(empty.operations, savingWithoutScan);

    MemoryPreferences full(complete());
    const AppSettings second(full);
    QCOMPARE(full.operations, savingWithScan());
}

void TestAppSettings::whatIsSavedIsLoadedAgain()
{
    MemoryPreferences store(complete());
    store.values.insert(u"lastStreakRiskNotification"_s, u"2026-11-20"_s);
    const auto before = store.values;
    const AppSettings settings(store);
    QCOMPARE(store.values, before);
}

void TestAppSettings::anIntervalThatIsNotAboveZeroLoadsAs300_data()
{
    QTest::addColumn<double>("stored");
    QTest::newRow("zero") << 0.0;
    QTest::newRow("zero from below") << -0.0;
    QTest::newRow("minus five") << -5.0;
    QTest::newRow("just below zero") << -std::numeric_limits<double>::denorm_min();
    QTest::newRow("no number") << std::nan("");
}

void TestAppSettings::anIntervalThatIsNotAboveZeroLoadsAs300()
{
    QFETCH(double, stored);
    MemoryPreferences store({{u"refreshInterval"_s, stored}});
    const AppSettings settings(store);
    QCOMPARE(settings.refreshInterval(), 300.0);
    QCOMPARE(store.values.value(u"refreshInterval"_s), PreferenceValue(300.0));
}

void TestAppSettings::anyIntervalAboveZeroIsKept_data()
{
    QTest::addColumn<double>("stored");
    QTest::newRow("the smallest") << std::numeric_limits<double>::denorm_min();
    QTest::newRow("a millisecond") << 0.001;
    QTest::newRow("a year") << 31'557'600.0;
    QTest::newRow("a value that the settings do not offer") << 42.5;
}

void TestAppSettings::anyIntervalAboveZeroIsKept()
{
    QFETCH(double, stored);
    MemoryPreferences store({{u"refreshInterval"_s, stored}});
    const AppSettings settings(store);
    QCOMPARE(settings.refreshInterval(), stored);
    QCOMPARE(store.values.value(u"refreshInterval"_s), PreferenceValue(stored));
}

void TestAppSettings::aSwitchStoredAsAStringLoadsAsTrue_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("discovery") << u"autoDiscoveryEnabled"_s;
    QTest::newRow("the streak in the bar") << u"showStreakInMenuBar"_s;
    QTest::newRow("the reminder") << u"notifyOnStreakRisk"_s;
}

void TestAppSettings::aSwitchStoredAsAStringLoadsAsTrue()
{
    QFETCH(QString, key);
    MemoryPreferences store({{key, u"false"_s}});
    const AppSettings settings(store);
    QCOMPARE(settings.property(key.toLatin1()), true);
    QCOMPARE(store.values.value(key), PreferenceValue(true));
}

void TestAppSettings::aWordThatIsNotKnownMeansTheDefault_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("word");
    for (const auto &key : {u"countedAuthors"_s, u"countedBranches"_s}) {
        for (const auto &word : {u""_s, u"ME"_s, u"All"_s, u"some"_s, u"me all"_s})
            QTest::addRow("%s \"%s\"", qPrintable(key), qPrintable(word)) << key << word;
    }
}

void TestAppSettings::aWordThatIsNotKnownMeansTheDefault()
{
    QFETCH(QString, key);
    QFETCH(QString, word);
    auto stored = complete();
    stored.insert(key, word);
    MemoryPreferences store(stored);
    compareWithDefault(AppSettings(store), key);
    QCOMPARE(store.copyAside.value(), stored);
    stored.insert(key, key == u"countedAuthors"_s ? u"everyone"_s : u"default"_s);
    QCOMPARE(store.values, stored);
}

void TestAppSettings::recordsThatShareAnIdAreRemovedOneByOne()
{
    auto repositories = twoRepositories;
    repositories[1].id = repositories[0].id;
    auto folders = twoFolders;
    folders[1].id = folders[0].id;
    MemoryPreferences store(
        {{u"trackedRepositories"_s, *encodeRecords(repositories)}, {u"watchedFolders"_s, *encodeRecords(folders)}});
    AppSettings settings(store);
    QCOMPARE(settings.trackedRepositories().constFirst(), repositories[0]);
    QCOMPARE(settings.trackedRepositories().constLast().path, repositories[1].path);
    QVERIFY(settings.trackedRepositories().constLast().id != repositories[0].id);
    settings.removeRepository(settings.trackedRepositories().constFirst());
    QCOMPARE(settings.trackedRepositories().size(), 1);
    QCOMPARE(settings.trackedRepositories().constFirst().path, repositories[1].path);
    settings.removeWatchedFolder(settings.watchedFolders().constLast());
    QCOMPARE(settings.watchedFolders(), QList<WatchedFolder>{folders[0]});
    QVERIFY(!store.copyAside);
}

void TestAppSettings::malformedListsLoadEmptyAndAreOverwritten_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QByteArray>("data");
    for (const char *key : {"trackedRepositories", "watchedFolders"}) {
        QTest::addRow("%s: malformed", key) << QString::fromLatin1(key) << QByteArray("[{");
        QTest::addRow("%s: empty data", key) << QString::fromLatin1(key) << QByteArray();
        QTest::addRow("%s: an object", key) << QString::fromLatin1(key) << QByteArray("{}");
        QTest::addRow("%s: a record without members", key) << QString::fromLatin1(key) << QByteArray("[{}]");
    }
}

void TestAppSettings::malformedListsLoadEmptyAndAreOverwritten()
{
    QFETCH(QString, key);
    QFETCH(QByteArray, data);
    MemoryPreferences store({{key, data}});
    const AppSettings settings(store);
    QVERIFY(settings.trackedRepositories().isEmpty());
    QVERIFY(settings.watchedFolders().isEmpty());
    QCOMPARE(store.values.value(key), PreferenceValue(QByteArray("[]")));
    QCOMPARE(store.copyAside.value().value(key), PreferenceValue(data));
}

void TestAppSettings::aValueOfTheWrongTypeReadsAsItsDefault_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("type");
    const Stored good = complete();
    const QList<PreferenceValue> values{
        true, 60.0, instant("2026-11-20T18:10:00Z"), QByteArray("[]"), QString(u"1"_s), UnreadableValue()};
    for (auto entry = good.begin(); entry != good.end(); ++entry) {
        for (int type = 0; type < values.size(); ++type) {
            if (values.at(type).index() != entry->index())
                QTest::addRow("%s as type %d", qPrintable(entry.key()), type) << entry.key() << type;
        }
    }
}

void TestAppSettings::aValueOfTheWrongTypeReadsAsItsDefault()
{
    QFETCH(QString, key);
    QFETCH(int, type);
    const QList<PreferenceValue> values{
        true, 60.0, instant("2026-11-20T18:10:00Z"), QByteArray("[]"), QString(u"1"_s), UnreadableValue()};
    auto stored = complete();
    stored.insert(key, values.at(type));
    MemoryPreferences store(stored);
    const AppSettings settings(store);
    compareWithDefault(settings, key);
    QCOMPARE(store.copyAside.value(), stored);
    auto others = complete();
    others.remove(key);
    store.values.remove(key);
    QCOMPARE(store.values, others);
}

void TestAppSettings::anUnreadableValueIsCopiedAsideOnceBeforeTheSave()
{
    const Stored stored{{u"watchedFolders"_s, QByteArray("?")}, {u"refreshInterval"_s, QString(u"often"_s)}};
    MemoryPreferences store(stored);
    const AppSettings settings(store);
    QCOMPARE(store.operations, QStringList(u"put copy aside"_s) + savingWithoutScan);
    QCOMPARE(store.copyAside.value(), stored);
}

void TestAppSettings::aReadableStoreIsNotCopiedAside_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<double>("interval");
    QTest::newRow("a bad interval is a number all the same") << u"refreshInterval"_s << -5.0;
    QTest::newRow("a key of somebody else") << u"lastStreakRiskNotification"_s << 1.0;
}

void TestAppSettings::aReadableStoreIsNotCopiedAside()
{
    QFETCH(QString, key);
    QFETCH(double, interval);
    MemoryPreferences store({{key, interval}});
    const AppSettings settings(store);
    QVERIFY(!store.copyAside);
}

void TestAppSettings::oneUnreadableListLeavesTheOtherOne()
{
    auto stored = complete();
    stored.insert(u"trackedRepositories"_s, QByteArray("[1]"));
    MemoryPreferences store(stored);
    const AppSettings settings(store);
    QVERIFY(settings.trackedRepositories().isEmpty());
    QCOMPARE(settings.watchedFolders(), twoFolders);
}

void TestAppSettings::observersHearBeforeTheValueIsTakenOverAndSaved_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QVariant>("newValue");
    QTest::newRow("repositories") << QByteArray("trackedRepositories") << QVariant::fromValue(twoRepositories);
    QTest::newRow("folders") << QByteArray("watchedFolders") << QVariant::fromValue(twoFolders);
    QTest::newRow("discovery") << QByteArray("autoDiscoveryEnabled") << QVariant(false);
    QTest::newRow("interval") << QByteArray("refreshInterval") << QVariant(60.0);
    QTest::newRow("the streak in the bar") << QByteArray("showStreakInMenuBar") << QVariant(false);
    QTest::newRow("the reminder") << QByteArray("notifyOnStreakRisk") << QVariant(false);
    QTest::newRow("the authors") << QByteArray("countedAuthors") << QVariant::fromValue(CountedAuthors::Me);
    QTest::newRow("the branches") << QByteArray("countedBranches") << QVariant::fromValue(CountedBranches::All);
    QTest::newRow("the scan") << QByteArray("lastAutoDiscoveryScan")
                              << QVariant::fromValue(std::optional(instant("2026-11-20T18:10:00Z")));
}

namespace {

// Notes what an observer sees while it is told of a change.
class Observer : public QObject
{
    Q_OBJECT
public:
    Observer(const AppSettings &settings, const MemoryPreferences &store, const QByteArray &name)
        : m_settings(settings)
        , m_store(store)
        , m_name(name)
    {
        const auto property = settings.metaObject()->property(settings.metaObject()->indexOfProperty(name));
        connect(&settings, property.notifySignal(), this,
                staticMetaObject.method(staticMetaObject.indexOfSlot("look()")));
    }

    QVariantList seenValues;
    QList<qsizetype> seenSaves;

private:
    Q_SLOT void look()
    {
        seenValues.append(m_settings.property(m_name));
        seenSaves.append(m_store.operations.size());
    }

    const AppSettings &m_settings;
    const MemoryPreferences &m_store;
    QByteArray m_name;
};

}  // namespace

void TestAppSettings::observersHearBeforeTheValueIsTakenOverAndSaved()
{
    QFETCH(QByteArray, name);
    QFETCH(QVariant, newValue);
    MemoryPreferences store;
    AppSettings settings(store);
    store.operations.clear();
    const auto before = settings.property(name);
    const auto property = settings.metaObject()->property(settings.metaObject()->indexOfProperty(name));
    QCOMPARE(property.notifySignal().name(), QByteArray(name + "WillChange"));
    Observer observer(settings, store, name);
    QSignalSpy spy(&settings, property.notifySignal());

    QVERIFY(settings.setProperty(name, newValue));

    QCOMPARE(observer.seenValues, QVariantList{before});
    QCOMPARE(observer.seenSaves, QList<qsizetype>{0});
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.at(0).at(0), newValue);
    QCOMPARE(settings.property(name), newValue);
    QCOMPARE(store.operations, name == "lastAutoDiscoveryScan" ? savingWithScan() : savingWithoutScan);
    const AppSettings again(store);
    QCOMPARE(again.property(name), newValue);
}

void TestAppSettings::anEqualValueIsAnnouncedAndSavedToo()
{
    MemoryPreferences store(complete());
    AppSettings settings(store);
    store.operations.clear();
    for (int i = settings.metaObject()->propertyOffset(); i < settings.metaObject()->propertyCount(); ++i) {
        const auto property = settings.metaObject()->property(i);
        QSignalSpy spy(&settings, property.notifySignal());
        QVERIFY(property.write(&settings, property.read(&settings)));
        QCOMPARE(spy.size(), 1);
        QCOMPARE(store.operations, savingWithScan());
        store.operations.clear();
    }
    QCOMPARE(store.values, complete());
}

void TestAppSettings::everyPropertyCanBeWrittenByName()
{
    const auto &meta = AppSettings::staticMetaObject;
    QStringList names;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i)
        names.append(QString::fromLatin1(meta.property(i).name()));
    QCOMPARE(names, (QStringList{u"trackedRepositories"_s, u"watchedFolders"_s, u"autoDiscoveryEnabled"_s,
                                 u"refreshInterval"_s, u"showStreakInMenuBar"_s, u"notifyOnStreakRisk"_s,
                                 u"countedAuthors"_s, u"countedBranches"_s, u"lastAutoDiscoveryScan"_s}));
}

void TestAppSettings::anyIntervalCanBeAssigned()
{
    MemoryPreferences store;
    AppSettings settings(store);
    settings.setRefreshInterval(-5.0);
    QCOMPARE(settings.refreshInterval(), -5.0);
    QCOMPARE(store.values.value(u"refreshInterval"_s), PreferenceValue(-5.0));
    const AppSettings next(store);
    QCOMPARE(next.refreshInterval(), 300.0);
}

void TestAppSettings::theScanCanBeForgotten()
{
    MemoryPreferences store(complete());
    AppSettings settings(store);
    settings.setLastAutoDiscoveryScan(std::nullopt);
    QVERIFY(!store.values.contains(u"lastAutoDiscoveryScan"_s));
    QVERIFY(!AppSettings(store).lastAutoDiscoveryScan());
}

void TestAppSettings::anAssignmentMadeByAnObserverIsNotLost()
{
    MemoryPreferences store;
    AppSettings settings(store);
    connect(&settings, &AppSettings::autoDiscoveryEnabledWillChange, &settings,
            [&settings] { settings.setRefreshInterval(60.0); });
    settings.setAutoDiscoveryEnabled(false);
    QCOMPARE(store.values.value(u"refreshInterval"_s), PreferenceValue(60.0));
    QCOMPARE(store.values.value(u"autoDiscoveryEnabled"_s), PreferenceValue(false));
}

void TestAppSettings::anAddedRepositoryIsEnabledAndNamedAfterItsPath()
{
    MemoryPreferences store;
    AppSettings settings(store);
    settings.addRepository(u"/home/ann/repo"_s, false);
    settings.addRepository(u"/home/ann/found"_s, true);
    const auto repositories = settings.trackedRepositories();
    QCOMPARE(repositories.size(), 2);
    QCOMPARE(repositories.at(0),
             (TrackedRepository{repositories.at(0).id, u"/home/ann/repo"_s, u"repo"_s, true, false}));
    QCOMPARE(repositories.at(1),
             (TrackedRepository{repositories.at(1).id, u"/home/ann/found"_s, u"found"_s, true, true}));
    QCOMPARE(AppSettings(store).trackedRepositories(), repositories);
}

void TestAppSettings::anAddedFolderIsEnabledAndNamedAfterItsPath()
{
    MemoryPreferences store;
    AppSettings settings(store);
    settings.addWatchedFolder(u"/home/ann/code/"_s, 5);
    const auto folders = settings.watchedFolders();
    QCOMPARE(folders.size(), 1);
    QCOMPARE(folders.at(0), (WatchedFolder{folders.at(0).id, u"/home/ann/code/"_s, u"code"_s, true, 5}));
    QCOMPARE(AppSettings(store).watchedFolders(), folders);
}

void TestAppSettings::aRepositoryIsTrackedOnce()
{
    MemoryPreferences store;
    AppSettings settings(store);
    settings.addRepository(u"/home/ann/repo"_s, false);
    const auto before = settings.trackedRepositories();
    settings.addRepository(u"/home/ann/repo"_s, true);
    QCOMPARE(settings.trackedRepositories(), before);
}

void TestAppSettings::aTrailingSlashMakesAnotherPathWithTheSameName()
{
    MemoryPreferences store;
    AppSettings settings(store);
    settings.addRepository(u"/home/ann/repo"_s, false);
    settings.addRepository(u"/home/ann/repo"_s, false);
    settings.addRepository(u"/home/ann/repo/"_s, false);
    QCOMPARE(pathsOf(settings), (QStringList{u"/home/ann/repo"_s, u"/home/ann/repo/"_s}));
    QCOMPARE(settings.trackedRepositories().at(0).name, u"repo"_s);
    QCOMPARE(settings.trackedRepositories().at(1).name, u"repo"_s);
}

void TestAppSettings::pathsDifferInCase()
{
    MemoryPreferences store;
    AppSettings settings(store);
    settings.addRepository(u"/home/ann/repo"_s, false);
    settings.addRepository(u"/home/ann/Repo"_s, false);
    QCOMPARE(settings.trackedRepositories().size(), 2);
}

void TestAppSettings::aRefusedRepositorySavesNothing()
{
    MemoryPreferences store;
    AppSettings settings(store);
    settings.addRepository(u"/home/ann/repo"_s, false);
    settings.addWatchedFolder(u"/home/ann"_s, 5);
    store.operations.clear();
    QSignalSpy repositoriesSpy(&settings, &AppSettings::trackedRepositoriesWillChange);
    QSignalSpy foldersSpy(&settings, &AppSettings::watchedFoldersWillChange);
    settings.addRepository(u"/home/ann/repo"_s, false);
    settings.addWatchedFolder(u"/home/ann"_s, 5);
    QCOMPARE(store.operations, QStringList());
    QCOMPARE(repositoriesSpy.size(), 0);
    QCOMPARE(foldersSpy.size(), 0);
}

void TestAppSettings::manyRepositoriesAreAddedWithOneSave()
{
    MemoryPreferences store;
    AppSettings settings(store);
    settings.addRepository(u"/b"_s, false);
    const QSignalSpy changes(&settings, &AppSettings::trackedRepositoriesWillChange);
    QCOMPARE(settings.addRepositories({u"/c"_s, u"/b"_s, u"/a"_s, u"/c"_s}, true), (QStringList{u"/c"_s, u"/a"_s}));
    QCOMPARE(changes.size(), 1);
    QCOMPARE(pathsOf(settings), (QStringList{u"/b"_s, u"/c"_s, u"/a"_s}));
    QVERIFY(!settings.trackedRepositories().constFirst().isAutoDiscovered);
    QVERIFY(settings.trackedRepositories().constLast().isAutoDiscovered);
    QCOMPARE(settings.addRepositories({u"/a"_s}, true), QStringList());
    QCOMPARE(changes.size(), 1);
}

void TestAppSettings::aFolderIsWatchedOnceWhateverItsDepth()
{
    MemoryPreferences store;
    AppSettings settings(store);
    settings.addWatchedFolder(u"/home/ann"_s, 5);
    settings.addWatchedFolder(u"/home/ann"_s, 2);
    QCOMPARE(settings.watchedFolders().size(), 1);
    QCOMPARE(settings.watchedFolders().at(0).maxDepth, 5);
    settings.addWatchedFolder(u"/home/ann/"_s, 2);
    QCOMPARE(folderPathsOf(settings), (QStringList{u"/home/ann"_s, u"/home/ann/"_s}));
}

void TestAppSettings::additionsStandAtTheEnd()
{
    MemoryPreferences store;
    AppSettings settings(store);
    for (const char *path : {"/z", "/a", "/m"}) {
        settings.addRepository(QString::fromLatin1(path), false);
        settings.addWatchedFolder(QString::fromLatin1(path), 1);
    }
    QCOMPARE(pathsOf(settings), (QStringList{u"/z"_s, u"/a"_s, u"/m"_s}));
    QCOMPARE(folderPathsOf(settings), (QStringList{u"/z"_s, u"/a"_s, u"/m"_s}));
}

void TestAppSettings::idsAreNew()
{
    MemoryPreferences store;
    AppSettings settings(store);
    QSet<QUuid> ids;
    for (int i = 0; i < 100; ++i) {
        settings.addRepository(u"/r%1"_s.arg(i), false);
        settings.addWatchedFolder(u"/f%1"_s.arg(i), 1);
        ids << settings.trackedRepositories().constLast().id << settings.watchedFolders().constLast().id;
    }
    QCOMPARE(ids.size(), 200);
    QVERIFY(!ids.contains(QUuid()));
}

void TestAppSettings::removalGoesByIdAlone()
{
    MemoryPreferences store(complete());
    AppSettings settings(store);
    auto sameId = twoRepositories.at(0);
    sameId.path = u"/elsewhere"_s;
    settings.removeRepository(sameId);
    QCOMPARE(settings.trackedRepositories(), QList{twoRepositories.at(1)});
    auto otherId = twoRepositories.at(1);
    otherId.id = QUuid::createUuid();
    settings.removeRepository(otherId);
    QCOMPARE(settings.trackedRepositories(), QList{twoRepositories.at(1)});

    auto sameFolderId = twoFolders.at(1);
    sameFolderId.path = u"/elsewhere"_s;
    settings.removeWatchedFolder(sameFolderId);
    QCOMPARE(settings.watchedFolders(), QList{twoFolders.at(0)});
}

void TestAppSettings::removingWhatIsNotThereSavesAllTheSame()
{
    MemoryPreferences store(complete());
    AppSettings settings(store);
    store.operations.clear();
    QSignalSpy repositoriesSpy(&settings, &AppSettings::trackedRepositoriesWillChange);
    QSignalSpy foldersSpy(&settings, &AppSettings::watchedFoldersWillChange);
    settings.removeRepository({QUuid::createUuid(), u"/a/one"_s, u"one"_s, true, false});
    settings.removeWatchedFolder({QUuid::createUuid(), u"/a"_s, u"a"_s, true, 5});
    QCOMPARE(store.operations, savingWithScan() + savingWithScan());
    QCOMPARE(repositoriesSpy.size(), 1);
    QCOMPARE(foldersSpy.size(), 1);
    QCOMPARE(settings.trackedRepositories(), twoRepositories);
    QCOMPARE(settings.watchedFolders(), twoFolders);
}

void TestAppSettings::removalTakesEveryRecordWithThatId()
{
    MemoryPreferences store;
    AppSettings settings(store);
    const auto &one = twoRepositories.at(0);
    const auto &two = twoRepositories.at(1);
    settings.setTrackedRepositories({one, two, one});
    settings.removeRepository(one);
    QCOMPARE(settings.trackedRepositories(), QList{two});
}

void TestAppSettings::removingAFolderKeepsTheRepositoriesFoundUnderIt()
{
    MemoryPreferences store;
    AppSettings settings(store);
    settings.addWatchedFolder(u"/a"_s, 5);
    settings.addRepository(u"/a/found"_s, true);
    settings.removeWatchedFolder(settings.watchedFolders().at(0));
    QVERIFY(settings.watchedFolders().isEmpty());
    QCOMPARE(pathsOf(settings), QStringList(u"/a/found"_s));
}

void TestAppSettings::pruningRemovesDiscoveredRepositoriesThatAreGone()
{
    MemoryPreferences store;
    AppSettings settings(store);
    settings.addRepository(u"/a/stays"_s, true);
    settings.addRepository(u"/a/goes"_s, true);
    settings.addRepository(u"/a/added"_s, false);
    settings.addRepository(u"/a/stays too"_s, true);
    settings.pruneOrphanedAutoDiscoveredRepos({u"/a/stays too"_s, u"/a/stays"_s, u"/a/never seen"_s});
    QCOMPARE(pathsOf(settings), (QStringList{u"/a/stays"_s, u"/a/added"_s, u"/a/stays too"_s}));
    QCOMPARE(pathsOf(AppSettings(store)), pathsOf(settings));
}

void TestAppSettings::pruningNeverTouchesWhatTheUserAdded_data()
{
    QTest::addColumn<QSet<QString>>("validPaths");
    QTest::newRow("with a set that holds its path") << QSet<QString>{u"/a/added"_s};
    QTest::newRow("with a set that does not") << QSet<QString>{u"/a/other"_s};
    QTest::newRow("with an empty set") << QSet<QString>();
}

void TestAppSettings::pruningNeverTouchesWhatTheUserAdded()
{
    QFETCH(QSet<QString>, validPaths);
    MemoryPreferences store;
    AppSettings settings(store);
    settings.addRepository(u"/a/added"_s, false);
    const auto before = settings.trackedRepositories();
    settings.pruneOrphanedAutoDiscoveredRepos(validPaths);
    QCOMPARE(settings.trackedRepositories(), before);
}

void TestAppSettings::pruningWithNoPathsRemovesAllDiscovered()
{
    MemoryPreferences store;
    AppSettings settings(store);
    settings.addRepository(u"/a/found"_s, true);
    settings.addRepository(u"/a/added"_s, false);
    settings.addRepository(u"/b/found"_s, true);
    settings.pruneOrphanedAutoDiscoveredRepos({});
    QCOMPARE(pathsOf(settings), QStringList(u"/a/added"_s));
}

void TestAppSettings::pruningComparesLetterByLetter()
{
    MemoryPreferences store;
    AppSettings settings(store);
    settings.addRepository(u"/a/found"_s, true);
    settings.pruneOrphanedAutoDiscoveredRepos({u"/a/found/"_s, u"/a/Found"_s});
    QCOMPARE(pathsOf(settings), QStringList());
}

void TestAppSettings::pruningSavesWhetherOrNotAnythingWentAway()
{
    MemoryPreferences store;
    AppSettings settings(store);
    settings.addRepository(u"/a/found"_s, true);
    store.operations.clear();
    QSignalSpy spy(&settings, &AppSettings::trackedRepositoriesWillChange);
    settings.pruneOrphanedAutoDiscoveredRepos({u"/a/found"_s});
    QCOMPARE(spy.size(), 1);
    QCOMPARE(store.operations, savingWithoutScan);
}

void TestAppSettings::aListThatCannotBeEncodedLeavesTheStoredOne()
{
    MemoryPreferences store(complete());
    AppSettings settings(store);
    settings.setRefreshInterval(120.0);
    settings.addRepository(QString(QChar(u'\xd83d')), false);
    QCOMPARE(settings.trackedRepositories().size(), 3);
    QCOMPARE(store.values.value(u"trackedRepositories"_s), complete().value(u"trackedRepositories"_s));
    QCOMPARE(store.values.value(u"refreshInterval"_s), PreferenceValue(120.0));
}

VELQUARIN_TEST(TestAppSettings)
#include "tst_appsettings.moc"
