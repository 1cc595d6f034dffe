// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Models/SettingsRecords.h"

#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <limits>

using namespace velquarin;
using namespace Qt::StringLiterals;

namespace {

const QUuid anId(u"{e621e1f8-c36c-495a-93fc-0c247a3e6e5f}"_s);
const QUuid anotherId(u"{00112233-4455-6677-8899-aabbccddeeff}"_s);

const TrackedRepository aRepository{anId, u"/home/ann/repo"_s, u"repo"_s, true, false};
const WatchedFolder aFolder{anId, u"/home/ann/code"_s, u"code"_s, true, 5};

const char *const repositoryText = R"({"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","path":"/home/ann/repo",)"
                                   R"("name":"repo","isEnabled":true,"isAutoDiscovered":false})";
const char *const folderText = R"({"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","path":"/home/ann/code",)"
                               R"("name":"code","isEnabled":true,"maxDepth":5})";

QJsonObject object(const char *text)
{
    return QJsonDocument::fromJson(text).object();
}

QJsonObject with(QJsonObject object, const QString &member, const QJsonValue &value)
{
    object.insert(member, value);
    return object;
}

QJsonObject without(QJsonObject object, const QString &member)
{
    object.remove(member);
    return object;
}

QByteArray arrayOf(const QList<QJsonObject> &objects)
{
    QJsonArray array;
    for (const auto &element : objects)
        array.append(element);
    return QJsonDocument(array).toJson();
}

QByteArray folderOfDepth(const QByteArray &depth)
{
    return '[' + QByteArray(folderText).chopped(2) + depth + '}' + ']';
}

// The names and types of the members, and a value of each JSON type with the name of that type.
const QMap<QString, QString> repositoryMembers{{u"id"_s, u"string"_s},
                                               {u"path"_s, u"string"_s},
                                               {u"name"_s, u"string"_s},
                                               {u"isEnabled"_s, u"boolean"_s},
                                               {u"isAutoDiscovered"_s, u"boolean"_s}};
const QMap<QString, QString> folderMembers{{u"id"_s, u"string"_s},
                                           {u"path"_s, u"string"_s},
                                           {u"name"_s, u"string"_s},
                                           {u"isEnabled"_s, u"boolean"_s},
                                           {u"maxDepth"_s, u"number"_s}};
const QMap<QString, QJsonValue> valuesByType{
    {u"string"_s, u"text"_s}, {u"boolean"_s, true},        {u"number"_s, 1},
    {u"null"_s, {}},          {u"array"_s, QJsonArray{1}}, {u"object"_s, QJsonObject{{u"a"_s, 1}}}};

void addBrokenRows(const QJsonObject &good, const QMap<QString, QString> &members)
{
    QTest::addColumn<QByteArray>("json");
    for (auto member = members.begin(); member != members.end(); ++member) {
        QTest::addRow("that lacks %s", qPrintable(member.key())) << arrayOf({good, without(good, member.key())});
        for (auto value = valuesByType.begin(); value != valuesByType.end(); ++value) {
            if (value.key() != member.value())
                QTest::addRow("whose %s is of type %s", qPrintable(member.key()), qPrintable(value.key()))
                    << arrayOf({with(good, member.key(), *value), good});
        }
    }
}

}  // namespace

class TestRecords : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { test::failOnAnyWarning(); }

    void aRepositoryHasExactlyItsFieldsAsMembers();
    void aFolderHasExactlyItsFieldsAsMembers();
    void idsAreWrittenInUpperCase();
    void membersAreReadInAnyOrder();
    void unknownMembersDoNotCount();
    void listsKeepTheirOrderThroughTheirText();
    void anEmptyListIsAnEmptyArray();
    void textsComeBackAsTheyWere_data();
    void textsComeBackAsTheyWere();
    void textThatIsNoUnicodeCannotBeEncoded();
    void textThatIsNoUnicodeIsNotTakenIn();

    void oneBrokenRepositoryFailsTheWholeList_data() { addBrokenRows(object(repositoryText), repositoryMembers); }
    void oneBrokenRepositoryFailsTheWholeList();
    void oneBrokenFolderFailsTheWholeList_data() { addBrokenRows(object(folderText), folderMembers); }
    void oneBrokenFolderFailsTheWholeList();
    void anObjectWithoutIsAutoDiscoveredFailsAsAWhole();
    void whatIsNoArrayOfObjectsFails_data();
    void whatIsNoArrayOfObjectsFails();

    void idsOfExactly36CharactersAreRead_data();
    void idsOfExactly36CharactersAreRead();
    void otherIdsFail_data();
    void otherIdsFail();
    void depthsAreIntegersOf64Bits_data();
    void depthsAreIntegersOf64Bits();
    void otherDepthsFail_data();
    void otherDepthsFail();

    void recordsAreEqualWhenAllFieldsAre();
    void theSamePathWithAnotherIdIsAnotherRecord();
    void aPathKeepsItsTrailingSlash();
};

