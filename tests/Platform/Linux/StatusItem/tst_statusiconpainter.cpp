// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/StatusIconPainter.h"

#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QApplication>
#include <QTest>

#include <cmath>

using namespace velquarin;

namespace {

StatusItemAppearance waiting(const char *title = "")
{
    return {QStringLiteral("flame"), true, QStringLiteral("Velquarin"), QLatin1String(title)};
}

StatusItemAppearance committed(const char *title = "")
{
    return {QStringLiteral("flame.fill"), false, QStringLiteral("Velquarin"), QLatin1String(title)};
}

StatusItemAppearance syncing(const char *title = "")
{
    return {QStringLiteral("arrow.triangle.2.circlepath"), true, QStringLiteral("Syncing"), QLatin1String(title)};
}

QList<QSize> sizesOf(const QList<QImage> &images)
{
    QList<QSize> sizes;
    for (const auto &image : images)
        sizes.append(image.size());
    return sizes;
}

// How many wholly opaque pixels have exactly this colour.
int count(const QImage &image, QRgb color)
{
    const auto pixels = image.convertToFormat(QImage::Format_ARGB32);
    int found = 0;
    for (int y = 0; y < pixels.height(); ++y) {
        for (int x = 0; x < pixels.width(); ++x)
            found += pixels.pixel(x, y) == color ? 1 : 0;
    }
    return found;
}

// The smallest rectangle around all that is painted.
QRect painted(const QImage &image)
{
    QRect rectangle;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) > 16)
                rectangle |= QRect(x, y, 1, 1);
        }
    }
    return rectangle;
}

double luminance(QRgb color)
{
    const auto linear = [](int channel) {
        const auto value = channel / 255.0;
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color)) + 0.0722 * linear(qBlue(color));
}

// As the Web Content Accessibility Guidelines define it.
double contrast(QRgb left, QRgb right)
{
    const auto [dark, light] = std::minmax({luminance(left), luminance(right)});
    return (light + 0.05) / (dark + 0.05);
}

constexpr QRgb lightPanel = qRgb(0xf2, 0xf2, 0xf2);
constexpr QRgb darkPanel = qRgb(0x2b, 0x2b, 0x2b);

}  // namespace

class TestStatusIconPainter : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { test::failOnAnyWarning(); }
    void everySizeThatPanelsUseIsOffered();
    void theWidePictureIsTwiceAsWideAsHigh();
    void withoutANumberTheWidePictureIsSquare();
    void aSymbolIsPaintedAtEverySize_data();
    void aSymbolIsPaintedAtEverySize();
    void theGroundIsTransparent();
    void aWaitingDayIsGreyAndACommittedOneOrange();
    void theNumberChangesThePicture();
    void theNumberIsWhiteInADarkHalo_data();
    void theNumberIsWhiteInADarkHalo();
    void aNumberStaysInsideThePicture_data();
    void aNumberStaysInsideThePicture();
    void whileSyncingThereIsNoNumber();
    void theNumberReadsAgainstItsHalo();
    void theSymbolReadsOnLightAndDarkPanels();
    void aTitleBecomesAShortNumber_data();
    void aTitleBecomesAShortNumber();
    void pixelsAreSentAlphaFirstAndUnmultiplied();
    void coloursAreSentMultipliedWithTheirAlphaWhereTheHostTakesThemSo();
    void wordsTellWhatThePictureShows_data();
    void wordsTellWhatThePictureShows();
};

void TestStatusIconPainter::everySizeThatPanelsUseIsOffered()
{
    const QList<QSize> expected{{16, 16}, {22, 22}, {24, 24}, {32, 32}, {48, 48}, {64, 64}};
    QCOMPARE(sizesOf(squareIcons(waiting(" 42"))), expected);
    QCOMPARE(sizesOf(squareIcons(committed())), expected);
}

void TestStatusIconPainter::theWidePictureIsTwiceAsWideAsHigh()
{
    const QList<QSize> expected{{48, 24}, {96, 48}};
    QCOMPARE(sizesOf(wideIcons(waiting(" 7"))), expected);
    QCOMPARE(sizesOf(wideIcons(committed(" 365"))), expected);
}

void TestStatusIconPainter::withoutANumberTheWidePictureIsSquare()
{
    const QList<QSize> expected{{24, 24}, {48, 48}};
    QCOMPARE(sizesOf(wideIcons(waiting())), expected);
    QCOMPARE(wideIcons(syncing()).first(), paintSquareIcon(syncing(), 24));
}

