// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "App/StatusItemPlan.h"
#include "App/Translations.h"
#include "Platform/Linux/StatusItem/StatusIconPainter.h"
#include "Platform/Linux/StatusItem/StatusMenu.h"
#include "Services/Reminder/ReminderDecision.h"
#include "support/Offscreen.h"
#include "support/RecordingFileViewer.h"
#include "support/TestProgram.h"
#include "Views/Dashboard/MenuBarView.h"
#include "Views/Settings/RepositoryActions.h"
#include "Views/Settings/SettingsWindow.h"

#include <QApplication>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTest>

using namespace velquarin;
using namespace velquarin::test;

namespace {

constexpr char16_t opening = u'\u27E6';
constexpr char16_t closing = u'\u27E7';

//! A language in which every text of ours stands in brackets.
class Bracketing : public QTranslator
{
public:
    Bracketing() { QCoreApplication::installTranslator(this); }

    [[nodiscard]] bool isEmpty() const override { return false; }

    [[nodiscard]] QString translate(const char *context, const char *text, const char * /*comment*/,
                                    int /*number*/) const override
    {
        const bool isOurs = !QLatin1String(context).startsWith(QLatin1String("Q"));
        return isOurs ? opening + QString::fromUtf8(text) + closing : QString();
    }
};

// What the user's own things and the calendar give: figures, dates, names, paths.
bool needsNoTranslation(const QString &text)
{
    static const QRegularExpression own(QStringLiteral(
        "\\A[0-9.]*\\z|repository|src|\\A(Mon|Tue|Wed|Thu|Fri|Sat|Sun|Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|"
        "Oct|Nov|Dec)\\b(, [0-9]+)?\\z|\\A[0-9]+ (day|hr)\\S* ago\\z|Velquarin\\z"));
    return text.isEmpty() || own.match(text).hasMatch();
}

void collect(QAccessibleInterface *parent, QStringList &texts)
{
    texts << parent->text(QAccessible::Name) << parent->text(QAccessible::Description)
          << parent->text(QAccessible::Value);
    if (const auto *const widget = qobject_cast<QWidget *>(parent->object()))
        texts << widget->toolTip() << widget->windowTitle();
    for (int index = 0; index < parent->childCount(); ++index) {
        if (auto *const child = parent->child(index); child != nullptr && !isHidden(child))
            collect(child, texts);
    }
}

QStringList leftInEnglish(QStringList texts)
{
    texts.removeIf([](const QString &text) { return text.contains(opening) || needsNoTranslation(text); });
    return texts;
}

QStringList leftInEnglish(QWidget &widget)
{
    QStringList texts;
    collect(QAccessible::queryAccessibleInterface(&widget), texts);
    return leftInEnglish(texts);
}

void track(Engine &engine, int count)
{
    for (int number = 0; number < count; ++number)
        engine.track(QStringLiteral("/src/repository-%1").arg(number), "2026-11-20\n", "2026-11-20\n2026-11-19\n",
                     number == 0 ? "2026-11-18T09:00:00+00:00" : "");
    engine.refresh();
}

}  // namespace

class TestTranslations : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarningOfOurs(); }
    void theFirstLanguageThatHasTextsIsTaken_data();
    void theFirstLanguageThatHasTextsIsTaken();
    void theProgramStandsInTheDirectionOfItsLanguage_data();
    void theProgramStandsInTheDirectionOfItsLanguage();
    void nothingInTheDashboardIsLeftInEnglish_data();
    void nothingInTheDashboardIsLeftInEnglish();
    void nothingInTheSettingsIsLeftInEnglish_data();
    void nothingInTheSettingsIsLeftInEnglish();
    void nothingAroundTheItemIsLeftInEnglish();
    void nothingInTheReminderIsLeftInEnglish();
};

void TestTranslations::theFirstLanguageThatHasTextsIsTaken_data()
{
    QTest::addColumn<QStringList>("languages");
    QTest::addColumn<QString>("refresh");
    const auto row = [](const char *name, const QStringList &languages, const char *refresh) {
        QTest::newRow(name) << languages << QString::fromUtf8(refresh);
    };
    row("a language that has texts", {QStringLiteral("eo")}, "Aktualigi");
    row("its country has none of its own", {QStringLiteral("eo-XX"), QStringLiteral("eo")}, "Aktualigi");
    row("the first has none, the second has", {QStringLiteral("de-DE"), QStringLiteral("eo")}, "Aktualigi");
    row("English comes first", {QStringLiteral("en-GB"), QStringLiteral("en"), QStringLiteral("eo")}, "Refresh");
    row("no language at all", {QStringLiteral("C"), QStringLiteral("eo")}, "Refresh");
    row("none that has texts", {QStringLiteral("de-DE"), QStringLiteral("de")}, "Refresh");
    row("no languages", {}, "Refresh");
}

