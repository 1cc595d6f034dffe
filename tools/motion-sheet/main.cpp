// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
// Paints each movement of the dashboard as a strip of pictures, one beside the other at fixed times, light and dark, at 2x:
// motion_sheet FOLDER

#include "support/AnimatingStyle.h"
#include "support/Engine.h"
#include "support/Picture.h"
#include "support/RecordingFileViewer.h"
#include "support/WhatIsShown.h"
#include "Views/Controls/Style.h"
#include "Views/Dashboard/FooterSection.h"
#include "Views/Dashboard/MenuBarView.h"
#include "Views/Dashboard/Popover.h"

#include <QApplication>
#include <QCursor>
#include <QDir>
#include <QVariantAnimation>

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>

using namespace velquarin;
using namespace velquarin::test;

namespace {

constexpr double ratio = 2;
constexpr int gap = 8;
constexpr int panelHeight = 24;
constexpr QPoint item(400, panelHeight / 2);

// The dashboard below a panel, on a desktop that composes windows.
class Scene
{
public:
    Scene()
    {
        engine.track(QStringLiteral("/src/tidewatch"), days(6, 1), days(40, 1), "2026-11-19T20:40:00Z");
        engine.track(QStringLiteral("/src/notes"), "", "", "2026-11-12T12:00:00Z");
        engine.refresh();
        QCursor::setPos(item);
        popover.toggle(item, {});
        settle();
        QCursor::setPos(0, 0);
        const auto animations = popover.findChildren<QVariantAnimation *>();
        for (auto *const animation : animations)
            comeToRest(*animation);
    }

    static void comeToRest(QVariantAnimation &animation)
    {
        animation.setCurrentTime(animation.duration());
        animation.stop();
    }

    // So many days with commits in a row, the last of them so many days ago.
    [[nodiscard]] QByteArray days(int count, int last) const
    {
        const auto today = engine.clock.calendar().dateOf(engine.clock.now());
        QByteArray lines;
        for (int day = last; day < last + count; ++day)
            lines += (today.addDays(-day).toString(Qt::ISODate).toLatin1() + '\n').repeated(1 + day * day % 13);
        return lines;
    }

    static void settle()
    {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }

    [[nodiscard]] QImage picture(const QRect &part)
    {
        QImage image(part.size() * ratio, QImage::Format_RGB32);
        image.setDevicePixelRatio(ratio);
        const bool isDark = style::isDark(popover.palette());
        image.fill(isDark ? QColor(0x25364a) : QColor(0xb4c4cf));
        QPainter painter(&image);
        painter.translate(-part.topLeft());
        painter.fillRect(0, 0, part.right() + 1, panelHeight, isDark ? QColor(0x16181b) : QColor(0xeeeff1));
        painter.setOpacity(popover.windowOpacity());
        painter.drawImage(popover.pos(), wholePopover());
        return image;
    }

    QVariantAnimation &animation(const char *owner, const char *name)
    {
        auto *const widget = owner[0] == '\0' ? &popover : popover.findChild<QWidget *>(QLatin1String(owner));
        auto *const found = widget->findChild<QVariantAnimation *>(QLatin1String(name));
        if (found == nullptr)
            qFatal("Nothing moves by the name of %s", name);
        return *found;
    }

    [[nodiscard]] QRect placeOf(const char *name)
    {
        auto *const widget = popover.findChild<QWidget *>(QLatin1String(name));
        return {widget->mapToGlobal(QPoint()), widget->size()};
    }

    Engine engine;
    RecordingFileViewer viewer;
    Popover popover{new MenuBarView(
                        engine.manager, engine.clock, engine.timers, viewer, [] {}, [] { return QByteArray("en_US"); }),
                    WindowSystem{.blendsWindows = [] { return true; }}};

private:
    QImage wholePopover()
    {
        QImage image(popover.size() * ratio, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::transparent);
        popover.render(&image, {}, {}, QWidget::DrawChildren);
        return image;
    }
};

// From the first moment to the last one, in so many pictures.
QImage strip(Scene &scene, const QRect &part, QVariantAnimation &animation, int pictures)
{
    const auto step = part.width() + gap;
    QImage image(QSizeF(step * pictures - gap, part.height()).toSize() * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    QPainter painter(&image);
    animation.stop();
    animation.start();
    animation.pause();
    for (int index = 0; index < pictures; ++index) {
        animation.setCurrentTime(animation.duration() * index / (pictures - 1));
        Scene::settle();
        painter.drawImage(QPoint(index * step, 0), scene.picture(part));
    }
    Scene::comeToRest(animation);
    return image;
}

QImage opening()
{
    Scene scene;
    const QRect part(QPoint(scene.popover.x(), 0), QSize(scene.popover.width(), scene.popover.geometry().bottom() + 1));
    return strip(scene, part, scene.animation("", "opening"), 6);
}

QImage change()
{
    Scene scene;
    const auto part = scene.placeOf("dashboard");
    scene.engine.manager.setShowYearView(true);
    Scene::settle();
    return strip(scene, part, scene.animation("dashboard", "fading"), 6);
}

QImage refresh()
{
    Scene scene;
    scene.popover.findChild<FooterSection *>()->setRefreshing(true);
    const auto part = scene.placeOf("refresh").united(scene.placeOf("settings")).adjusted(-8, -4, 8, 4);
    return strip(scene, part, scene.animation("refresh", "turning"), 13);
}

QImage firstCommit()
{
    Scene scene;
    scene.engine.script(QStringLiteral("/src/tidewatch"), scene.days(7, 0), scene.days(41, 0), "2026-11-20T11:59:00Z");
    scene.engine.refresh();
    Scene::settle();
    auto part = scene.placeOf("header");
    part.setWidth(part.width() / 3);
    return strip(scene, part, scene.animation("flame", "beat"), 9);
}

bool paint(const char *palette, const QDir &folder)
{
    const auto save = [&](const char *name, const QImage &image) {
        return image.save(
            folder.filePath(QStringLiteral("%1-%2.png").arg(QLatin1String(name), QLatin1String(palette))));
    };
    const std::array areSaved{save("opening", opening()), save("change", change()), save("refresh", refresh()),
                              save("first-commit", firstCommit())};
    return std::ranges::all_of(areSaved, std::identity());
}

}  // namespace

int main(int argc, char *argv[])
{
    QApplication::setStyle(new AnimatingStyle);
    const QApplication application(argc, argv);
    const auto arguments = QApplication::arguments();
    if (arguments.size() != 2) {
        std::fputs("usage: motion_sheet FOLDER\n", stderr);
        return 2;
    }
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(13);
    QApplication::setFont(font);
    const QDir folder(arguments.at(1));
    bool isSaved = folder.mkpath(QStringLiteral("."));
    QApplication::setPalette(lightPalette());
    isSaved = paint("light", folder) && isSaved;
    QApplication::setPalette(darkPalette());
    isSaved = paint("dark", folder) && isSaved;
    return isSaved ? 0 : 1;
}
