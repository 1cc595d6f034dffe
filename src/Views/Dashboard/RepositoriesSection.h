// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Models/StreakData.h"
#include "Platform/Calendar.h"
#include "Views/Controls/PlainButton.h"

#include <QList>
#include <QWidget>

class QLayout;
class QVBoxLayout;

namespace velquarin {

class DateTexts;
class FileViewer;
class SymbolView;
class Text;

//! One repository: its name, and what it got today or when it last got something. Pressing it shows its folder in
//! @p viewer, which must outlive it, and closes the window that the row is in once the folder is found.
class RepoRow : public PlainButton
{
    Q_OBJECT
public:
    explicit RepoRow(FileViewer &viewer, QWidget *parent = nullptr);

    //! Shows @p stats as of @p now. A press that began on another repository comes to nothing.
    void setStats(const RepositoryStats &stats, const DateTexts &texts, Instant now);

    [[nodiscard]] const QString &path() const { return m_path; }

protected:
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

private:
    void setHovering(bool isHovering);
    [[nodiscard]] bool isPressStillMeant() const { return m_pressedPath == m_path; }
    void showFolder();
    void setFigures(const RepositoryStats &stats, const DateTexts &texts, Instant now);

    FileViewer &m_viewer;
    QString m_path;
    QString m_pressedPath;  // of the repository that was here when the latest press began
    SymbolView *m_folder;
    Text *m_name;
    Text *m_activity;
};

//! How many repositories the dashboard lists.
constexpr qsizetype longestRepositoryList = 10;

//! How many of @p repositories the list leaves out.
[[nodiscard]] qsizetype repositoriesLeftOut(qsizetype repositories);

//! The first repositories of the list, and how many more there are.
class RepositoriesSection : public QWidget
{
    Q_OBJECT
public:
    //! @p viewer, which must outlive it, shows the folder of a row that is pressed.
    explicit RepositoriesSection(FileViewer &viewer, QWidget *parent = nullptr);

    void setRepositories(const QList<RepositoryStats> &repositories, const DateTexts &texts, Instant now);

Q_SIGNALS:
    //! There are none yet, and somebody wants to change that.
    void settingsRequested();

private:
    QLayout *makeHeading();
    void makeRows();
    void fillRows(const QList<RepositoryStats> &repositories, const DateTexts &texts, Instant now);
    [[nodiscard]] RepoRow *focusedRow() const;
    void moveFocus(RepoRow *from, const QString &path, qsizetype rows) const;

    FileViewer &m_viewer;
    Text *m_heading;
    Text *m_more;
    PlainButton *m_placeholder;
    QVBoxLayout *m_list;
    QList<RepoRow *> m_rows;
};

}  // namespace velquarin
