// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_REPORTLOCK_H
#define BREVIO_REPORTLOCK_H

#include <QString>

// Lets one job at a time of this process write a given report; a second
// job for the same report waits until the first is done, so two rows that
// name one file take turns instead of racing each other. Reports are named
// by filePaths::reportKey, so every spelling of one name is one report.
class ReportLock {
public:
    explicit ReportLock(const QString& key);
    ~ReportLock();
    ReportLock(const ReportLock&) = delete;
    ReportLock& operator=(const ReportLock&) = delete;

private:
    QString key;
};

#endif
