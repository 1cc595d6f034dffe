// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/RecordRow.h"

#include "Models/SettingsRecords.h"
#include "Views/Controls/Decorations.h"
#include "Views/Controls/PlainButton.h"
#include "Views/Controls/Style.h"
#include "Views/Controls/Text.h"
#include "Views/Settings/TabParts.h"

#include <QApplication>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QStyleOption>
#include <QTextDocument>

#include <algorithm>
#include <array>
#include <utility>

namespace velquarin {

namespace {

constexpr double verticalPadding = 4;
constexpr double horizontalPadding = 10;
constexpr double gapBehindName = 4;
constexpr double sizeOfBin = 12;
constexpr double pickerWidth = 60;

constexpr std::array<qint64, 4> depths{2, 3, 5, 10};

// -1 for a depth that is not offered, which then stands as it is.
int indexOfDepth(qint64 depth)
{
    const auto *const found = std::ranges::find(depths, depth);
    return found == depths.end() ? -1 : int(found - depths.begin());
}

// Some styles leave room around the box itself, for a ring: it counts as padding.
int roomAroundBoxOf(const QCheckBox &box)
{
    QStyleOptionButton option;
    option.initFrom(&box);
    option.rect = QRect(QPoint(), box.sizeHint());
    return box.style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, &box).x();
}

// A quiet label on the baseline of what stands in the picker beside it.
class PickerLabel : public QLabel
{
public:
    using QLabel::QLabel;

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        const QFontMetrics neighbour(QApplication::font());
        QPainter painter(this);
        painter.setPen(style::ink(palette(), style::Ink::Secondary));
        painter.setLayoutDirection(style::readingDirection(text()));
        painter.drawText(0, (height() - neighbour.height()) / 2 + neighbour.ascent(), text());
    }
};

// A column of red would draw all eyes: it is faint until somebody comes near.
class Bin : public IconButton
{
public:
    explicit Bin(ListRow *row)
        : IconButton(QStringLiteral("trash"), RecordRow::tr("Remove"), row)
        , m_row(row)
    {
        setLook(sizeOfBin, style::Accent::Red);
        setToolTip(RecordRow::tr("Remove"));
    }

    // The drawing is slender, and a pointer is not so exact.
    [[nodiscard]] static int reach() { return style::points(2); }
    [[nodiscard]] QSize sizeHint() const override { return IconButton::sizeHint().grownBy({reach(), 0, reach(), 0}); }

    [[nodiscard]] QColor color() const override
    {
        const auto full = IconButton::color();
        return m_row->isInUse() ? full : style::faded(full, palette());
    }

private:
    ListRow *m_row;
};

}  // namespace

RecordRow::RecordRow(QWidget *parent)
    : ListRow(parent)
    , m_isEnabled(new QCheckBox(this))
    , m_texts(new QWidget(this))
    , m_name(new Text(textLook(style::TypeStyle::Body, style::Ink::Primary, QFont::Medium), m_texts))
    , m_path(new Text(textLook(style::TypeStyle::Caption, style::Ink::Secondary), m_texts))
    , m_firstLine(new QHBoxLayout)
    , m_row(new QHBoxLayout(this))
{
    const auto horizontal = style::points(horizontalPadding) - PlainButton::outset();
    const auto vertical = style::points(verticalPadding);
    m_row->setContentsMargins(horizontal, vertical, horizontal, vertical + 1);
    m_row->setSpacing(style::points(style::defaultSpacing));
    m_row->addSpacing(PlainButton::outset());
    m_row->addItem(new OutsetItem(m_isEnabled, roomAroundBoxOf(*m_isEnabled)));
    m_row->addWidget(m_texts);
    layOutTexts();
    addControl(m_isEnabled);
    forwardEnabling();
}

void RecordRow::layOutTexts()
{
    m_name->allowCutting();
    m_path->allowCutting(Qt::ElideMiddle);
    m_texts->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    auto *const column = new QVBoxLayout(m_texts);
    column->setContentsMargins({});
    column->setSpacing(style::points(style::defaultSpacing));
    m_firstLine->setSpacing(style::points(gapBehindName));
    m_firstLine->addWidget(m_name);
    m_firstLine->addStretch();
    column->addLayout(m_firstLine);
    column->addWidget(m_path);
}

// The box also moves when it only shows what is stored; that is nobody's request. What was requested counts as stored
// from then on: another movement may come before the list is rendered.
void RecordRow::forwardEnabling()
{
    connect(m_isEnabled, &QCheckBox::toggled, this, [this](bool isEnabled) {
        if (std::exchange(m_isStoredEnabled, isEnabled) != isEnabled)
            Q_EMIT enablingRequested(id(), isEnabled);
    });
}

// A tooltip that looks like markup is shown as markup, and a folder may be called anything.
void RecordRow::showRecord(QUuid id, const QString &name, const QString &path, bool isEnabled)
{
    setId(id);
    m_isStoredEnabled = isEnabled;
    m_isEnabled->setChecked(isEnabled);
    m_isEnabled->setAccessibleName(name);
    m_isEnabled->setAccessibleDescription(path);
    m_remove->setAccessibleDescription(name);
    m_name->setText(name);
    m_path->setText(path);
    m_texts->setToolTip(Qt::mightBeRichText(path) ? Qt::convertFromPlainText(path) : path);
}

Badge *RecordRow::addBadge(const QString &word)
{
    auto *const badge = new Badge(word, m_texts);
    m_firstLine->insertWidget(1, badge, 0, Qt::AlignBottom);
    return badge;
}

void RecordRow::addPicker(QWidget *label, QWidget *picker)
{
    m_row->addWidget(label);
    m_row->addWidget(picker);
    addControl(picker);
}

void RecordRow::addBin()
{
    m_remove = new Bin(this);
    m_row->addItem(new OutsetItem(m_remove, Bin::reach()));
    addControl(m_remove);
    connect(m_remove, &IconButton::clicked, this, [this] { Q_EMIT removalRequested(id()); });
}

RepositoryRow::RepositoryRow(QWidget *parent)
    : RecordRow(parent)
    , m_auto(addBadge(tr("Auto")))
{
    addBin();
}

void RepositoryRow::setRepository(const TrackedRepository &repository)
{
    showRecord(repository.id, repository.name, repository.path, repository.isEnabled);
    m_auto->setVisible(repository.isAutoDiscovered);
}

WatchedFolderRow::WatchedFolderRow(QWidget *parent)
    : RecordRow(parent)
    , m_label(new PickerLabel(tr("Depth"), this))
    , m_depth(new Picker(this))
{
    m_label->setFont(style::font(style::TypeStyle::Caption));
    m_label->setBuddy(m_depth);
    m_depth->setObjectName(QStringLiteral("depth"));
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
