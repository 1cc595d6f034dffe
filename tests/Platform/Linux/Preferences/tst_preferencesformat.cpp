// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Preferences/PreferencesFormat.h"

#include "support/FakeClock.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QJsonArray>
#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <limits>

using namespace velquarin;
using namespace Qt::StringLiterals;
using velquarin::test::instant;

namespace {

QJsonValue parsed(const QByteArray &value)
{
    return decodePreferences(QByteArray("{\"key\": " + value + '}')).value().value(u"key"_s);
}

PreferenceValue throughTheFile(const PreferenceValue &value)
{
    const auto text = encodePreferences({{u"key"_s, jsonFrom(value).value()}});
    return preferenceFrom(decodePreferences(text).value().value(u"key"_s));
}

}  // namespace

Q_DECLARE_METATYPE(velquarin::PreferenceValue)

class TestPreferencesFormat : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { test::failOnAnyWarning(); }
    void theFileIsOneSortedIndentedObject();
    void valuesStandInTheFileAs_data();
    void valuesStandInTheFileAs();
    void valuesComeBackWithTheirType_data();
    void valuesComeBackWithTheirType();
    void anyBytesComeBack();
    void whatJsonCannotHoldHasNoForm_data();
    void whatJsonCannotHoldHasNoForm();
    void momentsAreReadInAnyZoneThatTheyName_data();
    void momentsAreReadInAnyZoneThatTheyName();
    void otherFormsAreUnreadable_data();
    void otherFormsAreUnreadable();
    void aTextThatIsNoObjectIsDamaged_data();
    void aTextThatIsNoObjectIsDamaged();
    void aTextThatIsAnObjectIsNot_data();
    void aTextThatIsAnObjectIsNot();
};

void TestPreferencesFormat::theFileIsOneSortedIndentedObject()
{
    const QJsonObject values{{u"zoo"_s, jsonFrom(300.0).value()},
                             {u"data"_s, jsonFrom(QByteArray("[]")).value()},
                             {u"Apple"_s, jsonFrom(true).value()},
                             {u"when"_s, jsonFrom(instant("2026-11-20T18:10:00Z")).value()}};
    QCOMPARE(encodePreferences(values), QByteArray("{\n"
                                                   "    \"Apple\": true,\n"
                                                   "    \"data\": {\n"
                                                   "        \"data\": \"[]\"\n"
                                                   "    },\n"
                                                   "    \"when\": {\n"
                                                   "        \"date\": \"2026-11-20T18:10:00.000Z\"\n"
                                                   "    },\n"
                                                   "    \"zoo\": 300\n"
                                                   "}\n"));
}