void TestStatusIconPainter::aSymbolIsPaintedAtEverySize_data()
{
    QTest::addColumn<int>("size");
    for (const auto size : {16, 22, 24, 32, 48, 64})
        QTest::addRow("%d pixels", size) << size;
}

// The drawings fill most of the picture and are centred in it.
void TestStatusIconPainter::aSymbolIsPaintedAtEverySize()
{
    QFETCH(int, size);
    for (const auto &appearance : {waiting(), committed(), syncing()}) {
        const auto place = painted(paintSquareIcon(appearance, size));
        QVERIFY2(place.height() > size * 3 / 4, qPrintable(appearance.symbolName));
        QVERIFY(std::abs((place.left() + place.right() + 1) - size) <= 2);
        QVERIFY(std::abs((place.top() + place.bottom() + 1) - size) <= 2);
    }
}

void TestStatusIconPainter::theGroundIsTransparent()
{
    for (const auto &image : squareIcons(committed(" 7"))) {
        QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
        QCOMPARE(qAlpha(image.pixel(image.width() - 1, 0)), 0);
    }
}

void TestStatusIconPainter::aWaitingDayIsGreyAndACommittedOneOrange()
{
    const auto grey = paintSquareIcon(waiting(), 48);
    const auto orange = paintSquareIcon(committed(), 48);
    QVERIFY(count(grey, statuscolor::templateGrey) > 100);
    QCOMPARE(count(grey, statuscolor::committedOrange), 0);
    QVERIFY(count(orange, statuscolor::committedOrange) > 100);
    QCOMPARE(count(orange, statuscolor::templateGrey), 0);
}

void TestStatusIconPainter::theNumberChangesThePicture()
{
    for (const auto size : {16, 22, 24}) {
        QVERIFY(paintSquareIcon(committed(" 7"), size) != paintSquareIcon(committed(" 8"), size));
        QVERIFY(paintSquareIcon(waiting(" 41"), size) != paintSquareIcon(waiting(" 42"), size));
        QVERIFY(paintSquareIcon(waiting(" 42"), size) != paintSquareIcon(waiting(), size));
        QCOMPARE(paintSquareIcon(waiting(" 42"), size), paintSquareIcon(waiting(" 42"), size));
    }
}

void TestStatusIconPainter::theNumberIsWhiteInADarkHalo_data()
{
    aSymbolIsPaintedAtEverySize_data();
}

void TestStatusIconPainter::theNumberIsWhiteInADarkHalo()
{
    QFETCH(int, size);
    const auto grey = paintSquareIcon(waiting(" 42"), size);
    QVERIFY(count(grey, statuscolor::number) > size / 4);
    QVERIFY(count(grey, statuscolor::haloOnGrey) > size / 4);
    QCOMPARE(count(paintSquareIcon(waiting(), size), statuscolor::number), 0);

    const auto orange = paintSquareIcon(committed(" 42"), size);
    QVERIFY(count(orange, statuscolor::number) > size / 4);
    QVERIFY(count(orange, statuscolor::haloOnOrange) > size / 4);
}

void TestStatusIconPainter::aNumberStaysInsideThePicture_data()
{
    QTest::addColumn<QString>("title");
    for (const auto *title : {" 1", " 8", " 42", " 88", " 365", " 888", " 1000", " 99999", " 123456789"})
        QTest::newRow(title) << QString::fromLatin1(title);
}

// White that is cut off would touch the edge; the halo around it may.
void TestStatusIconPainter::aNumberStaysInsideThePicture()
{
    QFETCH(QString, title);
    auto appearance = committed();
    appearance.title = title;
    for (const auto &image : squareIcons(appearance) + wideIcons(appearance)) {
        for (int y = 0; y < image.height(); ++y) {
            QVERIFY(qBlue(image.pixel(0, y)) < 0xc0);
            QVERIFY(qBlue(image.pixel(image.width() - 1, y)) < 0xc0);
        }
        for (int x = 0; x < image.width(); ++x) {
            QVERIFY(qBlue(image.pixel(x, 0)) < 0xc0);
            QVERIFY(qBlue(image.pixel(x, image.height() - 1)) < 0xc0);
        }
    }
}

void TestStatusIconPainter::whileSyncingThereIsNoNumber()
{
    QCOMPARE(paintSquareIcon(syncing(" 12"), 24), paintSquareIcon(syncing(), 24));
}

