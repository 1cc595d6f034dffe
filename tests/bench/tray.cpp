// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

// The least that a program with widgets and a status item can be: what the real one is weighed against. Given "window", a
// window is shown and closed first.

#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <QTimer>

#include <cstring>

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QPixmap picture(22, 22);
    picture.fill(Qt::red);
    QMenu menu;
    menu.addAction(QStringLiteral("Quit"), &application, &QApplication::quit);
    QSystemTrayIcon item{QIcon(picture)};
    item.setContextMenu(&menu);
    item.show();
    QLabel window(QStringLiteral("A window"));
    if (argc > 1 && std::strcmp(argv[1], "window") == 0) {
        window.show();
        QTimer::singleShot(std::chrono::seconds(1), &window, &QWidget::close);
    }
    return QApplication::exec();
}
