// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/TabParts.h"

#include "Views/Controls/HouseStyle.h"
#include "Views/Controls/Style.h"
#include "Views/Controls/Symbols.h"
#include "Views/Controls/Text.h"
#include "Views/Settings/RowList.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <algorithm>

namespace velquarin {

namespace {

constexpr double wholeGap = 16;
constexpr double leastGap = 4;

constexpr double symbolTextSize = 34;
constexpr double titleSize = 17;

}  // namespace

Picker::Picker(QWidget *parent)
    : QComboBox(parent)
{
    setFocusPolicy(Qt::TabFocus);
}

// Qt takes them for its own, and some for the beginning of a word to look for.
void Picker::keyPressEvent(QKeyEvent *event)
{
    if (event->modifiers().testFlag(Qt::ControlModifier))
        event->ignore();
    else
        QComboBox::keyPressEvent(event);
}

void Picker::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

TabColumn::TabColumn(QWidget *tab)
    : QVBoxLayout(tab)
{
    const auto padding = style::points(style::defaultPadding);
    setContentsMargins(padding, padding, padding, padding);
    setSpacing(style::points(wholeGap));
}

int TabColumn::gaps() const
{
    int parts = 0;
    for (int index = 0; index < count(); ++index)
        parts += itemAt(index)->isEmpty() ? 0 : 1;
    return std::max(parts - 1, 1);
}

// Another spacing has the column laid out once more, after which it is the same.
void TabColumn::setGeometry(const QRect &place)
{
    const auto forParts = minimumSize().height() - gaps() * spacing();
    const auto gap = std::clamp((place.height() - forParts) / gaps(), style::points(leastGap), style::points(wholeGap));
    if (gap != spacing())
        setSpacing(gap);
    QVBoxLayout::setGeometry(place);
}

QPushButton *makeButton(const QString &title, const QString &symbol, QWidget *parent)
{
    constexpr double sizeOfSymbol = 14;
    auto *const button = new QPushButton(title, parent);
    if (!symbol.isEmpty())
        button->setIcon(style::symbolIcon(symbol));
    button->setIconSize(QSize(1, 1) * style::points(sizeOfSymbol));
    // Enter presses it as well as Space.
    button->setAutoDefault(true);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

QBoxLayout *addRowTo(QWidget &tab)
{
    auto *const row = new QHBoxLayout;
    row->setSpacing(style::points(style::defaultSpacing));
    static_cast<QBoxLayout *>(tab.layout())->addLayout(row);
    return row;
}

Text *makeMessage(QWidget *parent)
{
    auto *const line = new Text(textLook(style::TypeStyle::Caption, style::Accent::Red), parent);
    line->allowCutting();
    line->hide();
    return line;
}

void showLine(Text &line, const QString &text)
{
    line.setText(text);
    line.setVisible(!text.isEmpty());
}

EmptyPanel::EmptyPanel(const Words &words, QWidget *parent)
    : QWidget(parent)
    , m_button(makeButton(words.action, {}, this))
{
    setProminent(*m_button);
    m_button->setDefault(true);
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(style::points(style::defaultSpacing));
    column->addStretch();
    const TextLook titleLook{titleSize, QFont::Bold, style::Ink::Primary};
    column->addWidget(new SymbolView(words.symbol, symbolTextSize, style::Ink::Secondary, this), 0, Qt::AlignHCenter);
    column->addWidget(makeText(titleLook, words.title, this), 0, Qt::AlignHCenter);
    column->addWidget(makeText(textLook(style::TypeStyle::Subheadline, style::Ink::Secondary), words.description, this),
                      0, Qt::AlignHCenter);
    column->addSpacing(style::points(style::defaultSpacing) / 2);
    column->addWidget(m_button, 0, Qt::AlignHCenter);
    column->addStretch();
}

void showRecords(RowList &list, EmptyPanel &empty, const QList<QUuid> &ids, QWidget &next)
{
    if (ids.isEmpty() && list.isAncestorOf(list.window()->focusWidget()))
        next.setFocus(Qt::OtherFocusReason);
    list.setIds(ids);
    list.setVisible(!ids.isEmpty());
    empty.setVisible(ids.isEmpty());
}

}  // namespace velquarin