void TestStatusIconPainter::theNumberReadsAgainstItsHalo()
{
    QVERIFY(contrast(statuscolor::number, statuscolor::haloOnGrey) >= 7);
    QVERIFY(contrast(statuscolor::number, statuscolor::haloOnOrange) >= 7);
}

// The grey has to serve both, so it is held to what is asked of pictures. The orange is a colour that speaks on
// its own and reads less on a light panel, where the number's halo carries the shape.
void TestStatusIconPainter::theSymbolReadsOnLightAndDarkPanels()
{
    QVERIFY(contrast(statuscolor::templateGrey, darkPanel) >= 3);
    QVERIFY(contrast(statuscolor::templateGrey, lightPanel) >= 3);
    QVERIFY(contrast(statuscolor::committedOrange, darkPanel) >= 3);
    QVERIFY(contrast(statuscolor::committedOrange, lightPanel) >= 2.4);
    QVERIFY(contrast(statuscolor::haloOnOrange, lightPanel) >= 7);
}

void TestStatusIconPainter::aTitleBecomesAShortNumber_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *title, const char *expected) {
        QTest::newRow(name) << QString::fromLatin1(title) << QString::fromLatin1(expected);
    };
    row("no title, no number", "", "");
    row("one digit", " 7", "7");
    row("two digits", " 42", "42");
    row("three digits", " 999", "999");
    row("a thousand days are counted in thousands", " 1000", "1k");
    row("thousands are not rounded up", " 1999", "1k");
    row("ten thousand", " 10000", "10k");
    row("beyond that there is an end", " 100000", "99k");
    row("the largest number there is", " 9223372036854775807", "99k");
}

void TestStatusIconPainter::aTitleBecomesAShortNumber()
{
    QFETCH(QString, title);
    QFETCH(QString, expected);
    QCOMPARE(numberInPicture(title), expected);
}

void TestStatusIconPainter::pixelsAreSentAlphaFirstAndUnmultiplied()
{
    QImage image(2, 1, QImage::Format_ARGB32_Premultiplied);
    image.setPixelColor(0, 0, QColor(0x11, 0x22, 0x33, 0xff));
    image.setPixelColor(1, 0, QColor(0xff, 0x00, 0x00, 0x80));
    QCOMPARE(pixelsInNetworkOrder(image), QByteArray::fromHex("ff112233"
                                                              "80ff0000"));
}

void TestStatusIconPainter::coloursAreSentMultipliedWithTheirAlphaWhereTheHostTakesThemSo()
{
    QImage image(2, 1, QImage::Format_ARGB32_Premultiplied);
    image.setPixelColor(0, 0, QColor(0x11, 0x22, 0x33, 0xff));
    image.setPixelColor(1, 0, QColor(0xff, 0x00, 0x00, 0x80));
    QCOMPARE(pixelsInNetworkOrder(image, AlphaUse::Multiplied), QByteArray::fromHex("ff112233"
                                                                                    "80800000"));
}

void TestStatusIconPainter::wordsTellWhatThePictureShows_data()
{
    QTest::addColumn<StatusItemAppearance>("appearance");
    QTest::addColumn<QString>("headline");
    QTest::addColumn<QString>("detail");
    const auto row = [](const char *name, const StatusItemAppearance &appearance, const char *headline,
                        const char *detail) {
        QTest::newRow(name) << appearance << QString::fromLatin1(headline) << QString::fromLatin1(detail);
    };
    row("syncing", syncing(), "Syncing", "");
    row("a git that hangs", {syncing().symbolName, true, QStringLiteral("Waiting for git in /src/a"), {}}, "Syncing",
        "Waiting for git in /src/a");
    row("a streak that waits", waiting(" 12"), "12-day streak", "No commit today yet");
    row("a streak that goes on", committed(" 13"), "13-day streak", "Committed today");
    row("no streak", waiting(), "No streak yet", "No commit today yet");
    auto noted = waiting(" 2");
    noted.note = QStringLiteral("Everyone counts");
    row("a note below the rest", noted, "2-day streak", "No commit today yet\nEveryone counts");
}

void TestStatusIconPainter::wordsTellWhatThePictureShows()
{
    QFETCH(StatusItemAppearance, appearance);
    QFETCH(QString, headline);
    QFETCH(QString, detail);
    QCOMPARE(statusWords(appearance), (StatusWords{headline, detail}));
}

VELQUARIN_WINDOW_TEST(TestStatusIconPainter)
#include "tst_statusiconpainter.moc"