void TestRecords::aRepositoryHasExactlyItsFieldsAsMembers()
{
    QCOMPARE(QJsonDocument::fromJson(encodeRecords(QList{aRepository}).value()).array(),
             QJsonArray{object(repositoryText)});
    QCOMPARE(decodeRecords<TrackedRepository>(arrayOf({object(repositoryText)})).value(), QList{aRepository});
}

void TestRecords::aFolderHasExactlyItsFieldsAsMembers()
{
    QCOMPARE(QJsonDocument::fromJson(encodeRecords(QList{aFolder}).value()).array(), QJsonArray{object(folderText)});
    QCOMPARE(decodeRecords<WatchedFolder>(arrayOf({object(folderText)})).value(), QList{aFolder});
}

void TestRecords::idsAreWrittenInUpperCase()
{
    QVERIFY(encodeRecords(QList{aRepository})->contains("\"E621E1F8-C36C-495A-93FC-0C247A3E6E5F\""));
    QVERIFY(encodeRecords(QList{aFolder})->contains("\"E621E1F8-C36C-495A-93FC-0C247A3E6E5F\""));
}

void TestRecords::membersAreReadInAnyOrder()
{
    const QByteArray backwards = R"([{"isAutoDiscovered":false,"isEnabled":true,"name":"repo","path":"/home/ann/repo",)"
                                 R"("id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F"}])";
    QCOMPARE(decodeRecords<TrackedRepository>(backwards).value(), QList{aRepository});
}

void TestRecords::unknownMembersDoNotCount()
{
    const auto more = QJsonObject{{u"a"_s, QJsonArray{1, u"two"_s}}};
    QCOMPARE(decodeRecords<TrackedRepository>(arrayOf({with(object(repositoryText), u"colour"_s, more)})).value(),
             QList{aRepository});
    QCOMPARE(decodeRecords<WatchedFolder>(arrayOf({with(object(folderText), u"colour"_s, more)})).value(),
             QList{aFolder});
}

void TestRecords::listsKeepTheirOrderThroughTheirText()
{
    QList<TrackedRepository> repositories;
    QList<WatchedFolder> folders;
    for (int i = 0; i < 100; ++i) {
        const auto path = u"/%1"_s.arg((i * 37) % 100);
        repositories.append({QUuid::createUuid(), path, path, i % 2 == 0, i % 3 == 0});
        folders.append({QUuid::createUuid(), path, path, i % 2 == 0, i - 50});
    }
    QCOMPARE(decodeRecords<TrackedRepository>(encodeRecords(repositories).value()).value(), repositories);
    QCOMPARE(decodeRecords<WatchedFolder>(encodeRecords(folders).value()).value(), folders);
}

void TestRecords::anEmptyListIsAnEmptyArray()
{
    QCOMPARE(encodeRecords(QList<TrackedRepository>()).value(), "[]");
    QCOMPARE(encodeRecords(QList<WatchedFolder>()).value(), "[]");
    QCOMPARE(decodeRecords<TrackedRepository>("[]").value(), QList<TrackedRepository>());
    QCOMPARE(decodeRecords<WatchedFolder>(" [ ] ").value(), QList<WatchedFolder>());
}

void TestRecords::textsComeBackAsTheyWere_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("an empty one") << u""_s;
    QTest::newRow("quotes and backslashes") << R"(/home/"ann"\n)";
    QTest::newRow("line ends and tabs") << u"/home/\n\r\t"_s;
    QTest::newRow("control characters") << QString(u'\u0001') + u'\u001f' + u'\u007f';
    QTest::newRow("a zero") << QString(QChar(u'\0'));
    QTest::newRow("letters of any script") << u"/home/Größe/日本/🔥"_s;
    QTest::newRow("a decomposed letter stays decomposed") << u"/home/u\u0308"_s;
    QTest::newRow("a byte-order mark") << QString(QChar(QChar::ByteOrderMark)) + u'a';
}

void TestRecords::textsComeBackAsTheyWere()
{
    QFETCH(QString, text);
    const QList repositories{TrackedRepository{anId, text, text, false, true}};
    const QList folders{WatchedFolder{anId, text, text, false, 0}};
    QCOMPARE(decodeRecords<TrackedRepository>(encodeRecords(repositories).value()).value(), repositories);
    QCOMPARE(decodeRecords<WatchedFolder>(encodeRecords(folders).value()).value(), folders);
}