void TestTranslations::theFirstLanguageThatHasTextsIsTaken()
{
    QFETCH(QStringList, languages);
    QFETCH(QString, refresh);
    const auto translator = translationFor(languages, QStringLiteral(TRANSLATIONS_FOLDER));
    QCOMPARE(translator != nullptr, refresh != QLatin1String("Refresh"));
    if (translator)
        QCoreApplication::installTranslator(translator.get());
    QCOMPARE(QCoreApplication::translate("velquarin::FooterSection", "Refresh"), refresh);
    QVERIFY(!translationFor(languages, QString()));
}

void TestTranslations::theProgramStandsInTheDirectionOfItsLanguage_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::newRow("a language from left to right") << QStringLiteral("eo") << Qt::LeftToRight;
    QTest::newRow("a language from right to left") << QStringLiteral("he") << Qt::RightToLeft;
    QTest::newRow("one from right to left without texts") << QStringLiteral("ar") << Qt::LeftToRight;
}

void TestTranslations::theProgramStandsInTheDirectionOfItsLanguage()
{
    QFETCH(QString, language);
    QFETCH(Qt::LayoutDirection, direction);
    const auto before = QGuiApplication::layoutDirection();
    const auto putBack = qScopeGuard([before] { QGuiApplication::setLayoutDirection(before); });
    const auto translation = translationFor({language}, QStringLiteral(TRANSLATIONS_FOLDER));
    useTranslation(translation.get());
    QCOMPARE(QGuiApplication::layoutDirection(), direction);
}

void TestTranslations::nothingInTheDashboardIsLeftInEnglish_data()
{
    QTest::addColumn<int>("repositories");
    QTest::addColumn<bool>("isYear");
    QTest::newRow("the week without repositories") << 0 << false;
    QTest::newRow("the week with more than are shown") << 12 << false;
    QTest::newRow("the year") << 2 << true;
}

void TestTranslations::nothingInTheDashboardIsLeftInEnglish()
{
    QFETCH(int, repositories);
    QFETCH(bool, isYear);
    const Bracketing language;
    Engine engine;
    RecordingFileViewer viewer;
    track(engine, repositories);
    engine.manager.setShowYearView(isYear);
    MenuBarView view(
        engine.manager, engine.clock, engine.timers, viewer, [] {}, [] { return QByteArray("en_US"); });
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QCOMPARE(leftInEnglish(view), QStringList());
}

void TestTranslations::nothingInTheSettingsIsLeftInEnglish_data()
{
    QTest::addColumn<bool>("isFilled");
    QTest::newRow("with nothing in the lists") << false;
    QTest::newRow("with something in the lists") << true;
}

void TestTranslations::nothingInTheSettingsIsLeftInEnglish()
{
    QFETCH(bool, isFilled);
    const Bracketing language;
    SettingsWindow window;
    if (isFilled) {
        track(window.engine, 2);
        window.engine.settings.addRepository(QStringLiteral("/src/repository-found"), true);
        window.engine.settings.addWatchedFolder(QStringLiteral("/src"), 5);
        window.engine.settings.setLastAutoDiscoveryScan(window.engine.clock.now());
    }
    for (const auto tab : {SettingsWindow::Repositories, SettingsWindow::AutoDiscover, SettingsWindow::General}) {
        if (window.view)
            window.show(tab);
        else
            window.open(tab);
        QCOMPARE(leftInEnglish(*window.view).join(u'|'), QString());
    }
    for (const auto found : {0, 3})
        QCOMPARE(leftInEnglish({scanOutcome(found, 0).message.value()}), QStringList());
}

void TestTranslations::nothingAroundTheItemIsLeftInEnglish()
{
    const Bracketing language;
    for (const bool isRefreshing : {false, true}) {
        for (const bool hasCommitted : {false, true}) {
            for (const qint64 streak : {0, 3}) {
                const auto appearance = statusItemAppearance(streak, isRefreshing, hasCommitted, {});
                const auto words = statusWords(appearance);
                QVERIFY(appearance.accessibilityDescription.contains(opening));
                QCOMPARE(leftInEnglish({words.headline, words.detail}), QStringList());
            }
        }
    }
    const auto waiting = waitingAppearance(QStringLiteral("/src/a"));
    QVERIFY(waiting.accessibilityDescription.contains(opening));
    QCOMPARE(statusWords(waiting).detail, waiting.accessibilityDescription);
    QVERIFY(withOpenEntry({}, {}).first().text.contains(opening));
}

void TestTranslations::nothingInTheReminderIsLeftInEnglish()
{
    const Bracketing language;
    const auto request = reminderRequest(3, instant("2026-11-20T18:00:00Z"));
    QCOMPARE(request.body,
             opening + QStringLiteral("You haven't committed today. Your 3-day streak will reset at midnight!") +
                 closing);
    QVERIFY(request.title.contains(opening));
    for (const auto &action : reminderCategory().actions)
        QVERIFY(action.title.contains(opening));
}

VELQUARIN_WINDOW_TEST(TestTranslations)
#include "tst_translations.moc"
