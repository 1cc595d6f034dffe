// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/Controls/Motion.h"

#include <QPixmap>
#include <QWidget>

#include <functional>

namespace velquarin {

//! What a part of a widget looked like before it changed, as it fades away over what it has become. It lets the pointer
//! through: what it lies on is there at once.
class FadingPicture : public QWidget
{
    Q_OBJECT
public:
    //! @p part is asked for each picture, since it may become smaller with the change.
    FadingPicture(QWidget &whole, std::function<QRect()> part);

    //! To be called before the change. Where the desktop wants no animations, and where nobody sees it, nothing happens.
    void begin();

protected:
    void paintEvent(QPaintEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void showProgress();

    std::function<QRect()> m_part;
    QPixmap m_picture;
    Motion m_fading;
};

}  // namespace velquarin
