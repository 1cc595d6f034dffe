// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
// Paints the settings window in all its faces, light and dark, at 1x and 2x: settings_sheet FOLDER [FONT [PIXELS]]

#include "Services/LaunchAtLogin.h"
#include "support/Engine.h"
#include "support/Picture.h"
#include "support/RecordingLoginItem.h"
#include "support/ScriptedFolderChooser.h"
#include "support/WhatIsShown.h"
#include "Views/Controls/GuestStyle.h"
#include "Views/Controls/Style.h"
#include "Views/Settings/SettingsView.h"

#include <QApplication>
#include <QDir>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabBar>

#include <cstdio>
#include <functional>

using namespace velquarin;
using namespace velquarin::test;

namespace {

struct Face
{
    const char *name;
    int tab;
    std::function<void(Engine &)> prepare;
    bool isScrolledDown = false;
};

void trackSome(Engine &engine)
{
    const auto home = QStringLiteral("/home/robin/");
    engine.settings.addRepository(home + QStringLiteral("src/tidewatch"), false);
    engine.settings.addRepository(home + QStringLiteral("src/harbour-charts"), true);
    engine.settings.addRepository(home + QStringLiteral("notes"), false);
    auto repositories = engine.settings.trackedRepositories();
    repositories[2].isEnabled = false;
    engine.settings.setTrackedRepositories(repositories);
}

void trackMany(Engine &engine)
{
    trackSome(engine);
    engine.settings.addRepository(
        QStringLiteral("/home/robin/archive/2019/clients/%1/website").arg(QString(60, QLatin1Char('x'))), true);
    engine.settings.addRepository(QStringLiteral("/home/robin/") + QString(90, QLatin1Char('w')), true);
    for (int index = 0; index < 20; ++index)
        engine.settings.addRepository(QStringLiteral("/home/robin/sandbox/try-%1").arg(index), true);
}

void watchSome(Engine &engine)
{
    engine.settings.addWatchedFolder(QStringLiteral("/home/robin/src"), 5);
    engine.settings.addWatchedFolder(QStringLiteral("/home/robin/work"), 10);
    engine.settings.setLastAutoDiscoveryScan(instant("2026-11-20T21:41:00Z"));
}

QList<Face> faces()
{
    return {
        {"repositories-empty", 0, [](Engine &) {}}, {"repositories", 0, trackSome}, {"repositories-many", 0, trackMany},
        {"watched-empty", 1, [](Engine &) {}},      {"watched", 1, watchSome},      {"general", 2, [](Engine &) {}},
        {"general-below", 2, [](Engine &) {}, true}};
}

void scrollDown(QWidget &window)
{
    const auto areas = window.findChildren<QScrollArea *>();
    for (auto *const area : areas)
        area->verticalScrollBar()->setValue(area->verticalScrollBar()->maximum());
}

bool paint(const Face &face, const char *palette, const QDir &folder)
{
    Engine engine;
    face.prepare(engine);
    RecordingLoginItem loginItem;
    LaunchAtLogin launchAtLogin(loginItem);
    ScriptedFolderChooser chooser;
    SettingsView view({engine.settings, engine.manager, launchAtLogin, engine.git, chooser, engine.clock,
                       [] { return QByteArray("en_US"); }});
    view.show();
    view.findChild<QTabBar *>()->setCurrentIndex(face.tab);
    QCoreApplication::processEvents();
    if (face.isScrolledDown)
        scrollDown(view);
    QCoreApplication::processEvents();
    bool isSaved = true;
    for (const auto ratio : {1.0, 2.0}) {
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
        std::fputs("usage: settings_sheet FOLDER [FONT [PIXELS]]\n", stderr);
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
