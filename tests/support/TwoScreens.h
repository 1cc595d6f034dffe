// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/TestProgram.h"

#include <QApplication>
#include <QRect>
#include <QTemporaryFile>

namespace velquarin::test {

inline constexpr QRect leftScreen(0, 0, 800, 800);
inline constexpr QRect rightScreen(800, 0, 1024, 600);

//! Runs @p Class on two screens side by side, leftScreen the primary one. Units: pixels.
//! Source: the offscreen platform's own configuration file.
template <typename Class>
int runOnTwoScreens(int argc, char **argv)
{
    QTemporaryFile configuration;
    if (!configuration.open() || configuration.write(R"({"screens": [
        {"name": "left", "x": 0, "y": 0, "width": 800, "height": 800, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1},
        {"name": "right", "x": 800, "y": 0, "width": 1024, "height": 600, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}
    ]})") < 0 ||
        !configuration.flush())
        return 1;
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + configuration.fileName().toLocal8Bit());
    return runIn<Class, QApplication>(argc, argv);
}

}  // namespace velquarin::test
