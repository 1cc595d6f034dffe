// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
// Paints the dashboard in all its faces, light and dark, at 1x, 1.5x and 2x: dashboard_sheet FOLDER [FONT [PIXELS]]

#include "support/Engine.h"
#include "support/Picture.h"
#include "support/RecordingFileViewer.h"
#include "support/WhatIsShown.h"
#include "Views/Controls/GuestStyle.h"
#include "Views/Controls/Style.h"
#include "Views/Dashboard/MenuBarView.h"

#include <QApplication>
#include <QDir>

#include <cstdio>

using namespace velquarin;
using namespace velquarin::test;

namespace {

constexpr int popoverHeight = 350;

struct Repository
{
    QString name;
    int today = 0;
    const char *lastCommit = "";
};

struct Face
{
    const char *name;
    QList<Repository> repositories;
    QList<int> week;  //!< commits a day of the first repository, the oldest first; the last one is today's
    int streak = 0;   //!< days in a row before the week
    bool isYear = false;
};

QList<Repository> someRepositories(int count)
{
    const QList<Repository> all{{QStringLiteral("tidewatch"), 3, "2026-11-20T11:20:00+00:00"},
                                {QStringLiteral("harbour-charts"), 1, "2026-11-20T09:05:00+00:00"},
                                {QStringLiteral("notes"), 0, "2026-11-19T20:40:00+00:00"},
                                {QStringLiteral("dotfiles"), 0, "2026-11-18T12:00:00+00:00"},
                                {QStringLiteral("paper-kites"), 0, "2026-11-12T12:00:00+00:00"},
                                {QStringLiteral("lantern"), 0, "2026-10-28T12:00:00+00:00"},
                                {QStringLiteral("recipes"), 0, "2026-08-20T12:00:00+00:00"},
                                {QStringLiteral("thesis"), 0, "2026-03-02T12:00:00+00:00"},
                                {QStringLiteral("old-website"), 0, "2024-11-20T12:00:00+00:00"},
                                {QStringLiteral("sandbox"), 0, ""},
                                {QStringLiteral("zettel"), 0, ""}};
    return all.first(count);
}

QList<Repository> longNames()
{
    return {{QStringLiteral("a-very-long-repository-name-that-somebody-chose-on-a-long-afternoon"), 12,
             "2026-11-20T11:00:00Z"},
            {QString(200, QLatin1Char('w')), 0, "2026-11-19T20:40:00Z"},
            {QStringLiteral("i"), 0, ""}};
}

QList<Face> faces()
{
    return {{"empty", {}, {}, 0, false},
            {"empty-year", {}, {}, 0, true},
            {"week", someRepositories(3), {0, 2, 5, 8, 12, 1, 4}, 9, false},
            {"year", someRepositories(3), {0, 2, 5, 8, 12, 1, 4}, 9, true},
            {"ten", someRepositories(10), {1, 1, 1, 3, 6, 11, 0}, 93, false},
            {"eleven", someRepositories(11), {1, 1, 1, 3, 6, 11, 0}, 93, false},
            {"long-names", longNames(), {0, 0, 0, 0, 0, 0, 12}, 0, false},
            {"one", someRepositories(1), {0, 0, 0, 0, 0, 0, 1}, 0, false},
            {"many", someRepositories(3), {7, 1, 99, 1000, 11, 10, 1000}, 720, false}};
}

QByteArray lines(QDate day, int count)
{
    return (day.toString(Qt::ISODate).toLatin1() + '\n').repeated(count);
}

void script(Engine &engine, const Face &face)
{
    const auto today = engine.clock.calendar().dateOf(engine.clock.now());
    for (const auto &repository : face.repositories) {
        const auto path = QStringLiteral("/src/") + repository.name;
        const bool isFirst = path.endsWith(face.repositories.constFirst().name);
        QByteArray week;
        for (qsizetype index = 0; index < face.week.size() && isFirst; ++index)
            week += lines(today.addDays(int(index) - 6), face.week.at(index));
        if (!isFirst)
            week = lines(today, repository.today);
        auto year = week;
        for (int day = 7; day < 7 + face.streak && isFirst; ++day)
            year += lines(today.addDays(-day), 1 + day * day % 13);
        for (int day = face.streak + 9; day < 700 && isFirst && face.streak > 0; day += 1 + day % 3)
            year += lines(today.addDays(-day), day * day % 14);
        engine.track(path, week, year, repository.lastCommit);
    }
}

bool paint(const Face &face, const char *palette, const QDir &folder)
{
    Engine engine;
    script(engine, face);
    engine.refresh();
    engine.manager.setShowYearView(face.isYear);
    engine.clock.advance(std::chrono::seconds(133));
    RecordingFileViewer viewer;
    MenuBarView view(
        engine.manager, engine.clock, engine.timers, viewer, [] {}, [] { return QByteArray("en_US"); });
    view.setFixedHeight(std::max(view.sizeHint().height(), style::points(popoverHeight)));
    view.show();
    QCoreApplication::processEvents();
    if (auto *const focused = view.focusWidget())
        focused->clearFocus();
    QCoreApplication::processEvents();
    bool isSaved = true;
    for (const auto ratio : {1.0, 1.5, 2.0}) {
        const auto name =
            QStringLiteral("%1-%2-%3x.png").arg(QLatin1String(face.name), QLatin1String(palette)).arg(ratio);
        isSaved = pictureOf(view, ratio).save(folder.filePath(name)) && isSaved;
    }
    return isSaved;
}

}  // namespace

int main(int argc, char *argv[])
{
    QApplication::setStyle(QStringLiteral("Fusion"));
    const QApplication application(argc, argv);
    GuestStyle::install();
    const auto arguments = QApplication::arguments();
    if (arguments.size() < 2) {
        std::fputs("usage: dashboard_sheet FOLDER [FONT [PIXELS]]\n", stderr);
        return 2;
    }
    QFont font(arguments.value(2, QStringLiteral("DejaVu Sans")));
    font.setPixelSize(arguments.value(3, QStringLiteral("13")).toInt());
    QApplication::setFont(font);
    const QDir folder(arguments.at(1));
    bool isSaved = folder.mkpath(QStringLiteral("."));
    for (const auto &face : faces()) {
        QApplication::setPalette(lightPalette());
        isSaved = paint(face, "light", folder) && isSaved;
        QApplication::setPalette(darkPalette());
        isSaved = paint(face, "dark", folder) && isSaved;
    }
    return isSaved ? 0 : 1;
}
