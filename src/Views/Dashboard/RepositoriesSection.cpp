// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/RepositoriesSection.h"

#include "Platform/DateTexts.h"
#include "Platform/Folders.h"
#include "Views/Controls/Symbols.h"
#include "Views/Controls/Text.h"

#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPointer>
#include <QVBoxLayout>

#include <algorithm>

namespace velquarin {

using style::Accent;
using style::Ink;
using style::points;
using style::TypeStyle;

namespace {

// Says what is missing, and leads to where it can be added.
class Placeholder : public PlainButton
{
public:
    explicit Placeholder(QWidget *parent)
        : PlainButton(parent)
    {
        const auto words = RepositoriesSection::tr("No repositories configured");
        setAccessibleName(words);
        auto *const text = makeText(textLook(TypeStyle::Subheadline, Ink::Secondary), words, this);
        text->setAlignment(Qt::AlignHCenter);
        makeRow(points(8))->addWidget(text);
    }
};

}  // namespace

RepoRow::RepoRow(FileViewer &viewer, QWidget *parent)
    : PlainButton(parent)
    , m_viewer(viewer)
    , m_folder(new SymbolView(QStringLiteral("folder.fill"), style::sizeOf(TypeStyle::Caption), Ink::Secondary, this))
    , m_name(new Text(textLook(TypeStyle::Subheadline, Ink::Primary), this))
    , m_activity(new Text(textLook(TypeStyle::Caption, Ink::Secondary), this))
{
    m_name->allowCutting();
    m_name->setObjectName(QStringLiteral("repositoryName"));
    m_activity->setLine(lineOf(textLook(TypeStyle::Subheadline, Ink::Primary)));
    m_activity->setObjectName(QStringLiteral("repositoryActivity"));
    auto *const row = makeRow(style::points(2) + outset());
    row->addWidget(m_folder);
    row->addWidget(m_name);
    row->addStretch();
    row->addWidget(m_activity);
    connect(this, &QAbstractButton::pressed, this, [this] { m_pressedPath = m_path; });
    connect(this, &QAbstractButton::clicked, this, &RepoRow::showFolder);
}

void RepoRow::setStats(const RepositoryStats &stats, const DateTexts &texts, Instant now)
{
    if (stats.path != m_path)
        setDown(false);
    m_path = stats.path;
    m_name->setText(stats.displayName());
    setFigures(stats, texts, now);
    setAccessibleName(QStringLiteral("%1, %2").arg(m_name->text(), m_activity->text()));
}

void RepoRow::setFigures(const RepositoryStats &stats, const DateTexts &texts, Instant now)
{
    const bool isActive = stats.todayCommits >= 1;
    m_activity->setText(isActive ? tr("%1 today").arg(stats.todayCommits) : stats.lastCommitRelative(texts, now));
    m_activity->setTone(isActive ? style::Tone(Accent::Green) : style::Tone(Ink::Secondary));
}

void RepoRow::enterEvent(QEnterEvent *event)
{
    setHovering(true);
    PlainButton::enterEvent(event);
}

void RepoRow::leaveEvent(QEvent *event)
{
    setHovering(false);
    PlainButton::leaveEvent(event);
}

void RepoRow::hideEvent(QHideEvent *event)
{
    setHovering(false);
    PlainButton::hideEvent(event);
}

// A press that is over would begin again at the next movement of the pointer.
void RepoRow::mouseMoveEvent(QMouseEvent *event)
{
    if (isPressStillMeant())
        PlainButton::mouseMoveEvent(event);
    else
        event->ignore();
}

// The press of a screen reader takes a moment, in which the row may become another repository's. The dashboard goes
// before another window comes: while it is open on X11 it takes every click and every key, and the other window's with
// them.
void RepoRow::showFolder()
{
    const auto makeWay = [dashboard = QPointer(window())] {
        if (dashboard)
            dashboard->hide();
    };
    if (isPressStillMeant())
        m_viewer.reveal(m_path, makeWay);
}

void RepoRow::setHovering(bool isHovering)
{
    m_folder->setTone(isHovering ? style::Tone(Accent::Blue) : style::Tone(Ink::Secondary));
    m_name->setTone(isHovering ? style::Tone(Accent::Blue) : style::Tone(Ink::Primary));
}

qsizetype repositoriesLeftOut(qsizetype repositories)
{
    return std::max(repositories - longestRepositoryList, qsizetype(0));
}

RepositoriesSection::RepositoriesSection(FileViewer &viewer, QWidget *parent)
    : QWidget(parent)
    , m_viewer(viewer)
    , m_heading(makeText(textLook(TypeStyle::Headline, Ink::Secondary), tr("Repositories"), this))
    , m_more(new Text(textLook(TypeStyle::Caption2, Ink::Secondary), this))
    , m_placeholder(new Placeholder(this))
    , m_list(new QVBoxLayout)
{
    setObjectName(QStringLiteral("repositories"));
    const auto padding = points(style::defaultPadding);
    m_list->setContentsMargins(padding, 0, padding, 0);
    m_list->setSpacing(points(8));
    m_list->addWidget(m_placeholder);
    connect(m_placeholder, &QAbstractButton::clicked, this, &RepositoriesSection::settingsRequested);
    makeRows();

    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, padding, 0, padding);
    column->setSpacing(points(8));
    column->addLayout(makeHeading());
    column->addLayout(m_list);
}

