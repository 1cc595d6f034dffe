// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
// Paints every control in every state, light, dark and in high contrast, at 1x, 1.5x and 2x: control_sheet FOLDER

#include "support/Picture.h"
#include "support/WhatIsShown.h"
#include "Views/Controls/GuestStyle.h"
#include "Views/Controls/HouseStyle.h"
#include "Views/Controls/Style.h"
#include "Views/Controls/Switch.h"
#include "Views/Controls/Symbols.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QStyleFactory>
#include <QStyleOption>

#include <cstdio>

using namespace velquarin;
using namespace velquarin::test;

namespace {

struct Condition
{
    const char *name;
    QStyle::State on;
    QStyle::State off;
};

const QList<Condition> conditions{{"at rest", {}, {}},
                                  {"under the pointer", QStyle::State_MouseOver, {}},
                                  {"pressed", QStyle::State_MouseOver | QStyle::State_Sunken, {}},
                                  {"focused", QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange, {}},
                                  {"disabled", {}, QStyle::State_Enabled}};

// One control as it looks in a condition that no pointer brings about here.
class Specimen : public QWidget
{
public:
    using Paint = std::function<void(QPainter &, const Condition &)>;

    Specimen(QSize size, const Condition &condition, Paint paint)
        : m_condition(condition)
        , m_paint(std::move(paint))
    {
        setFixedSize(size);
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        m_paint(painter, m_condition);
    }

private:
    Condition m_condition;
    Paint m_paint;
};

template <typename Option, typename Control>
Option optionOf(const Control &control, const Condition &condition)
{
    Option option;
    option.initFrom(&control);
    option.rect = QRect(QPoint(), control.sizeHint());
    option.state =
        (QStyle::State_Enabled | QStyle::State_Active | QStyle::State_Raised | condition.on) & ~condition.off;
    return option;
}

void addRow(QGridLayout &grid, const char *name, QSize size, const Specimen::Paint &paint)
{
    const auto row = grid.rowCount();
    grid.addWidget(new QLabel(QLatin1String(name)), row, 0);
    for (int column = 0; column < conditions.size(); ++column)
        grid.addWidget(new Specimen(size, conditions.at(column), paint), row, column + 1, Qt::AlignCenter);
}

void addButton(QGridLayout &grid, const char *name, QPushButton *button)
{
    button->hide();
    addRow(grid, name, button->sizeHint(), [button](QPainter &painter, const Condition &condition) {
        auto option = optionOf<QStyleOptionButton>(*button, condition);
        option.text = button->text();
        option.icon = button->icon();
        option.iconSize = button->iconSize();
        button->style()->drawControl(QStyle::CE_PushButton, &option, &painter, button);
    });
}

void addBox(QGridLayout &grid, const char *name, QCheckBox *box, QStyle::State tick)
{
    box->hide();
    addRow(grid, name, box->sizeHint(), [box, tick](QPainter &painter, const Condition &condition) {
        auto option = optionOf<QStyleOptionButton>(*box, condition);
        option.state |= tick;
        option.text = box->text();
        box->style()->drawControl(QStyle::CE_CheckBox, &option, &painter, box);
    });
}

void addPicker(QGridLayout &grid, QComboBox *picker)
{
    picker->hide();
    picker->addItem(QStringLiteral("Every 5 minutes"));
    addRow(grid, "picker", picker->sizeHint(), [picker](QPainter &painter, const Condition &condition) {
        auto option = optionOf<QStyleOptionComboBox>(*picker, condition);
        option.currentText = picker->currentText();
        option.subControls = QStyle::SC_All;
        painter.setPen(style::ink(picker->palette(), style::Ink::Primary));
        picker->style()->drawComplexControl(QStyle::CC_ComboBox, &option, &painter, picker);
        picker->style()->drawControl(QStyle::CE_ComboBoxLabel, &option, &painter, picker);
    });
}

void addScrollBar(QGridLayout &grid, QScrollBar *bar)
{
    bar->hide();
    makePill(*bar, false);
    addRow(grid, "scroll bar", {style::points(110), bar->sizeHint().height()},
           [bar](QPainter &painter, const Condition &condition) {
               auto option = optionOf<QStyleOptionSlider>(*bar, condition);
               option.rect.setWidth(style::points(110));
               option.orientation = Qt::Horizontal;
               option.maximum = 100;
               option.pageStep = 60;
               option.sliderPosition = 30;
               bar->style()->drawComplexControl(QStyle::CC_ScrollBar, &option, &painter, bar);
           });
}

void addTip(QGridLayout &grid, QWidget *parent)
{
    const QFontMetrics metrics(style::font(style::TypeStyle::Caption));
    const auto text = QStringLiteral("May 20, 2026: 8 commits");
    const auto size = metrics.size(0, text) + QSize(1, 1) * 2 * style::points(5);
    addRow(grid, "tooltip", size, [text, size, parent](QPainter &painter, const Condition &) {
        QStyleOptionFrame option;
        option.initFrom(parent);
        option.rect = QRect(QPoint(), size);
        parent->style()->drawPrimitive(QStyle::PE_PanelTipLabel, &option, &painter, parent);
        painter.setFont(style::font(style::TypeStyle::Caption));
        painter.setPen(QColor(0xf5f6f7));
        painter.drawText(option.rect, Qt::AlignCenter, text);
    });
}

// A switch paints itself: it knows what has the focus and what can be used.
void addSwitches(QGridLayout &grid)
{
    const auto row = grid.rowCount();
    grid.addWidget(new QLabel(QStringLiteral("switch")), row, 0);
    for (int column = 0; column < 2; ++column) {
        auto *const control = new Switch(QStringLiteral("Label"), Switch::Size::Regular);
        control->setChecked(column == 1);
        grid.addWidget(control, row, column + 1, Qt::AlignCenter);
    }
}

void fill(QWidget &sheet)
{
    auto *const grid = new QGridLayout(&sheet);
    grid->setSpacing(style::points(14));
    for (int column = 0; column < conditions.size(); ++column)
        grid->addWidget(new QLabel(QLatin1String(conditions.at(column).name)), 0, column + 1, Qt::AlignCenter);
    addButton(*grid, "button", new QPushButton(QStringLiteral("Refresh Now"), &sheet));
    auto *const withSymbol =
        new QPushButton(style::symbolIcon(QStringLiteral("plus")), QStringLiteral("Add Repository"), &sheet);
    withSymbol->setIconSize(QSize(1, 1) * style::points(14));
    addButton(*grid, "with a symbol", withSymbol);
    auto *const prominent = new QPushButton(QStringLiteral("Add Folder"), &sheet);
    setProminent(*prominent);
    addButton(*grid, "prominent", prominent);
    addBox(*grid, "check box", new QCheckBox(&sheet), QStyle::State_Off);
    addBox(*grid, "ticked", new QCheckBox(&sheet), QStyle::State_On);
    addPicker(*grid, new QComboBox(&sheet));
    addScrollBar(*grid, new QScrollBar(Qt::Horizontal, &sheet));
    addTip(*grid, &sheet);
    addSwitches(*grid);
}

bool paint(const char *palette, const QDir &folder)
{
    QWidget sheet;
    fill(sheet);
    sheet.resize(sheet.sizeHint());
    sheet.show();
    bool isSaved = true;
    for (const auto ratio : {1.0, 1.5, 2.0}) {
        const auto name = QStringLiteral("%1-%2x.png").arg(QLatin1String(palette)).arg(ratio);
        isSaved = pictureOf(sheet, ratio).save(folder.filePath(name)) && isSaved;
    }
    return isSaved;
}

}  // namespace

int main(int argc, char *argv[])
{
    QApplication::setStyle(QStringLiteral("Fusion"));
    const QApplication application(argc, argv);
    GuestStyle::install();
    const auto arguments = QApplication::arguments();
    if (arguments.size() != 2) {
        std::fputs("usage: control_sheet FOLDER\n", stderr);
        return 2;
    }
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(13);
    QApplication::setFont(font);
    const QDir folder(arguments.at(1));
    bool isSaved = folder.mkpath(QStringLiteral("."));
    const std::array palettes{std::pair{"light", lightPalette()}, std::pair{"dark", darkPalette()},
                              std::pair{"light-contrast", contrastPalette(Qt::black, Qt::white)},
                              std::pair{"dark-contrast", contrastPalette(Qt::white, Qt::black)}};
    for (const auto &[name, palette] : palettes) {
        QApplication::setPalette(palette);
        isSaved = paint(name, folder) && isSaved;
    }
    return isSaved ? 0 : 1;
}
