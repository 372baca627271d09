// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "files/reportlock.h"

#include <QMutex>
#include <QSet>
#include <QWaitCondition>

namespace {

struct Registry {
    QMutex mutex;
    QWaitCondition released;
    QSet<QString> busy;
};

Registry& registry() {
    static Registry instance;
    return instance;
}

} // namespace

ReportLock::ReportLock(const QString& key) : key(key) {
    Registry& reports = registry();
    QMutexLocker locker(&reports.mutex);
    while (reports.busy.contains(key))
        reports.released.wait(&reports.mutex);
    reports.busy.insert(key);
}

ReportLock::~ReportLock() {
    Registry& reports = registry();
    QMutexLocker locker(&reports.mutex);
    reports.busy.remove(key);
    reports.released.wakeAll();
}
