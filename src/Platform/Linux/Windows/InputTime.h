// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <optional>

namespace velquarin {

//! When the user pressed the key or the button that is being answered right now. Main thread only.
//! Source: docs/decisions/0012-activation-tokens.md
class InputTime : public QObject
{
    Q_OBJECT
public:
    //! Sees the events of the whole application from now on.
    explicit InputTime(QObject *parent = nullptr);

    //! Nothing where no input is being answered: a screen reader has pressed, or the answer came later.
    //! Units: milliseconds of the display's clock, which on X11 is the server's.
    [[nodiscard]] std::optional<quint32> now() const { return m_time; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::optional<quint32> m_time;
};

}  // namespace velquarin
