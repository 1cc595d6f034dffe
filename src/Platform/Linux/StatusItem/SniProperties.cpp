// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/SniProperties.h"

#include "Platform/Linux/StatusItem/DbusMenu.h"
#include "Platform/Linux/StatusItem/DbusObject.h"
#include "Platform/Linux/StatusItem/StatusIconPainter.h"
#include "Platform/Linux/StatusItem/StatusWords.h"

#include <QDBusMetaType>
#include <QDBusObjectPath>

#include <algorithm>

namespace velquarin {

namespace {

const QString label = QStringLiteral("XAyatanaLabel");
const QString labelGuide = QStringLiteral("XAyatanaLabelGuide");

QList<SniPixmap> pixmapsOf(const QList<QImage> &images, AlphaUse alpha)
{
    QList<SniPixmap> pixmaps;
    for (const auto &image : images)
        pixmaps.append({image.width(), image.height(), pixelsInNetworkOrder(image, alpha)});
    return pixmaps;
}

QString iconName(const StatusItemAppearance &appearance, const StatusHost &host)
{
    if (host.display != CountDisplay::Label)
        return {};
    return appearance.isTemplate ? appearance.symbolName + QStringLiteral("-symbolic") : appearance.symbolName;
}

// Every host prefers a name over pictures, so that there is only ever one of the two.
QList<SniPixmap> iconPixmap(const StatusItemAppearance &appearance, const StatusHost &host)
{
    if (host.display == CountDisplay::Label)
        return {};
    return pixmapsOf(host.display == CountDisplay::Wide ? wideIcons(appearance) : squareIcons(appearance),
                     host.wantsMultiplied ? AlphaUse::Multiplied : AlphaUse::Apart);
}

// The text of a tip is markup, and a folder may be called anything.
SniToolTip toolTip(const StatusItemAppearance &appearance)
{
    const auto words = statusWords(appearance);
    return {{}, {}, words.headline, words.detail.toHtmlEscaped()};
}

}  // namespace

QDBusArgument &operator<<(QDBusArgument &argument, const SniPixmap &pixmap)
{
    return writeStructure(argument, pixmap.width, pixmap.height, pixmap.bytes);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, SniPixmap &pixmap)
{
    return readStructure(argument, pixmap.width, pixmap.height, pixmap.bytes);
}

QDBusArgument &operator<<(QDBusArgument &argument, const SniToolTip &toolTip)
{
    return writeStructure(argument, toolTip.iconName, toolTip.icon, toolTip.title, toolTip.text);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, SniToolTip &toolTip)
{
    return readStructure(argument, toolTip.iconName, toolTip.icon, toolTip.title, toolTip.text);
}

void registerSniTypes()
{
    qDBusRegisterMetaType<SniPixmap>();
    qDBusRegisterMetaType<QList<SniPixmap>>();
    qDBusRegisterMetaType<SniToolTip>();
}

QVariantMap sniProperties(const StatusItemAppearance &appearance, const StatusHost &host, const QString &iconThemePath)
{
    QVariantMap properties{
        {QStringLiteral("Category"), QStringLiteral("ApplicationStatus")},
        {QStringLiteral("Id"), QStringLiteral("velquarin")},
        {QStringLiteral("Title"), QStringLiteral("Velquarin")},
        {QStringLiteral("Status"), QStringLiteral("Active")},
        {QStringLiteral("WindowId"), 0},
        {QStringLiteral("ItemIsMenu"), false},
        {QStringLiteral("Menu"), QVariant::fromValue(QDBusObjectPath(DbusMenu::objectPath()))},
        {QStringLiteral("IconThemePath"), iconThemePath},
        {QStringLiteral("IconName"), iconName(appearance, host)},
        {QStringLiteral("IconPixmap"), QVariant::fromValue(iconPixmap(appearance, host))},
        {QStringLiteral("IconAccessibleDesc"), appearance.accessibilityDescription},
        {QStringLiteral("ToolTip"), QVariant::fromValue(toolTip(appearance))},
    };
    if (!appearance.title.isEmpty() && !host.breaksOnLabel) {
        properties.insert(label, appearance.title);
        properties.insert(labelGuide, appearance.title);
    }
    return properties;
}

QVariantMap withoutLabel(QVariantMap properties)
{
    properties.remove(label);
    properties.remove(labelGuide);
    return properties;
}

QList<SniSignal> sniSignals(const QVariantMap &before, const QVariantMap &after)
{
    const auto changed = changedNames(before, after);
    const auto isAnyChanged = [&](std::initializer_list<const char *> names) {
        return std::any_of(names.begin(), names.end(),
                           [&](auto name) { return changed.contains(QLatin1String(name)); });
    };
    QList<SniSignal> signalList;
    if (isAnyChanged({"IconName", "IconPixmap", "IconAccessibleDesc"}))
        signalList.append({QStringLiteral("NewIcon"), {}});
    if (isAnyChanged({"ToolTip"}))
        signalList.append({QStringLiteral("NewToolTip"), {}});
    if (isAnyChanged({"XAyatanaLabel"}))
        signalList.append(
            {QStringLiteral("XAyatanaNewLabel"), {after.value(label).toString(), after.value(labelGuide).toString()}});
    return signalList;
}

}  // namespace velquarin
