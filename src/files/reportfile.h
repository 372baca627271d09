// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_REPORTFILE_H
#define BREVIO_REPORTFILE_H

#include <QByteArray>
#include <QFile>
#include <QString>

// The place a report is drawn into before it replaces the report's name.
// A folder of its own (mode 0700, made with mkdtemp) is created next to the
// report, and the printer writes the file inside it, where nobody else can
// create, swap or link anything. commit() checks that the PDF is complete,
// flushes it to the disk and renames it over the report's name in one step:
// a link at that name is replaced, never followed; a hard-linked name gets a
// new file; an older report stays whole until then, and stays whole when
// anything fails. Whatever is left is removed when the object goes, or by
// the signal handler of temporaryFolders when the process is interrupted.
class ReportFile {
public:
    explicit ReportFile(const QString& reportPath);
    ~ReportFile();
    ReportFile(const ReportFile&) = delete;
    ReportFile& operator=(const ReportFile&) = delete;

    // Incomplete: the printer stopped before the end; FileSizeLimit: it
    // stopped because the file reached the process's size limit.
    enum class Failure { None, NoFolder, Incomplete, FileSizeLimit, NotSaved };

    // False when no folder could be created next to the report (no write
    // permission, no such folder): the report cannot be written.
    bool isOpen() const;
    // Where the printer is to write; its name is the report's own.
    QString temporaryPath() const;
    bool commit();

    // Why the folder could not be made or commit() failed, and the system's
    // words for it where it has any.
    Failure failure() const;
    QString errorString() const;
    // True when a regular file stands at the report's name, which after a
    // failure is the older report, untouched.
    bool reportNameHoldsFile() const;

    // True for a file that starts with a PDF header and ends with the
    // trailer's end-of-file marker; a write cut short lacks the latter.
    static bool isCompletePdf(const QString& path);
    // The same for a file open for reading, read from its start.
    static bool isCompletePdf(QFile& report);

private:
    QByteArray reportName;
    QByteArray folder;
    QByteArray file;
    // The owner record's descriptor, locked while the folder is in use, and
    // the folder's place in the registry of temporary folders.
    int ownerFd = -1;
    int registration = -1;
    Failure failed = Failure::None;
    QString error;

    bool fail(Failure why, int errorNumber = 0);
    static bool reachedSizeLimit(qint64 size);
};

#endif
