// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Models/StreakData.h"
#include "Platform/Instant.h"

#include <QList>
#include <QWidget>

class QLayout;
class QVBoxLayout;

namespace velquarin {

class DateTexts;
class FileViewer;
class RepoRow;
class Text;

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

private:
    QLayout *makeHeading();
    void makeRows();
    void fillRows(const QList<RepositoryStats> &repositories, const DateTexts &texts, Instant now);
    [[nodiscard]] RepoRow *focusedRow() const;
    void moveFocus(RepoRow *from, const QString &path, qsizetype rows) const;

    FileViewer &m_viewer;
    Text *m_heading;
    Text *m_more;
    QWidget *m_placeholder;
    QVBoxLayout *m_list;
    QList<RepoRow *> m_rows;
};

}  // namespace velquarin
