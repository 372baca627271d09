// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_REPORTFILE_H
#define BREVIO_REPORTFILE_H

#include <QByteArray>
#include <QFile>
#include <QString>

// The place a report is drawn into before it replaces the report's name.
// A folder of its own (mode 0700, made with mkdtemp; on Windows a hidden
// folder with a random name) is created next to the report, and the printer
// writes the file inside it, where nobody else can create, swap or link
// anything. commit() checks that the PDF is complete, flushes it to the disk
// and puts it in the report's place in one step (rename(); on Windows
// MoveFileEx with write-through): a link at that name is replaced, never
// followed; a hard-linked name gets a new file; an older report stays whole
// until then, and stays whole when anything fails. Whatever is left is
// removed when the object goes, or by the interrupt handler of
// temporaryFolders.
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
    // The file must be open for reading; it is read from its start.
    static bool isCompletePdf(QFile& report);

private:
    QString reportName;
    QString folder;
    QString file;
    // The owner record, locked while the folder is in use, and the folder's
    // place in the registry of temporary folders.
    qintptr owner = -1;
    int registration = -1;
    Failure failed = Failure::None;
    QString error;

    // Makes the folder and registers it; the system's words when it cannot.
    QString makeFolder(const QString& parent);
    // What the destructor does when the folder could not be registered.
    void removeByPath();
    bool fail(Failure why, const QString& systemWords = QString());
    static bool reachedSizeLimit(qint64 size);
    // Whether the file system the report was drawn on has less than
    // fullBelowBytes left; written is the report, open.
    bool fileSystemFull(const QFile& written) const;
    static constexpr quint64 fullBelowBytes = 1024 * 1024;
};

#endif
