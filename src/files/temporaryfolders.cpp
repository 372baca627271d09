// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "files/temporaryfolders.h"

#include <QMutex>
#include <QSet>

namespace temporaryFolders {

void removeStaleOnce(const QString& folder) {
    static QMutex lock;
    static QSet<QString> seen;
    {
        QMutexLocker guard(&lock);
        if (seen.contains(folder))
            return;
        seen.insert(folder);
    }
    removeStale(folder);
}

} // namespace temporaryFolders
