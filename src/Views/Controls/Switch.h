// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>
#include <QVariantAnimation>

namespace velquarin {

//! A switch with its label before it, worked by pressing anywhere on either. Its state is told by the place of the
//! knob, not by colour alone; to a screen reader it is a check box. In a wider widget the label stands at one edge and
//! the switch at the other.
class Switch : public QCheckBox
{
    Q_OBJECT
public:
    enum class Size { Regular, Small };

    //! @p label may hold a mnemonic, marked with an ampersand.
    Switch(const QString &label, Size size, QWidget *parent = nullptr);

    //! How far the rectangle reaches beyond label and switch, so that the ring of the focus does not touch them.
    [[nodiscard]] static int outset();

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    [[nodiscard]] bool hitButton(const QPoint &position) const override;
    void paintEvent(QPaintEvent *event) override;

private:
    void moveKnob(bool isOn);
    [[nodiscard]] QFont lettering() const;
    [[nodiscard]] QSize trackSize() const;
    [[nodiscard]] QRect trackPlace() const;
    [[nodiscard]] QRect labelPlace() const;
    void paintTrack(QPainter &painter) const;

    Size m_size;
    QVariantAnimation m_knob;  // from 0, off, to 1, on
};

}  // namespace velquarin
