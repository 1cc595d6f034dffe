// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/WatchedFolderRow.h"

#include "Models/WatchedFolder.h"
#include "Views/Controls/Picker.h"
#include "Views/Controls/Style.h"

#include <QLabel>

#include <algorithm>
#include <array>

namespace velquarin {

namespace {

constexpr std::array<qint64, 4> depths{2, 3, 5, 10};
constexpr double pickerWidth = 60;

// -1 for a depth that is not offered, which then stands as it is.
int indexOfDepth(qint64 depth)
{
    const auto *const found = std::ranges::find(depths, depth);
    return found == depths.end() ? -1 : int(found - depths.begin());
}

}  // namespace

WatchedFolderRow::WatchedFolderRow(QWidget *parent)
    : RecordRow(parent)
    , m_label(new QLabel(tr("Depth"), this))
    , m_depth(new Picker(this))
{
    m_label->setFont(style::font(style::TypeStyle::Caption));
    m_depth->setObjectName(QStringLiteral("depth"));
    m_label->setBuddy(m_depth);
    for (const auto depth : depths)
        m_depth->addItem(QString::number(depth));
    m_depth->setFixedWidth(style::points(pickerWidth));
    m_depth->setToolTip(tr("Max folder depth to scan"));
    addPicker(m_label, m_depth);
    addBin();
    connect(m_depth, &Picker::currentIndexChanged, this, &WatchedFolderRow::chooseDepth);
}

void WatchedFolderRow::setFolder(const WatchedFolder &folder)
{
    showRecord(folder.id, folder.name, folder.path, folder.isEnabled);
    m_storedDepth = folder.maxDepth;
    m_depth->setCurrentIndex(indexOfDepth(folder.maxDepth));
}

void WatchedFolderRow::chooseDepth(int index)
{
    if (index < 0 || depths.at(std::size_t(index)) == m_storedDepth)
        return;
    m_storedDepth = depths.at(std::size_t(index));
    Q_EMIT depthRequested(id(), m_storedDepth);
}

}  // namespace velquarin