void TestPreferencesFormat::valuesStandInTheFileAs_data()
{
    QTest::addColumn<PreferenceValue>("value");
    QTest::addColumn<QByteArray>("json");
    const auto row = [](const char *name, const PreferenceValue &value, const QByteArray &json) {
        QTest::newRow(name) << value << json;
    };
    row("true", true, "true");
    row("false", false, "false");
    row("a whole number", 300.0, "300");
    row("a fraction", 0.1, "0.1");
    row("a string", u"2026-11-20"_s, "\"2026-11-20\"");
    row("a moment with milliseconds and a Z", instant("2026-11-20T18:10:00.123Z"),
        R"({"date": "2026-11-20T18:10:00.123Z"})");
    row("a moment before the epoch", Instant(std::chrono::milliseconds(-1)), R"({"date": "1969-12-31T23:59:59.999Z"})");
    row("no bytes as an empty text", QByteArray(""), R"({"data": ""})");
    row("bytes as text where they are UTF-8", QByteArray("gr\xc3\xbc\xc3\x9f"), "{\"data\": \"gr\xc3\xbc\xc3\x9f\"}");
    row("bytes as text with a zero in them", QByteArray("a\0b", 3), R"({"data": "a\u0000b"})");
    row("bytes in base64 where they are not", QByteArray("\xff\xfe", 2), R"({"base64": "//4="})");
    row("bytes in base64 where they are cut inside of a letter", QByteArray("a\xc3"), R"({"base64": "YcM="})");
    row("bytes in base64 where a mark stands first", QByteArray("\xef\xbb\xbf[]"), R"({"base64": "77u/W10="})");
    row("bytes in base64 where they are a coded surrogate", QByteArray("\xed\xa0\x80"), R"({"base64": "7aCA"})");
}

void TestPreferencesFormat::valuesStandInTheFileAs()
{
    QFETCH(PreferenceValue, value);
    QFETCH(QByteArray, json);
    QCOMPARE(jsonFrom(value).value(), parsed(json));
    QVERIFY(preferenceFrom(parsed(json)) == value);
    QVERIFY(throughTheFile(value) == value);
}

void TestPreferencesFormat::valuesComeBackWithTheirType_data()
{
    QTest::addColumn<PreferenceValue>("value");
    const auto row = [](const char *name, const PreferenceValue &value) { QTest::newRow(name) << value; };
    row("the smallest number", std::numeric_limits<double>::denorm_min());
    row("the largest number", std::numeric_limits<double>::max());
    row("the lowest number", std::numeric_limits<double>::lowest());
    row("a number with all its digits", 0.1 + 0.2);
    row("zero", 0.0);
    row("one, which is not true", 1.0);
    row("an empty string", QString(u""_s));
    row("a string that looks like a moment", u"2026-11-20T18:10:00.000Z"_s);
    row("a string with a mark first", QString(QChar(QChar::ByteOrderMark)) + u'a');
    row("a string with control characters", u"\u0001\n\"\\"_s);
    row("bytes that look like a typed value", QByteArray(R"({"date": "2026-11-20T18:10:00.000Z"})"));
    row("the epoch", Instant());
    row("the first moment that has a form", instant("0001-01-01T00:00:00.000Z"));
    row("the last moment that has a form", instant("9999-12-31T23:59:59.999Z"));
}

void TestPreferencesFormat::valuesComeBackWithTheirType()
{
    QFETCH(PreferenceValue, value);
    const auto back = throughTheFile(value);
    QCOMPARE(back.index(), value.index());
    QVERIFY(back == value);
}

void TestPreferencesFormat::anyBytesComeBack()
{
    QRandomGenerator random(20261120);
    for (int round = 0; round < 2000; ++round) {
        QByteArray bytes;
        const int length = random.bounded(12);
        const int highest = random.bounded(2) == 0 ? 128 : 256;
        for (int i = 0; i < length; ++i)
            bytes.append(static_cast<char>(random.bounded(highest)));
        QCOMPARE(std::get<QByteArray>(throughTheFile(bytes)), bytes);
    }
}

void TestPreferencesFormat::whatJsonCannotHoldHasNoForm_data()
{
    QTest::addColumn<PreferenceValue>("value");
    const auto row = [](const char *name, const PreferenceValue &value) { QTest::newRow(name) << value; };
    row("no number", std::nan(""));
    row("infinity", std::numeric_limits<double>::infinity());
    row("minus infinity", -std::numeric_limits<double>::infinity());
    row("half a character", QString(QChar(u'\xd83d')));
    row("a moment beyond the year 9999", instant("9999-12-31T23:59:59.999Z") + std::chrono::milliseconds(1));
    row("a moment before the year 1", instant("0001-01-01T00:00:00.000Z") - std::chrono::milliseconds(1));
    row("the first of all moments", Instant::min());
    row("the last of all moments", Instant::max());
    row("an unreadable value", UnreadableValue());
}

void TestPreferencesFormat::whatJsonCannotHoldHasNoForm()
{
    QFETCH(PreferenceValue, value);
    QVERIFY(!jsonFrom(value));
}

void TestPreferencesFormat::momentsAreReadInAnyZoneThatTheyName_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("in UTC") << QByteArray(R"({"date": "2026-11-20T18:10:00.000Z"})");
    QTest::newRow("without milliseconds") << QByteArray(R"({"date": "2026-11-20T18:10:00Z"})");
    QTest::newRow("with an offset") << QByteArray(R"({"date": "2026-11-20T23:40:00.000+05:30"})");
}

void TestPreferencesFormat::momentsAreReadInAnyZoneThatTheyName()
{
    QFETCH(QByteArray, json);
    QVERIFY(preferenceFrom(parsed(json)) == PreferenceValue(instant("2026-11-20T18:10:00Z")));
}

