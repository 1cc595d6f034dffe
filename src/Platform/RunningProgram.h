// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

namespace velquarin {

//! The program in the status bar, as another process sees it. Main thread only; answers come through the event loop, within
//! a few seconds.
class RunningProgram : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    enum class State {
        Absent,    //!< there is none
        Silent,    //!< there may be one, but nobody answers in time
        Answered,  //!< there is one
    };
    struct Answer
    {
        State state = State::Absent;
        QVariantMap properties;  //!< of one that answered; none before its first refresh
    };

    //! What it shows under these names; under all where none is given. Of many repositories all is a long answer.
    //! Shape: texts, numbers, QStringList, QMap<QString, qint64> and QList<QVariantMap>.
    [[nodiscard]] virtual QCoro::Task<Answer> properties(QStringList names) = 0;

    //! Has it do something. Never starts it.
    [[nodiscard]] virtual QCoro::Task<State> call(QString method, QVariantList arguments) = 0;

Q_SIGNALS:
    //! Some of its figures are others, or it has begun or ended; from the first question on.
    void changed();
};

}  // namespace velquarin