void TestRecords::textThatIsNoUnicodeCannotBeEncoded()
{
    const QString half(QChar(u'\xd83d'));
    QVERIFY(!encodeRecords(QList<TrackedRepository>{aRepository, {anotherId, half, QString(), true, true}}));
    QVERIFY(!encodeRecords(QList<TrackedRepository>{{anotherId, QString(), half, true, true}}));
    QVERIFY(!encodeRecords(QList<WatchedFolder>{{anotherId, half, QString(), true, 1}}));
    QVERIFY(!encodeRecords(QList<WatchedFolder>{{anotherId, QString(), half, true, 1}}));
}

void TestRecords::textThatIsNoUnicodeIsNotTakenIn()
{
    const auto half = QByteArray(repositoryText).replace("/home/ann/repo", "\\ud83d");
    QVERIFY(!decodeRecords<TrackedRepository>('[' + half + ']'));
}

void TestRecords::oneBrokenRepositoryFailsTheWholeList()
{
    QFETCH(QByteArray, json);
    QVERIFY(!decodeRecords<TrackedRepository>(json));
}

void TestRecords::oneBrokenFolderFailsTheWholeList()
{
    QFETCH(QByteArray, json);
    QVERIFY(!decodeRecords<WatchedFolder>(json));
}

void TestRecords::anObjectWithoutIsAutoDiscoveredFailsAsAWhole()
{
    const auto good = object(repositoryText);
    QCOMPARE(decodeRecords<TrackedRepository>(arrayOf({good, good})).value().size(), 2);
    QVERIFY(!decodeRecords<TrackedRepository>(arrayOf({good, without(good, u"isAutoDiscovered"_s)})));
}

void TestRecords::whatIsNoArrayOfObjectsFails_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("an object") << QByteArray(repositoryText);
    QTest::newRow("a string") << QByteArray("\"[]\"");
    QTest::newRow("null") << QByteArray("null");
    QTest::newRow("an array of null") << QByteArray("[null]");
    QTest::newRow("an array of arrays") << QByteArray("[[]]");
    QTest::newRow("an array of an empty object") << QByteArray("[{}]");
    QTest::newRow("an array cut short") << '[' + QByteArray(repositoryText);
    QTest::newRow("an array and something behind it") << QByteArray("[] x");
    QTest::newRow("an array with a comma too many") << '[' + QByteArray(repositoryText) + ",]";
    QTest::newRow("an array with bytes that are no UTF-8") << QByteArray("[\"\xff\"]");
    QTest::newRow("an array in UTF-16") << QByteArray("[\0]\0", 4);
}

void TestRecords::whatIsNoArrayOfObjectsFails()
{
    QFETCH(QByteArray, json);
    QVERIFY(!decodeRecords<TrackedRepository>(json));
    QVERIFY(!decodeRecords<WatchedFolder>(json));
}

void TestRecords::idsOfExactly36CharactersAreRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QUuid>("id");
    QTest::newRow("in upper case") << u"E621E1F8-C36C-495A-93FC-0C247A3E6E5F"_s << anId;
    QTest::newRow("in lower case") << u"e621e1f8-c36c-495a-93fc-0c247a3e6e5f"_s << anId;
    QTest::newRow("in mixed case") << u"e621e1f8-C36C-495a-93FC-0c247a3e6e5f"_s << anId;
    QTest::newRow("all zeros") << u"00000000-0000-0000-0000-000000000000"_s << QUuid();
}

void TestRecords::idsOfExactly36CharactersAreRead()
{
    QFETCH(QString, text);
    QFETCH(QUuid, id);
    QCOMPARE(decodeRecords<TrackedRepository>(arrayOf({with(object(repositoryText), u"id"_s, text)})).value().at(0).id,
             id);
    QCOMPARE(decodeRecords<WatchedFolder>(arrayOf({with(object(folderText), u"id"_s, text)})).value().at(0).id, id);
}

