// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Relative names are taken from the working folder even when it is too deep
// for getcwd() to name, and never from "/" when it has been removed.

#include "files/filepaths.h"
#include "runprogram.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

class TestWorkingFolder : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void namedFolder();
    void deepFolder();
    void removedFolder();

private:
    QString startFolder;
    QScopedPointer<QTemporaryDir> dir;
};

void TestWorkingFolder::init() {
    startFolder = QDir::currentPath();
    dir.reset(new QTemporaryDir);
    QVERIFY(dir->isValid());
}

void TestWorkingFolder::cleanup() {
    QVERIFY(QDir::setCurrent(startFolder));
    // QDir cannot remove a tree deeper than a path may be long.
    runProgram(QStringLiteral("rm"), {QStringLiteral("-rf"), dir->path()});
}

void TestWorkingFolder::namedFolder() {
    QVERIFY(QDir::setCurrent(dir->path()));
    QCOMPARE(filePaths::workingFolder(), QDir::currentPath());
    QCOMPARE(filePaths::absolute(QStringLiteral("plant.json")),
             QDir::currentPath() + QStringLiteral("/plant.json"));
}

// 45 steps of 100 bytes: more than the 4096 bytes a path may have.
void TestWorkingFolder::deepFolder() {
    QVERIFY(QDir::setCurrent(dir->path()));
    const QByteArray step(100, 't');
    for (int depth = 0; depth < 45; ++depth) {
        QVERIFY(::mkdir(step.constData(), 0700) == 0);
        QVERIFY(::chdir(step.constData()) == 0);
    }
    QCOMPARE(QDir::currentPath(), QString());
    QFile here(QStringLiteral("plant.json"));
    QVERIFY(here.open(QIODevice::WriteOnly));
    here.write("{}");
    here.close();

    QCOMPARE(filePaths::workingFolder(), QStringLiteral("."));
    const QString path = filePaths::absolute(QStringLiteral("plant.json"));
    QCOMPARE(path, QStringLiteral("plant.json"));
    QVERIFY(filePaths::identityOf(path) == filePaths::identityOf(QStringLiteral("./plant.json")));
    QCOMPARE(filePaths::absolute(QStringLiteral("/etc/x.json")), QStringLiteral("/etc/x.json"));
}

void TestWorkingFolder::removedFolder() {
    const QString gone = dir->filePath(QStringLiteral("gone"));
    QVERIFY(QDir().mkdir(gone));
    QVERIFY(QDir::setCurrent(gone));
    QVERIFY(QDir().rmdir(gone));
    QCOMPARE(filePaths::workingFolder(), QString());
    QCOMPARE(filePaths::absolute(QStringLiteral("plant.json")), QString());
    QCOMPARE(filePaths::absolute(QStringLiteral("/srv/plant.json")),
             QStringLiteral("/srv/plant.json"));
}

QTEST_GUILESS_MAIN(TestWorkingFolder)
#include "tst_workingfolder.moc"
