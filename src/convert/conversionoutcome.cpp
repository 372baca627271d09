// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "convert/conversionoutcome.h"

#include <QDebug>
#include <QMetaEnum>
#include <QStringList>

QString codePointList(const QVector<uint>& codePoints) {
    QStringList parts;
    for (uint codePoint : codePoints)
        parts << QStringLiteral("U+") +
                     QStringLiteral("%1").arg(codePoint, 4, 16, QLatin1Char('0')).toUpper();
    return parts.join(QLatin1Char(' '));
}

QDebug operator<<(QDebug debug, const ConversionOutcome& outcome) {
    const QDebugStateSaver keep(debug);
    debug.nospace().noquote() << QMetaEnum::fromType<ConversionOutcome::Reason>().valueToKey(
        int(outcome.reason));
    if (!outcome.detail.isEmpty())
        debug << " (" << outcome.detail << ')';
    if (outcome.jsonInvalid)
        debug << ", invalid JSON at offset " << outcome.jsonErrorOffset << ": "
              << outcome.jsonError;
    if (outcome.topLevelNotObject)
        debug << ", top level not an object";
    if (!outcome.undrawable.isEmpty())
        debug << ", " << outcome.undrawable.size() << " undrawable characters";
    return debug;
}