void TestRecords::otherIdsFail_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << u""_s;
    QTest::newRow("in braces") << u"{E621E1F8-C36C-495A-93FC-0C247A3E6E5F}"_s;
    QTest::newRow("without hyphens") << u"E621E1F8C36C495A93FC0C247A3E6E5F"_s;
    QTest::newRow("a digit short") << u"E621E1F8-C36C-495A-93FC-0C247A3E6E5"_s;
    QTest::newRow("a digit too long") << u"E621E1F8-C36C-495A-93FC-0C247A3E6E5F0"_s;
    QTest::newRow("with a space behind") << u"E621E1F8-C36C-495A-93FC-0C247A3E6E5F "_s;
    QTest::newRow("with a letter that is no digit") << u"G621E1F8-C36C-495A-93FC-0C247A3E6E5F"_s;
    QTest::newRow("with a hyphen out of place") << u"E621E1F-8C36C-495A-93FC-0C247A3E6E5F"_s;
    QTest::newRow("with digits of another script") << u"٠٠000000-0000-0000-0000-000000000000"_s;
}

void TestRecords::otherIdsFail()
{
    QFETCH(QString, text);
    QVERIFY(!decodeRecords<TrackedRepository>(arrayOf({with(object(repositoryText), u"id"_s, text)})));
    QVERIFY(!decodeRecords<WatchedFolder>(arrayOf({with(object(folderText), u"id"_s, text)})));
}

void TestRecords::depthsAreIntegersOf64Bits_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<qint64>("depth");
    QTest::newRow("zero") << QByteArray("0") << qint64(0);
    QTest::newRow("below zero") << QByteArray("-3") << qint64(-3);
    QTest::newRow("beyond what a double holds") << QByteArray("9007199254740993") << qint64(9007199254740993);
    QTest::newRow("the largest") << QByteArray("9223372036854775807") << std::numeric_limits<qint64>::max();
    QTest::newRow("the smallest") << QByteArray("-9223372036854775808") << std::numeric_limits<qint64>::min();
    QTest::newRow("an integer written with a point") << QByteArray("5.0") << qint64(5);
    QTest::newRow("an integer written with an exponent") << QByteArray("1e3") << qint64(1000);
}

void TestRecords::depthsAreIntegersOf64Bits()
{
    QFETCH(QByteArray, text);
    QFETCH(qint64, depth);
    const auto folders = decodeRecords<WatchedFolder>(folderOfDepth(text)).value();
    QCOMPARE(folders.at(0).maxDepth, depth);
    QCOMPARE(decodeRecords<WatchedFolder>(encodeRecords(folders).value()).value(), folders);
}

void TestRecords::otherDepthsFail_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("a fraction") << QByteArray("5.5");
    QTest::newRow("beyond 64 bits") << QByteArray("9223372036854775808");
    QTest::newRow("far beyond 64 bits") << QByteArray("1e300");
    QTest::newRow("beyond any double") << QByteArray("1e400");
    QTest::newRow("a number in quotes") << QByteArray("\"5\"");
}

void TestRecords::otherDepthsFail()
{
    QFETCH(QByteArray, text);
    QVERIFY(!decodeRecords<WatchedFolder>(folderOfDepth(text)));
}

void TestRecords::recordsAreEqualWhenAllFieldsAre()
{
    QCOMPARE(aRepository, TrackedRepository(aRepository));
    QVERIFY(aRepository != (TrackedRepository{anId, u"/home/ann/repo/"_s, u"repo"_s, true, false}));
    QVERIFY(aRepository != (TrackedRepository{anId, u"/home/ann/repo"_s, u"Repo"_s, true, false}));
    QVERIFY(aRepository != (TrackedRepository{anId, u"/home/ann/repo"_s, u"repo"_s, false, false}));
    QVERIFY(aRepository != (TrackedRepository{anId, u"/home/ann/repo"_s, u"repo"_s, true, true}));
    QCOMPARE(aFolder, WatchedFolder(aFolder));
    QVERIFY(aFolder != (WatchedFolder{anId, u"/home/ann/code"_s, u"code"_s, true, 6}));
    QVERIFY(aFolder != (WatchedFolder{anId, u"/home/ann/code"_s, u"code"_s, false, 5}));
}

void TestRecords::theSamePathWithAnotherIdIsAnotherRecord()
{
    auto twin = aRepository;
    twin.id = anotherId;
    QVERIFY(twin != aRepository);
    QCOMPARE(decodeRecords<TrackedRepository>(encodeRecords(QList{aRepository, twin}).value()).value(),
             (QList{aRepository, twin}));
}

void TestRecords::aPathKeepsItsTrailingSlash()
{
    const QList repositories{TrackedRepository{anId, u"/home/ann/repo/"_s, u"repo"_s, true, false}};
    const auto decoded = decodeRecords<TrackedRepository>(encodeRecords(repositories).value()).value();
    QCOMPARE(decoded.at(0).path, u"/home/ann/repo/"_s);
}

VELQUARIN_TEST(TestRecords)
#include "tst_records.moc"