void TestPreferencesFormat::otherFormsAreUnreadable_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("null") << QByteArray("null");
    QTest::newRow("an array") << QByteArray("[1]");
    QTest::newRow("an empty object") << QByteArray("{}");
    QTest::newRow("an object of another member") << QByteArray(R"({"colour": "red"})");
    QTest::newRow("an object with a member more") << QByteArray(R"({"data": "[]", "colour": "red"})");
    QTest::newRow("a date that is a number") << QByteArray(R"({"date": 5})");
    QTest::newRow("a date that does not exist") << QByteArray(R"({"date": "2026-02-30T18:10:00.000Z"})");
    QTest::newRow("a date without a zone") << QByteArray(R"({"date": "2026-11-20T18:10:00.000"})");
    QTest::newRow("a date without a time") << QByteArray(R"({"date": "2026-11-20"})");
    QTest::newRow("an empty date") << QByteArray(R"({"date": ""})");
    QTest::newRow("data that is no string") << QByteArray(R"({"data": []})");
    QTest::newRow("data that is no Unicode") << QByteArray(R"({"data": "\ud83d"})");
    QTest::newRow("base64 with a foreign letter") << QByteArray(R"({"base64": "//4*"})");
    QTest::newRow("base64 cut short") << QByteArray(R"({"base64": "//4=="})");
}

void TestPreferencesFormat::otherFormsAreUnreadable()
{
    QFETCH(QByteArray, json);
    QVERIFY(preferenceFrom(parsed(json)) == PreferenceValue(UnreadableValue()));
}

void TestPreferencesFormat::aTextThatIsNoObjectIsDamaged_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("nothing but spaces") << QByteArray(" \n");
    QTest::newRow("an array") << QByteArray("[]");
    QTest::newRow("a number") << QByteArray("5");
    QTest::newRow("a string") << QByteArray("\"{}\"");
    QTest::newRow("null") << QByteArray("null");
    QTest::newRow("cut short") << QByteArray(R"({"a": )");
    QTest::newRow("without the last brace") << QByteArray(R"({"a": true)");
    QTest::newRow("something behind it") << QByteArray("{} {}");
    QTest::newRow("a zero behind it") << QByteArray("{}\0", 3);
    QTest::newRow("a comma too many") << QByteArray(R"({"a": true,})");
    QTest::newRow("a comment") << QByteArray("{} // mine");
    QTest::newRow("a number outside of a double") << QByteArray(R"({"a": 1e400})");
    QTest::newRow("bytes that are no UTF-8") << QByteArray("{\"a\": \"\xff\"}");
    QTest::newRow("nested too deep") << QByteArray("{\"a\":" + QByteArray(1025, '[') + QByteArray(1025, ']') + '}');
    QTest::newRow("UTF-16") << QByteArray("{\0}\0", 4);
    QTest::newRow("zeros") << QByteArray(4096, '\0');
}

void TestPreferencesFormat::aTextThatIsNoObjectIsDamaged()
{
    QFETCH(QByteArray, text);
    QVERIFY(!decodePreferences(text));
}

void TestPreferencesFormat::aTextThatIsAnObjectIsNot_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("count");
    QTest::newRow("an empty object") << QByteArray("{}") << 0;
    QTest::newRow("with spaces around it") << QByteArray("\n {} \r\n\t") << 0;
    QTest::newRow("with a byte-order mark first") << QByteArray("\xef\xbb\xbf{\"a\": 1}") << 1;
    QTest::newRow("nested deep") << QByteArray("{\"a\":" + QByteArray(1000, '[') + QByteArray(1000, ']') + '}') << 1;
    QTest::newRow("with one key twice") << QByteArray(R"({"a": 1, "a": 2})") << 1;
}

void TestPreferencesFormat::aTextThatIsAnObjectIsNot()
{
    QFETCH(QByteArray, text);
    QTEST(int(decodePreferences(text).value().size()), "count");
}

VELQUARIN_TEST(TestPreferencesFormat)
#include "tst_preferencesformat.moc"
