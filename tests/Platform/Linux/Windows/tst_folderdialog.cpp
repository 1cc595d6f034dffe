// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Windows/FolderWindows.h"
#include "support/Offscreen.h"
#include "support/TestProgram.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace velquarin;

namespace {

// A window that asks for folders below one of its own, and what it was told. The dialog is Qt's.
struct Asking
{
    QTemporaryDir folder;
    FolderDialog chooser;
    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
    QStringList told;

    Asking()
    {
        window->show();
        QDir(folder.path()).mkpath(QStringLiteral("shelf/one"));
    }

    [[nodiscard]] QString pathOf(const QString &name) const { return folder.filePath(name); }

    QFileDialog *ask()
    {
        chooser.choose({QStringLiteral("What for?"), QStringLiteral("Take")}, *window,
                       [this](const QString &path) { told.append(path); });
        auto *const dialog = window->findChild<QFileDialog *>(QStringLiteral("folderDialog"));
        return dialog != nullptr && QTest::qWaitForWindowExposed(dialog) ? dialog : nullptr;
    }

    // Types and confirms as a user does; whatever Qt asks back rests.
    static void type(QFileDialog *dialog, const QString &path)
    {
        auto *const line = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        line->setText(path);
        QTest::keyClick(line, Qt::Key_Return);
    }

    void answer(const QString &path)
    {
        const QPointer dialog(ask());
        QVERIFY(dialog != nullptr);
        type(dialog, path);
        QTRY_VERIFY(dialog.isNull());
    }
};

}  // namespace

class TestFolderDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    static void init() { test::failOnAnyWarningOfOurs(); }

    static void itSaysWhatForAndHowToConfirm()
    {
        Asking asking;
        const auto *const dialog = asking.ask();
        QVERIFY(dialog != nullptr);
        QCOMPARE(dialog->windowTitle(), QStringLiteral("What for?"));
        const auto *const buttons = dialog->findChild<QDialogButtonBox *>();
        QCOMPARE(buttons->button(QDialogButtonBox::Open)->text().remove(u'&'), QStringLiteral("Take"));
        QCOMPARE(QDir(dialog->directory()).path(), QDir::homePath());
    }

    static void theFolderThatIsTypedIsTold()
    {
        Asking asking;
        const auto path = asking.pathOf(QStringLiteral("shelf/one"));
        asking.answer(path);
        QCOMPARE(asking.told, QStringList{path});
    }

    static void aLinkIsToldAsTheLink()
    {
        Asking asking;
        const auto link = asking.pathOf(QStringLiteral("link"));
        QVERIFY(QFile::link(asking.pathOf(QStringLiteral("shelf/one")), link));
        asking.answer(link);
        QCOMPARE(asking.told, QStringList{link});
    }

    static void nothingIsToldOnCancelling()
    {
        Asking asking;
        const QPointer dialog(asking.ask());
        QVERIFY(dialog != nullptr);
        QTest::keyClick(dialog, Qt::Key_Escape);
        QTRY_VERIFY(dialog.isNull());
        QCOMPARE(asking.told, QStringList());
    }

    static void theQuestionGoesWithItsWindow()
    {
        Asking asking;
        const QPointer dialog(asking.ask());
        asking.window.reset();
        QVERIFY(dialog.isNull());
        QCOMPARE(asking.told, QStringList());
    }

    static void theNextQuestionBeginsBesideTheLastAnswer()
    {
        Asking asking;
        asking.answer(asking.pathOf(QStringLiteral("shelf/one")));
        const auto *const dialog = asking.ask();
        QVERIFY(dialog != nullptr);
        QCOMPARE(dialog->directory().path(), asking.pathOf(QStringLiteral("shelf")));
    }
};

VELQUARIN_WINDOW_TEST(TestFolderDialog)
#include "tst_folderdialog.moc"
