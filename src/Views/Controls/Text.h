// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/Controls/Style.h"

#include <QWidget>

#include <optional>

class QFontMetrics;

namespace velquarin {

//! How a text is written.
struct TextLook
{
    double size = 13;  //!< points
    QFont::Weight weight = QFont::Normal;
    style::Tone tone = style::Ink::Primary;
    friend bool operator==(const TextLook &, const TextLook &) = default;
};

[[nodiscard]] TextLook textLook(style::TypeStyle type, style::Tone tone, QFont::Weight weight = QFont::Normal);

//! How far a line reaches from the baseline. Units: logical pixels.
struct Line
{
    int above = 0;
    int below = 0;
};

//! The line that the font of @p look asks for.
[[nodiscard]] Line lineOf(const TextLook &look);

//! As high as capitals and figures, and 2 points more above and below: the line that its font asks for would hold a large
//! figure apart from what belongs to it.
[[nodiscard]] Line closeLineOf(const TextLook &look);

//! One line of text. It is in the accessibility tree as it is given, even where it is cut to the room there is. It
//! follows font and palette, lets the pointer through to what lies behind, and a new text of the same size moves nothing.
class Text : public QWidget
{
    Q_OBJECT
public:
    explicit Text(const TextLook &look, QWidget *parent = nullptr);

    [[nodiscard]] const QString &text() const { return m_text; }
    void setText(const QString &text);

    [[nodiscard]] const style::Tone &tone() const { return m_look.tone; }
    void setTone(const style::Tone &tone);

    //! Where the text stands in a wider widget; leading unless it is said otherwise.
    void setAlignment(Qt::Alignment alignment);

    //! Texts of several sizes stand in one row on one baseline where all have the line of the largest. It has that of its
    //! own look unless it is said otherwise.
    void setLine(const Line &line);

    //! Lets the layout make it narrower than the text, which then has an ellipsis there.
    void allowCutting(Qt::TextElideMode where = Qt::ElideRight);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    [[nodiscard]] Line line() const;
    [[nodiscard]] int measuredWidth() const;
    [[nodiscard]] QString shownText(const QFontMetrics &metrics) const;

    TextLook m_look;
    QFont m_font;
    QString m_text;
    int m_width = 0;
    std::optional<Line> m_line;
    Qt::Alignment m_alignment = Qt::AlignLeading;
    Qt::TextElideMode m_cutAt = Qt::ElideRight;
};

//! A text that stays as it is.
Text *makeText(const TextLook &look, const QString &text, QWidget *parent);

}  // namespace velquarin