QLayout *RepositoriesSection::makeHeading()
{
    m_more->setObjectName(QStringLiteral("moreRepositories"));
    m_more->setLine(lineOf(textLook(TypeStyle::Headline, Ink::Secondary)));
    m_more->hide();

    auto *const row = new QHBoxLayout;
    const auto padding = points(style::defaultPadding);
    row->setContentsMargins(padding, 0, padding, 0);
    row->setSpacing(points(style::defaultSpacing));
    row->addWidget(m_heading);
    row->addStretch();
    row->addWidget(m_more);
    return row;
}

void RepositoriesSection::setRepositories(const QList<RepositoryStats> &repositories, const DateTexts &texts,
                                          Instant now)
{
    const auto leftOut = repositoriesLeftOut(repositories.size());
    m_more->setText(leftOut > 0 ? tr("+%1 more").arg(leftOut) : QString());
    m_more->setVisible(leftOut > 0);
    m_placeholder->setVisible(repositories.isEmpty());
    fillRows(repositories, texts, now);
}

// The focus moves before its row is hidden: Qt would hand it on to whatever comes next, the gear for one.
void RepositoriesSection::fillRows(const QList<RepositoryStats> &repositories, const DateTexts &texts, Instant now)
{
    auto *const focused = focusedRow();
    const auto path = focused ? focused->path() : QString();
    const auto needed = std::min(repositories.size(), m_rows.size());
    for (qsizetype index = 0; index < needed; ++index) {
        m_rows.at(index)->setStats(repositories.at(index), texts, now);
        m_rows.at(index)->show();
    }
    if (focused)
        moveFocus(focused, path, needed);
    for (qsizetype index = needed; index < m_rows.size(); ++index)
        m_rows.at(index)->hide();
}

RepoRow *RepositoriesSection::focusedRow() const
{
    const auto found = std::ranges::find(m_rows, window()->focusWidget());
    return found == m_rows.end() ? nullptr : *found;
}

// The keyboard stays with its repository, wherever that is in the list now, or is nowhere.
void RepositoriesSection::moveFocus(RepoRow *from, const QString &path, qsizetype rows) const
{
    const auto end = m_rows.begin() + rows;
    const auto found = std::find_if(m_rows.begin(), end, [&path](const auto *row) { return row->path() == path; });
    if (found == end)
        from->clearFocus();
    else
        (*found)->setFocus(Qt::OtherFocusReason);
}

// All rows that there can ever be, so that Tab visits them here, and not after what was made before them.
void RepositoriesSection::makeRows()
{
    for (qsizetype number = 0; number < longestRepositoryList; ++number) {
        m_rows.append(new RepoRow(m_viewer, this));
        m_rows.constLast()->hide();
        m_list->addItem(new OutsetItem(m_rows.constLast(), PlainButton::outset()));
    }
}

}  // namespace velquarin
