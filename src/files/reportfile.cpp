// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "files/reportfile.h"

#include "files/filepaths.h"
#include "files/regularfile.h"
#include "files/temporaryfolders.h"

ReportFile::ReportFile(const QString& reportPath) : reportName(reportPath) {
    const QString name = filePaths::fileNameOf(reportPath);
    const QString parent = filePaths::folderOf(reportPath);
    // Folders that a killed run left here go first, once per folder.
    temporaryFolders::removeStaleOnce(parent);
    // An interrupt waits until the new folder is registered.
    const temporaryFolders::CreationGuard creating;
    const QString why = makeFolder(parent);
    if (folder.isEmpty()) {
        fail(Failure::NoFolder, why);
        return;
    }
    file = folder + QLatin1Char('/') + (name.isEmpty() ? QStringLiteral("report.pdf") : name);
    // The owner record tells a later run whether this folder is still in
    // use; its lock lasts as long as this object.
    owner = temporaryFolders::createOwner(folder);
    // Known to the interrupt handler by names relative to the open parent,
    // so that an interrupt removes it however long its path is.
    registration =
        temporaryFolders::add(parent, filePaths::fileNameOf(folder), filePaths::fileNameOf(file));
}

ReportFile::~ReportFile() {
    if (folder.isEmpty())
        return;
    temporaryFolders::closeOwner(owner);
    if (registration >= 0)
        temporaryFolders::removeNow(registration);
    else
        removeByPath();
}

bool ReportFile::isOpen() const {
    return !folder.isEmpty();
}

QString ReportFile::temporaryPath() const {
    return file;
}

ReportFile::Failure ReportFile::failure() const {
    return failed;
}

QString ReportFile::errorString() const {
    return error;
}

bool ReportFile::fail(Failure why, const QString& systemWords) {
    failed = why;
    error = systemWords;
    return false;
}

bool ReportFile::isCompletePdf(QFile& report) {
    const QByteArray head = report.read(5);
    const qint64 size = report.size();
    if (!report.seek(qMax<qint64>(0, size - 1024)))
        return false;
    return head == "%PDF-" && report.readAll().contains("%%EOF");
}
